// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QObject>
#include <QPointer>
#include <QTimer>

class QAction;
class QLineEdit;
class QToolBar;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class SongFinder;
class Tallow;
class frmMain;

/// The field "FindField" at the right end of the frame window's toolbar: while the user types, the
/// list of the active jukebox shows the songs found, see Jukebox::ShowHits. Another folder, another
/// jukebox window and Esc give the folder back and clear the field. Shown with the switch
/// `find_field`.
///
/// A search runs at each key. If the last one took long, the keys that wait come first, and only
/// the last text is searched. While hits are shown, new songs and new details are searched, too, at
/// most twice a second, unless the user has sorted the hits.
class FrameFind : public QObject {
  Q_OBJECT

 public:
  /// \param toolbar of a main window
  /// \param toolbar, tallow, jukeboxes, messages have to outlive this object
  FrameFind(QToolBar& toolbar, Tallow& tallow, JukeboxArea& jukeboxes, FrameMessages& messages);
  ~FrameFind() override;

  /// Call after the preferences have changed: shows or hides the field.
  void FollowPreferences();

  /// Sets the menu item that goes to the field. It is shown while the field is.
  void SetItem(QAction& item);

  /// Gives the keyboard focus to the field, and selects its text.
  void Focus();

  /// Searches the text now if the search waits for other keys. Call before a command that may act
  /// on the hits.
  void FindNow();

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool KeyPressed(int key);
  /// Shows or hides the part of the toolbar for which a narrow window has no place.
  void ShowRest(bool show);
  /// Starts a search for the text of the field, now or when the keys that wait are handled.
  void TextChanged();
  void Find();
  /// Searches again if songs or details have changed.
  void Renew();
  bool AreHitsOutdated() const;
  /// Searches, and stores and returns the hits.
  const std::vector<std::int32_t>& Search(const std::string& text);
  void ShowHits(frmMain& window, const std::string& text);
  /// Shows the number of hits, and the time that finding them took.
  void ShowFound(std::int64_t milliseconds);
  /// Follows a window whose list shows hits.
  void Follow(frmMain& window);
  /// Shows the folder again in the window that shows hits, and clears the field.
  void End();
  /// Clears the field when the followed window shows its folder again.
  void EndIfFolderIsBack();
  void EndIfOtherWindow();

  QToolBar& toolbar_;
  Tallow& tallow_;
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  QLineEdit* field_;
  QAction* space_;        ///< moves the field to the right end
  QAction* field_place_;  ///< of the field in the toolbar
  QAction* item_ = nullptr;
  std::unique_ptr<SongFinder> finder_;  ///< made by the first key
  QPointer<frmMain> window_;            ///< whose list shows hits; null for none
  bool is_clearing_ = false;
  QTimer later_;                       ///< runs Find when the keys that wait are handled
  QTimer* renewal_;                    ///< runs Renew while hits are shown
  std::int64_t duration_ = 0;          ///< of the last search until its hits were shown, in ms
  std::vector<std::int32_t> hits_;     ///< of the last search
  std::string found_;                  ///< what ShowFound has shown last
  std::uint64_t names_version_ = 0;    ///< SongRows::NamesVersion at the last search
  std::uint32_t details_version_ = 0;  ///< DetailsTable::Version at the last search
};

}  // namespace tallow

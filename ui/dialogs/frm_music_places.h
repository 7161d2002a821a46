// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDialog>

#include "app/long_work.h"
#include "app/search/music_places.h"

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tallow {

class DriveList;
class PlaceStates;

/// What the dialog "Where My Music Is" works on.
struct MusicPlacesContext {
  Tallow& tallow;  ///< must outlive the dialog
  /// Reads the drives that are there now.
  std::function<std::shared_ptr<const DriveList>()> read_drives;
  /// Searches the ticked places, and processes events meanwhile.
  std::function<void()> search;
  /// Called after each change of the user, for example to show problems.
  std::function<void()> changed;
  /// Which places can be reached. Keeps the open questions from one dialog to the next, so that a
  /// place that does not answer occupies one thread. Null: those of this dialog.
  std::shared_ptr<PlaceStates> states = {};
  /// Shows the progress of adding folders on slow disks. Empty: it is not shown.
  BeginLongWork begin_work = {};
  /// Asks for a folder; no value when the user cancels. Empty: the system's dialog.
  std::function<std::optional<std::string>()> ask_for_folder = {};
};

/// The dialog of the places that are searched for songs. What the user changes is stored at once,
/// so there is nothing to apply or to cancel. Folders can be dropped on it.
class frmMusicPlaces : public QDialog {
  Q_OBJECT

 public:
  explicit frmMusicPlaces(MusicPlacesContext context, QWidget* parent = nullptr);
  ~frmMusicPlaces() override;

 protected:
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QPushButton* AddButton(const char* name, const QString& caption, const QString& description);
  void SetUpList();
  void SetUpLayout();
  void ReadDrives();
  /// Shows the places as they are now.
  void Refresh();
  void Show(QTreeWidgetItem& item, const PlaceLine& line) const;
  /// Sets the width of the columns, once they have texts.
  void FitColumns();
  void Tick(QTreeWidgetItem& item);
  void AddFolder();
  void Add(const std::vector<std::string>& paths);
  /// \returns what to tell the user of folders that were not added
  std::vector<std::string> AddToPlaces(const std::vector<std::string>& paths);
  void Remove();
  void SearchNow();
  /// The selected place; null for none.
  const MusicPlace* Current() const;
  void ShowMessage(const std::vector<std::string>& lines);
  void EnableButtons();

  MusicPlacesContext context_;
  std::shared_ptr<const DriveList> drives_;
  std::vector<PlaceLine> lines_;  ///< in the order of the list
  bool is_searching_ = false;
  QTreeWidget* list_;
  QLabel* message_;
  QPushButton* add_;
  QPushButton* remove_;
  QPushButton* search_;
  QPushButton* close_;
};

}  // namespace tallow

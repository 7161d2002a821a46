// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QObject>

#include "util/message.h"

class QStatusBar;

namespace tallow {

class Jukebox;
class SizeFinder;
class Tallow;

/// The findings of a start or a search: a click on the status bar opens the list of left-out files
/// and unavailable places. Also determines the sizes of files in the background, once the window is
/// open.
class FrameFindings : public QObject {
  Q_OBJECT

 public:
  /// \param bar, tallow have to outlive this object
  /// \param jukeboxes returns the open jukeboxes
  FrameFindings(QStatusBar& bar, Tallow& tallow, ShowMessage show,
                std::function<std::vector<Jukebox*>()> jukeboxes);
  ~FrameFindings() override;

  /// Call when the findings may have changed: updates the bar's cursor, which shows whether a click
  /// opens anything.
  void Changed();

  /// Opens the list of findings.
  void ShowList();

  /// Starts to determine unknown file sizes, without blocking the windows.
  void FindSizes();

 signals:
  /// Songs of a drive were marked as missing, and the library was saved.
  void DriveForgotten();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool HasFindings() const;
  /// The full text of the status bar, with all lines.
  QString FullText() const;
  /// Whether the bar shows only a part of FullText() that the user has not opened yet.
  bool IsTextTruncated() const;
  void ShowText();
  void StoreSizes();
  void SaveSizes();

  QStatusBar& bar_;
  Tallow& tallow_;
  ShowMessage show_;
  std::function<std::vector<Jukebox*>()> jukeboxes_;
  std::unique_ptr<SizeFinder> sizes_;
  QString opened_;  ///< the text that was opened last
};

}  // namespace tallow

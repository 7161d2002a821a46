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

/// What is left to tell after a start or a search: a click on the status bar opens the list of files that
/// were left out and of places that are away. Asks for the sizes of files as well, once there is a window.
class FrameFindings : public QObject {
  Q_OBJECT

 public:
  /// \param bar, tallow have to outlive the object
  /// \param jukeboxes gives the open ones
  FrameFindings(QStatusBar& bar, Tallow& tallow, ShowMessage show,
                std::function<std::vector<Jukebox*>()> jukeboxes);
  ~FrameFindings() override;

  /// The counts may be others now: the pointer over the bar shows whether a click opens anything.
  void Changed();

  /// Opens the list.
  void ShowList();

  /// Begins to ask for the sizes of files that are not known, without keeping anybody waiting.
  void FindSizes();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool HasAny() const;
  /// What the bar says, with all lines.
  QString WholeText() const;
  /// Whether the bar shows less than that, and the user has not opened it.
  bool HidesText() const;
  void ShowText();
  void TakeSizes();
  void SaveSizes();

  QStatusBar& bar_;
  Tallow& tallow_;
  ShowMessage show_;
  std::function<std::vector<Jukebox*>()> jukeboxes_;
  std::unique_ptr<SizeFinder> sizes_;
  QString opened_;  ///< the text that was opened last
};

}  // namespace tallow

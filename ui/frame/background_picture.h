// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

class QWidget;

namespace tallow {

class FrameMessages;
class JukeboxArea;
class Tallow;
class frmMain;

/// The background picture, which all jukebox windows share.
class BackgroundPicture {
 public:
  /// The parameters have to outlive this object.
  BackgroundPicture(QWidget& frame, Tallow& tallow, const JukeboxArea& jukeboxes,
                    FrameMessages& messages)
      : frame_(frame), tallow_(tallow), jukeboxes_(jukeboxes), messages_(messages) {}

  /// Opens the dialog for the picture.
  void Change();

  /// Reports why a new window has no picture. Only the first window reports it, since all have the
  /// same picture.
  void ReportProblem(const frmMain& window);
  /// Returns the problem that was reported, and forgets it; empty for none.
  std::string TakeProblem() { return std::exchange(problem_, {}); }

 private:
  QWidget& frame_;
  Tallow& tallow_;
  const JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  std::string problem_;
};

}  // namespace tallow

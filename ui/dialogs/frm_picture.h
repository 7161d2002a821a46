// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QDialog>

#include "util/message.h"

class QCheckBox;
class QLabel;

namespace tallow {

class Tallow;

/// The dialog of the picture behind the song lists.
///
/// A file that is browsed for is the picture at once, and "Show Picture" is ticked; Cancel brings back the
/// picture before. A file that is no picture is refused.
class frmPicture : public QDialog {
  Q_OBJECT

 public:
  /// Shows a picture behind every song list.
  /// \param address "file:\\" and the path; empty for no picture
  /// \returns why it cannot be shown; empty otherwise
  using ShowPicture = std::function<std::string(const QString& address, bool tiled)>;
  /// Asks for a picture in a folder; no value when the user cancels.
  using AskForPicture = std::function<std::optional<std::string>(const std::string& folder)>;

  /// \param tallow has to outlive the dialog
  /// \param ask    without it the file dialog
  /// \param tell   shows message boxes; without it they are real ones over the dialog
  frmPicture(Tallow& tallow, ShowPicture show, AskForPicture ask = {}, ShowMessage tell = {},
             QWidget* parent = nullptr);

 private:
  void Browse();
  void Apply();
  void Cancel();
  void ShowPath();

  Tallow& tallow_;
  ShowPicture show_;
  AskForPicture ask_;
  ShowMessage tell_;
  const std::string picture_location_;  ///< as it was when the dialog opened
  QLabel* path_;
  QCheckBox* show_picture_;
  QCheckBox* tile_picture_;
};

}  // namespace tallow

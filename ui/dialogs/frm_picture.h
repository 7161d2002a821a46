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

/// The dialog for the background picture of the song lists.
///
/// A file chosen with Browse becomes the picture immediately, and "Show Picture" is checked; Cancel
/// restores the previous picture. A file that is not a picture is rejected.
class frmPicture : public QDialog {
  Q_OBJECT

 public:
  /// Callback that shows a picture behind every song list.
  /// \param address "file:\\" and the path; empty for no picture
  /// \returns why the picture cannot be shown; empty on success
  using ShowPicture = std::function<std::string(const QString& address, bool tiled)>;
  /// Callback that asks the user for a picture file in a folder; returns no value when the user
  /// cancels.
  using AskForPicture = std::function<std::optional<std::string>(const std::string& folder)>;

  /// \param tallow must outlive the dialog
  /// \param ask asks for the picture file; if empty, the file dialog is used
  /// \param show_message shows messages; if empty, message boxes over this dialog are used
  frmPicture(Tallow& tallow, ShowPicture show, AskForPicture ask = {},
             ShowMessage show_message = {}, QWidget* parent = nullptr);

 private:
  void SetUpLayout(QWidget* browse, QWidget* ok, QWidget* cancel);
  void Browse();
  void Apply();
  void Cancel();
  void ShowPath();

  Tallow& tallow_;
  ShowPicture show_;
  AskForPicture ask_;
  ShowMessage show_message_;
  const std::string picture_location_;  ///< when the dialog opened
  QLabel* path_;
  QCheckBox* show_picture_;
  QCheckBox* tile_picture_;
};

}  // namespace tallow

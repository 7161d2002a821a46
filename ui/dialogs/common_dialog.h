// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace tallow {

enum class FileDialogPurpose { kOpen, kSave };

/// Shows the modal file dialog, named "CommonDialog1". The dialog does not ask before an existing
/// file is replaced; the caller that saves does.
///
/// \param folder the folder that the dialog shows first
/// \param filter the file types on offer: pairs of text and pattern, all separated by "|", such as
/// "JPEG (*.jpg) |*.jpg|PNG (*.png) |*.png"; the first type is preselected
/// \returns the chosen path; no value when the user cancels
std::optional<std::string> AskForFile(QWidget* parent, const std::string& folder,
                                      std::string_view filter, FileDialogPurpose purpose);

/// Shows the modal dialog that asks for a folder, named "CommonDialog1".
///
/// \returns the chosen folder; no value when the user cancels
std::optional<std::string> AskForFolder(QWidget* parent, const std::string& folder);

}  // namespace tallow

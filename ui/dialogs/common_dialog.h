// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace tallow {

enum class FileDialogPurpose { kOpen, kSave };

/// Shows the file dialog, named "CommonDialog1", and waits for a choice. Whether a file may be replaced is
/// not asked: that is for whoever saves.
///
/// \param folder what is shown first
/// \param filter what is offered: text, bar, pattern, such as "Pictures (*.jpg) |*.jpg", and behind a bar the
///        next text, bar, pattern; the first one is chosen at first
/// \returns the path; no value when the user cancels
std::optional<std::string> AskForFile(QWidget* parent, const std::string& folder,
                                      std::string_view filter, FileDialogPurpose purpose);

}  // namespace tallow

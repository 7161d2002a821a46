// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace tallow {

enum class TextEdit { kUndo, kRedo, kCut, kCopy, kPaste, kDelete };

/// Runs an edit command in the text field that has the keyboard focus: the editor of a folder's
/// text, or a text box. Callers try this first; otherwise the command would act on the tree or the
/// list behind the field.
///
/// \returns whether a text field has the focus
bool EditInText(TextEdit edit);

/// Whether an edit command would change the text field that has the keyboard focus, or copy from
/// it; no value when no text field has the focus.
std::optional<bool> CanEditInText(TextEdit edit);

}  // namespace tallow

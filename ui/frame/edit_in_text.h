// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

enum class TextEdit { kCut, kCopy, kPaste, kDelete };

/// Carries out an edit command in the text field that has the keyboard focus: a folder's text that is being
/// changed, or a text box. Without it the command would act on what lies behind the field.
///
/// \returns whether there is such a field
bool EditInText(TextEdit edit);

}  // namespace tallow

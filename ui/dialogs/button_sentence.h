// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QAbstractButton;
class QVBoxLayout;

namespace tallow {

/// Adds the sentence below a check box or radio button, indented like its text, and makes it the
/// accessible description of the button. A click on the sentence is a click on the button.
void AddButtonSentence(QVBoxLayout& layout, QAbstractButton& button, const QString& sentence);

}  // namespace tallow

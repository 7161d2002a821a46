// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "util/message.h"

class QWidget;

namespace tallow {

/// Shows a message in a modal message box with exactly its text, title, icon and buttons.
///
/// \param parent the parent window; may be null
MessageAnswer ShowMessageBox(const Message& message, QWidget* parent);

/// Asks the user to choose between several actions, with one button for each. The first button is
/// the default button.
///
/// \param choices the labels of the buttons; at least one
/// \returns the index of the clicked button, from 0; no value when the user closed the box without
/// clicking a button
std::optional<std::size_t> ChooseInMessageBox(const std::string& text,
                                              const std::vector<std::string>& choices,
                                              QWidget* parent);

}  // namespace tallow

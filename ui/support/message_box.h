// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "util/message.h"

class QWidget;

namespace tallow {

/// Shows a message as a box of the desktop, with exactly its text, title, picture and buttons.
///
/// \param parent the window the box belongs to; may be null
MessageAnswer ShowMessageBox(const Message& message, QWidget* parent);

/// Asks which of several things to do, with a button for each. The first is the default.
///
/// \param choices what is written on the buttons; at least one
/// \returns the place of the button pressed, from 0; no value when the box was closed otherwise
std::optional<std::size_t> ChooseInMessageBox(const std::string& text,
                                              const std::vector<std::string>& choices,
                                              QWidget* parent);

}  // namespace tallow

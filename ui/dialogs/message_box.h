// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/message.h"

class QWidget;

namespace tallow {

/// Shows a message as a box of the desktop, with exactly its text, title, picture and buttons.
///
/// \param parent the window the box belongs to; may be null
MessageAnswer ShowMessageBox(const Message& message, QWidget* parent);

}  // namespace tallow

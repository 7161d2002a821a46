// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallow {

/// The icon of a message box.
enum class MessageIcon { kNone, kInformation, kQuestion, kCritical };

/// The buttons of a message box.
enum class MessageButtons { kOk, kYesNo, kYesNoCancel };

/// The user's answer to a message box. Closing the box without a button returns kOk for one button,
/// otherwise kCancel, or kNo where there is no Cancel button; but see Message::can_be_dismissed.
enum class MessageAnswer { kOk, kYes, kNo, kCancel };

/// The default title of a message box.
inline constexpr std::string_view kOwnTitle = "Tallow";

/// The content of a modal message box.
struct Message {
  std::string text;
  std::string title = std::string(kOwnTitle);
  MessageIcon icon = MessageIcon::kNone;
  MessageButtons buttons = MessageButtons::kOk;
  /// Closing the box without a button returns kCancel, even though there is no Cancel button.
  bool can_be_dismissed = false;
};

/// Callback that shows a message box and returns the answer. Tests pass their own.
using ShowMessage = std::function<MessageAnswer(const Message&)>;

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallow {

/// The picture of a message box.
enum class MessageIcon { kNone, kInformation, kQuestion, kCritical };

/// The buttons of a message box, and so its possible answers.
enum class MessageButtons { kOk, kYesNo, kYesNoCancel };

/// How a message box was left. Closing it without a button counts as the weakest answer: No where
/// there is no Cancel, but see Message::can_be_dismissed.
enum class MessageAnswer { kOk, kYes, kNo, kCancel };

/// The title of a message that names none.
inline constexpr std::string_view kOwnTitle = "Tallow";

/// A message box. It stands in front of everything and waits for an answer.
struct Message {
  std::string text;
  std::string title = std::string(kOwnTitle);
  MessageIcon icon = MessageIcon::kNone;
  MessageButtons buttons = MessageButtons::kOk;
  /// Closing the box without a button is an answer of its own, kCancel, though there is no such button.
  bool can_be_dismissed = false;
};

/// Shows a message box. What has to ask or tell is given one; tests give their own.
using ShowMessage = std::function<MessageAnswer(const Message&)>;

}  // namespace tallow

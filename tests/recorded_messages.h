// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "util/message.h"

namespace tallow {

/// Message boxes that nobody sees: they are kept, and answered as told.
class RecordedMessages {
 public:
  ShowMessage Shower() {
    return [this](const Message& message) {
      shown.push_back(message);
      if (on_show) on_show();
      return answer;
    };
  }

  /// What was shown since the last call, each as its text.
  std::vector<std::string> Take() {
    std::vector<std::string> texts;
    for (const Message& message : std::exchange(shown, {})) texts.push_back(message.text);
    return texts;
  }

  std::vector<Message> shown;
  MessageAnswer answer = MessageAnswer::kOk;
  std::function<void()> on_show;  ///< may set the answer
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "util/message.h"

namespace tallow {

/// Records message boxes instead of showing them, and answers with `answer`.
class RecordedMessages {
 public:
  ShowMessage Shower() {
    return [this](const Message& message) {
      shown.push_back(message);
      if (on_show) on_show();
      return answer;
    };
  }

  /// The texts of the messages since the last call.
  std::vector<std::string> Take() {
    std::vector<std::string> texts;
    for (const Message& message : std::exchange(shown, {})) texts.push_back(message.text);
    return texts;
  }

  std::vector<Message> shown;
  MessageAnswer answer = MessageAnswer::kOk;
  std::function<void()> on_show;  ///< called for each message; may set `answer`
};

}  // namespace tallow

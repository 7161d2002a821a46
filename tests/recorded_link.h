// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "player/player_link.h"
#include "player/player_messages.h"

namespace tallow {

/// A link without a player: records messages as text and answers them from a list.
class RecordedLink : public PlayerLink {
 public:
  PlayerHandle Find() override {
    log.push_back("find");
    return found;
  }
  bool Start(const std::string& program) override {
    log.push_back("start " + program);
    if (on_start) on_start();
    return starts;
  }
  PlayerStart FollowStart() override {
    if (start != PlayerStart::kAnswers) return start;
    if (found != 0) return PlayerStart::kAnswers;
    Find();
    return PlayerStart::kNoWindow;
  }
  std::string LastLineWritten() override { return last_line; }
  std::chrono::milliseconds StartTimeout() const override { return start_timeout; }
  std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                    std::int64_t lParam) override {
    const std::string text =
        std::to_string(message) + " " + std::to_string(wParam) + " " + std::to_string(lParam);
    if (logs_queries || !IsQuery(message, lParam)) log.push_back(text);
    handles.push_back(player);
    const auto answer = answers.find(text);
    return answer == answers.end() ? 0 : answer->second;
  }
  bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    log.push_back("copy " + std::to_string(code) + " " + std::to_string(data.size()) + " " +
                  std::string(data.substr(0, data.size() - 1)) +
                  (data.back() == '\0' ? "\\0" : "?"));
    handles.push_back(player);
    return files++ < max_files;
  }
  bool IsRunning(PlayerHandle /*player*/) override { return files < ends_at; }
  std::string TextOfPath(const std::string& path) const override { return path; }
  PlayerKind KindOf(PlayerHandle /*player*/) override { return kind; }
  std::optional<std::string> Ask(PlayerHandle /*player*/, std::string_view request) override {
    log.push_back("ask " + std::string(request));
    const auto answer = texts.find(std::string(request));
    return answer == texts.end() ? std::nullopt : std::optional(answer->second);
  }

  /// The messages since the last call.
  std::vector<std::string> Take() { return std::exchange(log, {}); }

  /// Whether to record the messages that change nothing: a frame window sends them by a timer.
  bool logs_queries = true;
  PlayerHandle found = 7;
  PlayerKind kind = PlayerKind::kWinamp;
  bool starts = true;
  std::function<void()> on_start;             ///< called by each start
  PlayerStart start = PlayerStart::kAnswers;  ///< kAnswers only where `found` is not 0
  std::string last_line;                      ///< that the program has written
  std::chrono::milliseconds start_timeout{0};
  std::size_t files = 0;                         ///< number of files added so far
  std::size_t max_files = std::size_t{1} << 30;  ///< number of files that the player accepts
  std::size_t ends_at = std::size_t{1} << 30;    ///< the player ends at this file, from 1
  std::map<std::string, std::int64_t> answers;
  std::map<std::string, std::string> texts;  ///< the answers to requests in JSON
  std::vector<std::string> log;
  std::vector<PlayerHandle> handles;

 private:
  static bool IsQuery(std::uint32_t message, std::int64_t request) {
    return message == kWmUser &&
           (request == kStatus || request == kTrackTime || request == kListLength ||
            request == kListPlace || request == kShuffle || request == kRepeat);
  }
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/child_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "details/details_message.h"
#include "details/tag_reader.h"
#include "util/file_system.h"
#include "util/thread_priority.h"

namespace tallow {
namespace {

/// The first message of the child. A program that does not send it is no such child, and must not
/// make files look as if they could not be read.
constexpr std::string_view kGreeting = "song details 2";

/// A child whose parent was killed while TagLib does not end has to end by itself.
constexpr std::chrono::seconds kMaxLifeOfOneRead{20};

/// A child without requests: the parent may pause between files for as long as it wants, and the end
/// of the parent closes the channel.
constexpr std::chrono::seconds kNoLimitOfLife{0};

constexpr std::chrono::milliseconds kWaitStep{20};

}  // namespace

std::optional<std::string> ChildReader::NextMessage(std::chrono::milliseconds max_wait,
                                                    const std::function<bool()>& stopped) {
  const auto end = std::chrono::steady_clock::now() + max_wait;
  for (;;) {
    if (received_.size() >= kMessageLengthBytes) {
      const std::size_t length = MessageLength(received_);
      if (length > kMaxMessageBytes) return std::nullopt;
      if (received_.size() >= kMessageLengthBytes + length) {
        std::string content = received_.substr(kMessageLengthBytes, length);
        received_.erase(0, kMessageLengthBytes + length);
        return content;
      }
    }
    if (stopped() || std::chrono::steady_clock::now() > end) return std::nullopt;
    const auto bytes = child_->Read(kWaitStep);
    if (!bytes) return std::nullopt;
    received_ += *bytes;
  }
}

bool ChildReader::HasChild(const std::function<bool()>& stopped) {
  if (child_ != nullptr) return true;
  received_.clear();
  child_ = ChildProcess::Start(settings_.program, settings_.arguments);
  if (child_ == nullptr) return false;
  if (NextMessage(settings_.max_start, stopped) == kGreeting) return true;
  child_.reset();
  return false;
}

SongDetails ChildReader::Read(const std::string& path, const std::function<bool()>& stopped) {
  // Before the read, so that a change during it is noticed at the next run.
  const auto stamp = StampOf(path);
  if (!HasChild(stopped)) return ReadSongDetails(path, {.stopped = stopped});
  if (child_->Write(MessageOf(path))) {
    if (const auto answer = NextMessage(settings_.max_wait, stopped)) {
      if (auto details = DecodeDetails(*answer)) return *std::move(details);
    }
  }
  child_.reset();
  SongDetails details;
  details.failed = true;
  if (stamp) details.stamp = *stamp;
  return details;
}

int ServeSongDetails(const std::function<SongDetails(const std::string& path)>& read) {
  if (!ParentChannel::Write(MessageOf(kGreeting))) return 1;
  std::array<char, kMessageLengthBytes> length{};
  while (ParentChannel::Read(length)) {
    std::string path(std::min(MessageLength({length.data(), length.size()}), kMaxMessageBytes),
                     '\0');
    if (!ParentChannel::Read(path)) return 1;
    EndThisProcessAfter(kMaxLifeOfOneRead);
    const SongDetails details = read(path);
    EndThisProcessAfter(kNoLimitOfLife);
    if (!ParentChannel::Write(MessageOf(EncodeDetails(details)))) return 1;
  }
  return 0;
}

int ServeSongDetails() {
  LowerThreadPriority();
  return ServeSongDetails([](const std::string& path) { return ReadSongDetails(path); });
}

}  // namespace tallow

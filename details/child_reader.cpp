// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/child_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "details/details_message.h"
#include "details/embedded_picture.h"
#include "details/tag_reader.h"
#include "util/file_system.h"
#include "util/thread_priority.h"

namespace tallow {
namespace {

/// The first message of the child. A program that does not send it is no such child, and must not
/// make files look as if they could not be read.
constexpr std::string_view kGreeting = "song details 4";

/// A child whose parent was killed while TagLib does not end has to end by itself.
constexpr std::chrono::seconds kMaxLifeOfOneRead{20};

/// A child without requests: the parent may pause between files for as long as it wants, and the
/// end of the parent closes the channel.
constexpr std::chrono::seconds kNoLimitOfLife{0};

constexpr std::chrono::milliseconds kWaitStep{20};

}  // namespace

std::optional<std::string> ChildReader::NextMessage(std::chrono::milliseconds max_wait,
                                                    const std::function<bool()>& stopped) {
  const auto end = std::chrono::steady_clock::now() + max_wait;
  for (;;) {
    if (received_.size() >= kMessageLengthBytes) {
      const std::size_t length = MessageLength(received_);
      if (length > kMaxAnswerBytes) return std::nullopt;
      if (received_.size() >= kMessageLengthBytes + length) {
        std::string content = received_.substr(kMessageLengthBytes, length);
        received_.erase(0, kMessageLengthBytes + length);
        return content;
      }
    }
    is_late_ = std::chrono::steady_clock::now() > end;
    if (is_late_ || stopped()) return std::nullopt;
    const auto bytes = child_->Read(kWaitStep);
    if (!bytes) {
      has_ended_ = true;
      return std::nullopt;
    }
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

std::optional<std::string> ChildReader::Ask(const std::string& request,
                                            const std::function<bool()>& stopped) {
  const auto used = child_->ProcessorTime();
  is_late_ = false;
  was_waiting_ = false;
  has_ended_ = !child_->Write(request);
  if (!has_ended_)
    if (auto answer = NextMessage(settings_.max_wait, stopped)) return answer;
  was_waiting_ = is_late_ && child_->ProcessorTime() - used < settings_.max_wait / 2;
  child_.reset();
  return std::nullopt;
}

std::optional<std::string> ChildReader::AskTwice(WhatToRead what, const std::string& path,
                                                 const std::function<bool()>& stopped) {
  const std::string request = MessageOf(static_cast<char>(what) + path);
  auto answer = Ask(request, stopped);
  // The child may have been killed for another reason than this file.
  if (!answer && has_ended_ && !stopped() && HasChild(stopped)) answer = Ask(request, stopped);
  return answer;
}

std::optional<SongDetails> ChildReader::AskForDetails(WhatToRead what, const std::string& path,
                                                      const std::function<bool()>& stopped) {
  const auto answer = AskTwice(what, path, stopped);
  if (!answer) return std::nullopt;
  auto details = DecodeDetails(*answer);
  if (!details) child_.reset();
  return details;
}

SongDetails ChildReader::Read(const std::string& path, const std::function<bool()>& stopped) {
  // Before the read, so that a change during it is noticed at the next run.
  const auto stamp = StampOf(path);
  if (!HasChild(stopped)) return ReadSongDetails(path, {.stopped = stopped});
  if (auto details = AskForDetails(WhatToRead::kAll, path, stopped)) return *std::move(details);
  SongDetails failed;
  failed.failed = true;
  failed.tags.unread = was_waiting_;
  if (stamp && !was_waiting_) failed.stamp = *stamp;
  return failed;
}

SongTags ChildReader::ReadTags(const std::string& path) {
  const auto never = [] { return false; };
  if (!HasChild(never)) return ReadSongTags(path);
  auto details = AskForDetails(WhatToRead::kTags, path, never);
  if (!details) return {.unread = was_waiting_};
  return std::move(details->tags);
}

std::string ChildReader::ReadPicture(const std::string& path,
                                     const std::function<bool()>& stopped) {
  if (!HasChild(stopped))
    return ReadEmbeddedPicture(path, {.max_bytes = kMaxBytesForPicture, .stopped = stopped});
  return AskTwice(WhatToRead::kPicture, path, stopped).value_or(std::string());
}

std::string AnswerFor(const std::string& path, WhatToRead what) {
  switch (what) {
    case WhatToRead::kTags:
      return EncodeDetails({.tags = ReadSongTags(path)});
    case WhatToRead::kPicture:
      return ReadEmbeddedPicture(path);
    case WhatToRead::kAll:
      break;
  }
  return EncodeDetails(ReadSongDetails(path));
}

int ServeSongDetails(
    const std::function<std::string(const std::string& path, WhatToRead what)>& answer) {
  LimitMemoryOfThisProcess();
  if (!ParentChannel::Write(MessageOf(kGreeting))) return 1;
  std::array<char, kMessageLengthBytes> length{};
  while (ParentChannel::Read(length)) {
    std::string path(std::min(MessageLength({length.data(), length.size()}), kMaxRequestBytes),
                     '\0');
    if (path.empty() || !ParentChannel::Read(path)) return 1;
    const auto what = static_cast<WhatToRead>(path.front());
    path.erase(0, 1);
    EndThisProcessAfter(kMaxLifeOfOneRead);
    const std::string content = answer(path, what);
    EndThisProcessAfter(kNoLimitOfLife);
    if (!ParentChannel::Write(MessageOf(content))) return 1;
  }
  return 0;
}

int ServeSongDetails() {
  return ServeSongDetails([is_low = false](const std::string& path, WhatToRead what) mutable {
    if (what == WhatToRead::kAll && !std::exchange(is_low, true)) LowerThreadPriority();
    return AnswerFor(path, what);
  });
}

}  // namespace tallow

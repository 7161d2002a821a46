// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/song_sender.h"

#include <utility>

namespace tallow {
namespace {

/// How long a song waits for others, while a slow disk is asked for their files.
constexpr std::chrono::milliseconds kMaxDelay{100};

}  // namespace

SongSender::SongSender(WinAMP_Control& player, Accepted accepted)
    : player_(player), accepted_(std::move(accepted)) {
  if (player.Kind() == PlayerKind::kTallowPlayer) own_.emplace(player.OwnPlayer());
}

Sent SongSender::Add(std::int32_t song, const std::string& path, std::size_t number) {
  if (!own_) return SendToWinamp({song, number}, path);
  // The path exceeds the limit of the system, so the file cannot exist.
  if (!TallowPlayer::FitsInRecord(0, path)) return FlushIfDue();
  const Sent sent = TallowPlayer::FitsInRecord(bytes_, path) ? FlushIfDue() : Flush();
  if (sent != Sent::kAccepted) return sent;
  if (waiting_.empty()) since_ = Clock::now();
  waiting_.push_back({song, number});
  paths_.push_back(path);
  bytes_ += TallowPlayer::RecordBytes(path);
  return Sent::kAccepted;
}

Sent SongSender::SendToWinamp(const Waiting& song, const std::string& path) {
  if (!player_.AddFileToWinamp(path)) {
    refused_ = song.number;
    return Sent::kListIsFull;
  }
  if (!player_.IsRunning()) return Sent::kPlayerHasEnded;
  const HandedOverSong accepted{song.song, 0};
  Accept({&accepted, 1});
  return Sent::kAccepted;
}

Sent SongSender::FlushIfDue() {
  const bool due = !waiting_.empty() && Clock::now() - since_ >= kMaxDelay;
  return due ? Flush() : Sent::kAccepted;
}

Sent SongSender::Flush() {
  const Sent sent = SendPart(0, waiting_.size());
  waiting_.clear();
  paths_.clear();
  bytes_ = 0;
  return sent;
}

Sent SongSender::SendPart(std::size_t from, std::size_t count) {
  if (count == 0) return Sent::kAccepted;
  const std::span<const std::string> paths = std::span(paths_).subspan(from, count);
  std::int64_t answer = own_->AddFiles(at_, paths);
  if (answer == kNoSuchEntry) {
    // The list was cleared meanwhile.
    at_ = kAtEnd;
    answer = own_->AddFiles(at_, paths);
  }
  if (answer == kListHasNoRoom && count == 1) {
    refused_ = waiting_[from].number;
    return Sent::kListIsFull;
  }
  if (answer == kListHasNoRoom) {
    const std::size_t half = count / 2;
    const Sent sent = SendPart(from, half);
    return sent == Sent::kAccepted ? SendPart(from + half, count - half) : sent;
  }
  if (answer <= 0) return WhyNoAnswer();
  std::vector<HandedOverSong> songs;
  songs.reserve(count);
  last_entry_ = static_cast<std::uint64_t>(answer) - 1;
  for (std::size_t k = from; k < from + count; ++k)
    songs.push_back({waiting_[k].song, ++last_entry_});
  Accept(songs);
  return Sent::kAccepted;
}

Sent SongSender::WhyNoAnswer() {
  return player_.IsRunning() ? Sent::kNoAnswer : Sent::kPlayerHasEnded;
}

void SongSender::Accept(std::span<const HandedOverSong> songs) {
  count_ += songs.size();
  accepted_(songs, at_);
}

}  // namespace tallow

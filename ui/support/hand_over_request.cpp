// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/hand_over_request.h"

#include <utility>

namespace tallow {
namespace {

constexpr std::size_t kNumberBytes = 4;

std::uint32_t NumberAt(std::string_view bytes) noexcept {
  std::uint32_t number = 0;
  for (std::size_t k = 0; k < kNumberBytes; ++k)
    number = number << 8 | static_cast<unsigned char>(bytes[k]);
  return number;
}

void AppendNumber(std::string& bytes, std::size_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
}

}  // namespace

HandOverRequest::State HandOverRequest::Add(std::string_view bytes) {
  if (state_ != State::kPartial) return state_;
  received_bytes_ += bytes.size();
  if (received_bytes_ > kMaxBytes) return state_ = State::kBroken;
  bytes_ += bytes;
  ParseFiles();
  // Drops the bytes that ParseFiles() has parsed; their text is stored in files_.
  bytes_.erase(0, std::exchange(parsed_bytes_, 0));
  return state_;
}

void HandOverRequest::ParseFiles() {
  const auto left = [&] { return std::string_view(bytes_).substr(parsed_bytes_); };
  if (!has_count_) {
    if (left().size() < kNumberBytes) return;
    files_left_ = NumberAt(left());
    has_count_ = true;
    parsed_bytes_ += kNumberBytes;
    if (files_left_ > kMaxFiles) {
      state_ = State::kBroken;
      return;
    }
  }
  while (files_left_ > 0) {
    if (left().size() < kNumberBytes) return;
    const std::size_t length = NumberAt(left());
    if (length > kMaxBytes) {
      state_ = State::kBroken;
      return;
    }
    if (left().size() < kNumberBytes + length) return;
    files_.emplace_back(left().substr(kNumberBytes, length));
    parsed_bytes_ += kNumberBytes + length;
    --files_left_;
  }
  state_ = left().empty() ? State::kComplete : State::kBroken;
}

std::string HandOverRequest::Serialize(const std::vector<std::string>& files) {
  std::string bytes;
  AppendNumber(bytes, files.size());
  for (const std::string& file : files) {
    AppendNumber(bytes, file.size());
    bytes += file;
  }
  return bytes;
}

}  // namespace tallow

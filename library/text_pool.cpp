// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/text_pool.h"

#include <cstring>
#include <stdexcept>

namespace tallow {
namespace {

constexpr std::size_t kMaxLengthBytes = 10;

std::size_t EncodeLength(std::size_t length, char* bytes) noexcept {
  std::size_t count = 0;
  while (length >= 0x80) {
    bytes[count++] = static_cast<char>(0x80U | (length & 0x7FU));
    length >>= 7U;
  }
  bytes[count++] = static_cast<char>(length);
  return count;
}

}  // namespace

TextPool::TextPool() : shared_(0, Hash{this}, Equal{this}) {
  blocks_.push_back(std::make_unique<char[]>(kBlockSize));
  blocks_.front()[0] = 0;
}

TextHandle TextPool::Add(std::string_view text) {
  if (text.empty()) return 0;
  char length[kMaxLengthBytes];
  const std::size_t length_bytes = EncodeLength(text.size(), length);
  const std::size_t needed = length_bytes + text.size();
  const std::size_t end_of_block = blocks_.size() << kBlockBits;
  if (used_ + needed > end_of_block) {
    if (end_of_block + needed > kMaxBytes) throw std::length_error("The text pool is full.");
    used_ = end_of_block;
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(std::max(needed, kBlockSize)));
    // An oversized block also occupies the block numbers that follow, as null entries.
    while (blocks_.size() << kBlockBits < used_ + needed) blocks_.push_back(nullptr);
  }
  const std::size_t at = used_;
  char* const to = blocks_[at >> kBlockBits].get() + (at & (kBlockSize - 1));
  std::memcpy(to, length, length_bytes);
  std::memcpy(to + length_bytes, text.data(), text.size());
  used_ += needed;
  // Skip the unused end of an oversized block; its block numbers have no memory of their own.
  if (needed > kBlockSize) used_ = blocks_.size() << kBlockBits;
  return static_cast<TextHandle>(at);
}

TextHandle TextPool::Share(std::string_view text) {
  if (text.empty()) return 0;
  const auto found = shared_.find(text);
  if (found != shared_.end()) return *found;
  const TextHandle handle = Add(text);
  shared_.insert(handle);
  return handle;
}

std::string_view TextPool::Text(TextHandle handle) const noexcept {
  const char* at = blocks_[handle >> kBlockBits].get() + (handle & (kBlockSize - 1));
  std::size_t length = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    length |= std::size_t{byte & 0x7FU} << shift;
    if (byte < 0x80) return {at, length};
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/bounded_stream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>
#if defined(_MSC_VER)
#include <intrin.h>
#endif

namespace tallow {
namespace {

/// A smaller read fills the buffer with this many bytes, so that TagLib's reads of a few bytes each
/// do not become system calls. Larger reads bypass the buffer.
constexpr std::size_t kBufferBytes = 4096;

/// TagLib counts positions in a long, which has 32 bits on Windows. What lies behind is not read.
constexpr std::uint64_t kMaxSize = std::numeric_limits<long>::max();

// The address of the current stack frame. The address of a local variable would not do: the address
// sanitizer puts these elsewhere.
#if defined(_MSC_VER)
std::uintptr_t StackAddress() noexcept {
  return reinterpret_cast<std::uintptr_t>(_AddressOfReturnAddress());
}
#else
std::uintptr_t StackAddress() noexcept {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}
#endif

}  // namespace

BoundedStream::BoundedStream(std::unique_ptr<InputFile> file, const ReadLimits& limits)
    : file_(std::move(file)), limits_(limits), stack_(StackAddress()), left_(limits.max_bytes) {
  end_ = Now() + limits.max_time;
  if (file_) size_ = std::min(file_->Stamp().size, kMaxSize);
}

std::chrono::steady_clock::time_point BoundedStream::Now() const {
  return limits_.now ? limits_.now() : std::chrono::steady_clock::now();
}

bool BoundedStream::MayRead() {
  const std::uintptr_t stack = StackAddress();
  if (std::max(stack, stack_) - std::min(stack, stack_) > kMaxStack) {
    overran_ = true;
    throw StreamNotLeft();
  }
  if (!overran_) overran_ = (limits_.stopped && limits_.stopped()) || Now() > end_;
  if (overran_) CountCallAfterEnd();
  return !overran_;
}

void BoundedStream::CountCallAfterEnd() {
  if (++calls_after_end_ <= kMaxCallsAfterEnd) return;
  overran_ = true;
  throw StreamNotLeft();
}

std::size_t BoundedStream::ReadAt(std::uint64_t offset, char* bytes, std::size_t length) {
  if (length >= kBufferBytes) return file_->ReadAt(offset, {bytes, length});
  if (offset < buffer_at_ || offset + length > buffer_at_ + buffer_.size()) {
    buffer_.resize(kBufferBytes);
    buffer_at_ = offset;
    buffer_.resize(file_->ReadAt(offset, buffer_));
  }
  const std::size_t got = std::min(length, buffer_.size() - (offset - buffer_at_));
  std::memcpy(bytes, buffer_.data() + (offset - buffer_at_), got);
  return got;
}

std::string BoundedStream::Peek(std::uint64_t offset, std::size_t length) {
  if (!file_ || offset >= size_ || !MayRead()) return {};
  std::string bytes(std::min<std::uint64_t>(length, size_ - offset), '\0');
  bytes.resize(ReadAt(offset, bytes.data(), bytes.size()));
  return bytes;
}

TagLib::FileName BoundedStream::name() const { return ""; }

TagLib::ByteVector BoundedStream::readBlock(unsigned long length) {
  if (!file_ || !MayRead()) return {};
  if (position_ >= size_) {
    CountCallAfterEnd();
    return {};
  }
  // The length may come from the file; what cannot be there is not allocated.
  std::uint64_t wanted = std::min<std::uint64_t>(length, size_ - position_);
  if (wanted > left_) {
    wanted = left_;
    overran_ = true;
  }
  if (wanted == 0) return {};
  TagLib::ByteVector bytes(static_cast<unsigned>(wanted), 0);
  const std::size_t got = ReadAt(position_, bytes.data(), static_cast<std::size_t>(wanted));
  bytes.resize(static_cast<unsigned>(got));
  left_ -= got;
  position_ += got;
  return bytes;
}

void BoundedStream::writeBlock(const TagLib::ByteVector& /*data*/) {}

void BoundedStream::insert(const TagLib::ByteVector& /*data*/, unsigned long /*start*/,
                           unsigned long /*replace*/) {}

void BoundedStream::removeBlock(unsigned long /*start*/, unsigned long /*length*/) {}

void BoundedStream::seek(long offset, Position from) {
  MayRead();
  std::int64_t base = 0;
  if (from == Current) base = static_cast<std::int64_t>(position_);
  if (from == End) base = static_cast<std::int64_t>(size_);
  // Both are at most kMaxSize, but their sum may exceed 64 bits.
  const std::int64_t room = std::numeric_limits<std::int64_t>::max() - base;
  const std::int64_t to = base + std::min<std::int64_t>(offset, room);
  position_ = static_cast<std::uint64_t>(
      std::clamp<std::int64_t>(to, 0, static_cast<std::int64_t>(kMaxSize)));
}

long BoundedStream::length() {
  MayRead();
  return static_cast<long>(size_);
}

void BoundedStream::truncate(long /*length*/) {}

}  // namespace tallow

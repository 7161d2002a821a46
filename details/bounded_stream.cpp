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

/// A smaller read fills a buffer with this many bytes, so that TagLib's reads of a few bytes each
/// do not become system calls. Larger reads bypass the buffers. Near the limit of bytes, only the
/// bytes that are asked for are read.
constexpr std::uint64_t kBufferBytes = 4096;

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

bool BoundedStream::DiskFailed() const noexcept {
  return file_ != nullptr && (file_->HasFailed() || (is_late_ && waited_ > limits_.max_time / 2));
}

bool BoundedStream::MayRead() {
  const std::uintptr_t stack = StackAddress();
  if (std::max(stack, stack_) - std::min(stack, stack_) > kMaxStack) {
    overran_ = true;
    throw StreamNotLeft();
  }
  if (!overran_) {
    is_late_ = Now() > end_;
    overran_ = is_late_ || (limits_.stopped && limits_.stopped());
  }
  if (overran_) CountCallAfterEnd();
  return !overran_;
}

void BoundedStream::CountCallAfterEnd() {
  if (++calls_after_end_ <= kMaxCallsAfterEnd) return;
  overran_ = true;
  throw StreamNotLeft();
}

std::size_t BoundedStream::Allowed(std::uint64_t length) noexcept {
  if (length > left_) overran_ = true;
  return static_cast<std::size_t>(std::min(length, left_));
}

std::size_t BoundedStream::ReadFile(std::uint64_t offset, char* bytes, std::size_t length) {
  const auto begin = Now();
  const std::size_t got = file_->ReadAt(offset, {bytes, length});
  waited_ += Now() - begin;
  left_ -= got;
  return got;
}

const BoundedStream::Buffer& BoundedStream::BufferWith(std::uint64_t offset, std::size_t length) {
  auto& [last, other] = buffers_;
  if (!last.Has(offset, length)) std::swap(last, other);
  if (last.Has(offset, length)) {
    // Counted although nothing is read, so that a loop over these bytes ends.
    left_ -= length;
    return last;
  }
  const std::uint64_t full = std::min(kBufferBytes, size_);
  const bool may_fill = left_ >= full;
  // At the end of the file the buffer ends there, because tags are searched for from the end.
  last.at = may_fill ? std::min(offset, size_ - full) : offset;
  last.bytes.resize(may_fill ? static_cast<std::size_t>(full) : length);
  last.bytes.resize(ReadFile(last.at, last.bytes.data(), last.bytes.size()));
  return last;
}

std::size_t BoundedStream::ReadAt(std::uint64_t offset, char* bytes, std::size_t length) {
  if (length >= kBufferBytes) return ReadFile(offset, bytes, length);
  const Buffer& buffer = BufferWith(offset, length);
  const std::uint64_t end = buffer.at + buffer.bytes.size();
  if (end <= offset) return 0;
  const auto got = static_cast<std::size_t>(std::min<std::uint64_t>(length, end - offset));
  std::memcpy(bytes, buffer.bytes.data() + (offset - buffer.at), got);
  return got;
}

std::string BoundedStream::Peek(std::uint64_t offset, std::size_t length) {
  if (!file_ || offset >= size_ || !MayRead()) return {};
  std::string bytes(Allowed(std::min<std::uint64_t>(length, size_ - offset)), '\0');
  if (!bytes.empty()) bytes.resize(ReadAt(offset, bytes.data(), bytes.size()));
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
  const std::size_t wanted = Allowed(std::min<std::uint64_t>(length, size_ - position_));
  if (wanted == 0) return {};
  TagLib::ByteVector bytes(static_cast<unsigned>(wanted), 0);
  const std::size_t got = ReadAt(position_, bytes.data(), wanted);
  bytes.resize(static_cast<unsigned>(got));
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <taglib/tiostream.h>

#include "util/input_file.h"

namespace tallow {

/// The limits of reading one file.
struct ReadLimits {
  /// Bytes that are read from the file in all, with those that are read ahead or again. Bytes that
  /// are returned again from a buffer count, too.
  std::uint64_t max_bytes = std::uint64_t{16} << 20U;
  std::chrono::milliseconds max_time{5000};
  /// The clock; empty: std::chrono::steady_clock.
  std::function<std::chrono::steady_clock::time_point()> now = {};
  /// Whether to stop at once; empty: never. Called often, on the reading thread.
  std::function<bool()> stopped = {};
};

/// Thrown by BoundedStream when its user continues to call it long after its end, or recurses too
/// deeply. Thrown by others to give up a file.
struct StreamNotLeft {};

/// What TagLib reads files through: a read-only stream that ends early when a limit is exceeded. A
/// damaged or malicious file can therefore cost only a bounded number of bytes and time.
///
/// After the limit, reads return nothing, as at the end of the file, and TagLib returns what it has
/// found so far. Code that does not notice this, or the end of the file, and calls on is stopped by
/// an exception after kMaxCallsAfterEnd more calls. The same exception ends a recursion that is
/// deeper than kMaxStack: TagLib descends into each level of an MP4 file, of which a file can have
/// a million. A loop that does not call the stream cannot be stopped here; see child_reader.h.
class BoundedStream final : public TagLib::IOStream {
 public:
  static constexpr int kMaxCallsAfterEnd = 10'000;
  /// Bytes of the stack between the stream's construction and a call.
  static constexpr std::size_t kMaxStack = 192 * 1024;

  /// \param file   null when the file could not be opened
  /// \param limits must outlive the stream
  BoundedStream(std::unique_ptr<InputFile> file, const ReadLimits& limits);

  /// Whether a limit was exceeded, or the read was stopped.
  bool Overran() const noexcept { return overran_; }

  /// Whether the disk is the reason that bytes are missing: it reported an error, or the limit of
  /// time was exceeded and most of the time was spent waiting for it.
  bool DiskFailed() const noexcept;

  /// The bytes at a position, as readBlock returns them, without moving the position.
  std::string Peek(std::uint64_t offset, std::size_t length);

  /// The size of the file in bytes.
  std::uint64_t Size() const noexcept { return size_; }

  // The stream as TagLib uses it. The functions that write do nothing.
  TagLib::FileName name() const override;
  TagLib::ByteVector readBlock(unsigned long length) override;
  void writeBlock(const TagLib::ByteVector& data) override;
  void insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) override;
  void removeBlock(unsigned long start, unsigned long length) override;
  bool readOnly() const override { return true; }
  bool isOpen() const override { return file_ != nullptr; }
  void seek(long offset, Position from) override;
  void clear() override {}
  long tell() const override { return static_cast<long>(position_); }
  long length() override;
  void truncate(long length) override;

 private:
  std::chrono::steady_clock::time_point Now() const;
  /// Counts a call and checks the limits. \returns false after the end
  /// \throws StreamNotLeft
  bool MayRead();
  /// Counts a call after the end of the file or of a limit. \throws StreamNotLeft
  void CountCallAfterEnd();
  /// Bytes of the file from a position on.
  struct Buffer {
    std::uint64_t at = 0;
    std::string bytes;
    bool Has(std::uint64_t offset, std::size_t length) const noexcept {
      return offset >= at && offset + length <= at + bytes.size();
    }
  };

  /// The part of a length that may still be read. If that is not all of it, the limit is overrun.
  std::size_t Allowed(std::uint64_t length) noexcept;
  /// Reads at a position, from a buffer if the bytes are there, and counts the bytes.
  ///
  /// \param length from 1 to the rest of the file, and Allowed
  /// \returns how many bytes were read; fewer only if the file has become shorter
  std::size_t ReadAt(std::uint64_t offset, char* bytes, std::size_t length);
  /// Reads from the file, and counts the bytes. \param length Allowed
  std::size_t ReadFile(std::uint64_t offset, char* bytes, std::size_t length);
  /// The buffer with these bytes; reads them if no buffer has them. Counts the bytes.
  ///
  /// \param length as in ReadAt, and less than the size of a full buffer
  const Buffer& BufferWith(std::uint64_t offset, std::size_t length);

  std::unique_ptr<InputFile> file_;
  const ReadLimits& limits_;
  std::uintptr_t stack_;  ///< where the stack was at the construction
  std::chrono::steady_clock::time_point end_;
  std::chrono::steady_clock::duration waited_{};  ///< for the disk
  std::uint64_t size_ = 0;
  std::uint64_t position_ = 0;
  std::uint64_t left_ = 0;  ///< bytes that may still be read
  int calls_after_end_ = 0;
  bool overran_ = false;
  bool is_late_ = false;  ///< the limit of time was exceeded
  /// The one used last first. Two, because TagLib goes to and fro between the beginning and the end
  /// of a file.
  std::array<Buffer, 2> buffers_;
};

}  // namespace tallow

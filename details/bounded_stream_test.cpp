// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/bounded_stream.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <taglib/tbytevectorstream.h>

#include "tests/temp_folder.h"

namespace tallow {
namespace {

std::string Text(const TagLib::ByteVector& bytes) { return {bytes.data(), bytes.size()}; }

std::string RandomBytes(std::size_t count, std::mt19937& random) {
  std::string bytes(count, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

TEST(BoundedStream, ReadsAndSeeksAsAStreamInMemoryDoes) {
  std::mt19937 random(1);
  const TempFolder folder;
  const std::string content = RandomBytes(30'000, random);
  const ReadLimits limits;
  BoundedStream stream(InputFile::Open(folder.File("a", content)), limits);
  TagLib::ByteVectorStream memory(
      TagLib::ByteVector(content.data(), static_cast<unsigned>(content.size())));
  ASSERT_TRUE(stream.isOpen());
  EXPECT_EQ(stream.length(), memory.length());
  for (int k = 0; k < 3000; ++k) {
    const auto from = static_cast<TagLib::IOStream::Position>(random() % 3);
    const long range = from == TagLib::IOStream::Current ? 2000 : 30'100;
    long to = static_cast<long>(random() % static_cast<unsigned long>(range));
    if (from == TagLib::IOStream::End) to = -to;
    if (from == TagLib::IOStream::End && to < -30'000) continue;
    stream.seek(to, from);
    memory.seek(to, from);
    const unsigned long length = random() % (random() % 4 == 0 ? 9000 : 50);
    ASSERT_EQ(Text(stream.readBlock(length)), Text(memory.readBlock(length)));
    if (stream.tell() < 30'000) {
      ASSERT_EQ(stream.tell(), memory.tell());
    }
  }
  EXPECT_FALSE(stream.Overran());
}

TEST(BoundedStream, EndsAfterItsLimitOfBytes) {
  const TempFolder folder;
  const ReadLimits limits{.max_bytes = 1000};
  BoundedStream stream(InputFile::Open(folder.File("a", std::string(5000, 'x'))), limits);
  EXPECT_EQ(stream.readBlock(600).size(), 600U);
  stream.seek(0, TagLib::IOStream::Beginning);
  EXPECT_EQ(stream.readBlock(400).size(), 400U);
  EXPECT_FALSE(stream.Overran());
  EXPECT_EQ(stream.readBlock(1).size(), 0U);
  EXPECT_TRUE(stream.Overran());
}

/// A file of NULs in memory that counts the bytes that are read.
class CountingFile final : public InputFile {
 public:
  CountingFile(std::uint64_t size, std::uint64_t& bytes_read)
      : InputFile({.size = size, .modified = 0}), bytes_read_(bytes_read) {}
  std::size_t ReadAt(std::uint64_t offset, std::span<char> bytes) override {
    const std::uint64_t size = Stamp().size;
    const auto got = static_cast<std::size_t>(
        std::min<std::uint64_t>(bytes.size(), size - std::min(offset, size)));
    std::fill_n(bytes.begin(), got, '\0');
    bytes_read_ += got;
    return got;
  }

 private:
  std::uint64_t& bytes_read_;
};

TEST(BoundedStream, CountsTheBytesThatAreReadAheadAndReturnedAgain) {
  std::uint64_t read = 0;
  const ReadLimits limits{.max_bytes = 10'000};
  BoundedStream stream(std::make_unique<CountingFile>(100'000, read), limits);
  EXPECT_EQ(stream.Peek(0, 10).size(), 10U);
  EXPECT_EQ(read, 4096U);
  // From the buffer; 5,804 are left.
  EXPECT_EQ(stream.readBlock(100).size(), 100U);
  EXPECT_EQ(read, 4096U);
  stream.seek(50'000, TagLib::IOStream::Beginning);
  EXPECT_EQ(stream.readBlock(5000).size(), 5000U);
  EXPECT_EQ(read, 9096U);
  // Not enough is left to read ahead.
  EXPECT_EQ(stream.readBlock(300).size(), 300U);
  EXPECT_EQ(read, 9396U);
  EXPECT_EQ(stream.Peek(99'000, 504).size(), 504U);
  EXPECT_EQ(read, 9900U);
  EXPECT_FALSE(stream.Overran());
  EXPECT_EQ(stream.Peek(0, 1).size(), 0U);
  EXPECT_TRUE(stream.Overran());
}

TEST(BoundedStream, NeverReadsMoreThanItsLimitOfBytes) {
  std::mt19937 random(2);
  for (int round = 0; round < 200; ++round) {
    std::uint64_t read = 0;
    std::uint64_t returned = 0;
    const ReadLimits limits{.max_bytes = random() % 60'000};
    const std::uint64_t size = 1 + random() % 30'000;
    BoundedStream stream(std::make_unique<CountingFile>(size, read), limits);
    while (!stream.Overran()) {
      const std::uint64_t at = random() % size;
      const auto length =
          static_cast<unsigned long>(1 + random() % (random() % 4 == 0 ? 9000 : 50));
      stream.seek(static_cast<long>(at), TagLib::IOStream::Beginning);
      returned += random() % 2 == 0 ? stream.Peek(at, length).size()
                                    : std::size_t{stream.readBlock(length).size()};
      ASSERT_LE(read, limits.max_bytes);
      ASSERT_LE(returned, limits.max_bytes);
    }
  }
}

TEST(BoundedStream, ReadsTheEndOfAFileOnce) {
  std::uint64_t read = 0;
  const ReadLimits limits;
  BoundedStream stream(std::make_unique<CountingFile>(50'000, read), limits);
  EXPECT_EQ(stream.Peek(49'872, 128).size(), 128U);
  EXPECT_EQ(stream.Peek(0, 10).size(), 10U);
  EXPECT_EQ(stream.Peek(49'840, 32).size(), 32U);
  EXPECT_EQ(stream.Peek(10, 10).size(), 10U);
  EXPECT_EQ(read, 8192U);
}

TEST(BoundedStream, EndsAfterItsLimitOfTime) {
  const TempFolder folder;
  std::chrono::steady_clock::time_point now{};
  const ReadLimits limits{.max_time = std::chrono::seconds(5), .now = [&] { return now; }};
  BoundedStream stream(InputFile::Open(folder.File("a", "abcd")), limits);
  now += std::chrono::seconds(5);
  EXPECT_EQ(Text(stream.readBlock(1)), "a");
  now += std::chrono::milliseconds(1);
  EXPECT_EQ(Text(stream.readBlock(1)), "");
  EXPECT_TRUE(stream.Overran());
}

/// A file on a disk that takes a while for each read.
class SlowFile final : public InputFile {
 public:
  SlowFile(std::chrono::steady_clock::time_point& now, std::chrono::milliseconds time_of_a_read)
      : InputFile({.size = 100'000, .modified = 0}), now_(now), time_of_a_read_(time_of_a_read) {}
  std::size_t ReadAt(std::uint64_t /*offset*/, std::span<char> bytes) override {
    now_ += time_of_a_read_;
    return bytes.size();
  }

 private:
  std::chrono::steady_clock::time_point& now_;
  std::chrono::milliseconds time_of_a_read_;
};

TEST(BoundedStream, TellsASlowDiskFromAFileThatTakesLong) {
  std::chrono::steady_clock::time_point now{};
  const ReadLimits limits{.max_time = std::chrono::seconds(5), .now = [&] { return now; }};
  BoundedStream slow(std::make_unique<SlowFile>(now, std::chrono::milliseconds(2501)), limits);
  EXPECT_EQ(slow.readBlock(5000).size(), 5000U);
  EXPECT_FALSE(slow.DiskFailed());
  now += std::chrono::milliseconds(2500);
  EXPECT_EQ(slow.readBlock(5000).size(), 0U);
  EXPECT_TRUE(slow.Overran());
  EXPECT_TRUE(slow.DiskFailed());
  BoundedStream fast(std::make_unique<SlowFile>(now, std::chrono::milliseconds(2499)), limits);
  EXPECT_EQ(fast.readBlock(5000).size(), 5000U);
  now += std::chrono::milliseconds(2502);
  EXPECT_EQ(fast.readBlock(5000).size(), 0U);
  EXPECT_TRUE(fast.Overran());
  EXPECT_FALSE(fast.DiskFailed());
}

/// A file on a disk with a damaged sector.
class DamagedFile final : public InputFile {
 public:
  DamagedFile() : InputFile({.size = 100'000, .modified = 0}) {}
  std::size_t ReadAt(std::uint64_t /*offset*/, std::span<char> /*bytes*/) override {
    SetFailed();
    return 0;
  }
};

TEST(BoundedStream, TellsAnErrorOfTheDiskFromTheEndOfTheFile) {
  const ReadLimits limits;
  BoundedStream damaged(std::make_unique<DamagedFile>(), limits);
  EXPECT_FALSE(damaged.DiskFailed());
  EXPECT_EQ(damaged.readBlock(10).size(), 0U);
  EXPECT_TRUE(damaged.DiskFailed());
  EXPECT_FALSE(damaged.Overran());
  const TempFolder folder;
  BoundedStream whole(InputFile::Open(folder.File("a", "abcd")), limits);
  EXPECT_EQ(whole.readBlock(10).size(), 4U);
  EXPECT_EQ(whole.readBlock(10).size(), 0U);
  EXPECT_FALSE(whole.DiskFailed());
}

TEST(BoundedStream, EndsWhenItIsStopped) {
  const TempFolder folder;
  bool is_stopped = false;
  const ReadLimits limits{.stopped = [&] { return is_stopped; }};
  BoundedStream stream(InputFile::Open(folder.File("a", "abcd")), limits);
  EXPECT_EQ(Text(stream.readBlock(1)), "a");
  is_stopped = true;
  EXPECT_EQ(Text(stream.readBlock(1)), "");
  EXPECT_TRUE(stream.Overran());
}

TEST(BoundedStream, ALoopThatIgnoresTheEndIsStoppedByAnException) {
  const TempFolder folder;
  const ReadLimits limits{.max_bytes = 3};
  BoundedStream stream(InputFile::Open(folder.File("a", "abcd")), limits);
  const auto loop = [&] {
    for (;;) {
      stream.seek(0, TagLib::IOStream::Beginning);
      stream.readBlock(2);
    }
  };
  EXPECT_THROW(loop(), StreamNotLeft);
}

TEST(BoundedStream, ALoopThatIgnoresTheEndOfTheFileIsStoppedByAnException) {
  const TempFolder folder;
  const ReadLimits limits;
  BoundedStream stream(InputFile::Open(folder.File("a", "abcd")), limits);
  stream.seek(0, TagLib::IOStream::End);
  for (int k = 0; k < BoundedStream::kMaxCallsAfterEnd; ++k)
    ASSERT_EQ(stream.readBlock(2).size(), 0U);
  EXPECT_FALSE(stream.Overran());
  EXPECT_THROW(stream.readBlock(2), StreamNotLeft);
  EXPECT_TRUE(stream.Overran());
}

TEST(BoundedStream, LengthsBeyondTheFileAllocateNothing) {
  const TempFolder folder;
  const ReadLimits limits;
  BoundedStream stream(InputFile::Open(folder.File("a", "abcd")), limits);
  EXPECT_EQ(Text(stream.readBlock(0)), "");
  EXPECT_EQ(Text(stream.readBlock(0x7FFFFFFF)), "abcd");
  stream.seek(0x7FFFFFFF, TagLib::IOStream::Beginning);
  EXPECT_EQ(Text(stream.readBlock(0x7FFFFFFF)), "");
  EXPECT_FALSE(stream.Overran());
}

TEST(BoundedStream, PeekingLeavesThePosition) {
  const TempFolder folder;
  const ReadLimits limits;
  BoundedStream stream(InputFile::Open(folder.File("a", "abcdef")), limits);
  stream.seek(1, TagLib::IOStream::Beginning);
  EXPECT_EQ(stream.Peek(4, 10), "ef");
  EXPECT_EQ(stream.Peek(6, 10), "");
  EXPECT_EQ(Text(stream.readBlock(2)), "bc");
}

TEST(BoundedStream, AFolderAndAMissingFileAreNotOpen) {
  const TempFolder folder;
  EXPECT_EQ(InputFile::Open(folder.path()), nullptr);
  EXPECT_EQ(InputFile::Open(folder / "missing"), nullptr);
  const ReadLimits limits;
  BoundedStream stream(nullptr, limits);
  EXPECT_FALSE(stream.isOpen());
  EXPECT_EQ(stream.readBlock(5).size(), 0U);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/bounded_stream.h"

#include <chrono>
#include <gtest/gtest.h>
#include <random>
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

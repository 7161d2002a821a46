// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/hand_over_request.h"

#include <gtest/gtest.h>
#include <random>

namespace tallow {
namespace {

using namespace std::string_literals;
using State = HandOverRequest::State;
using Texts = std::vector<std::string>;

TEST(HandOverRequestTest, ARequestParsesTheSameInPiecesOfAnySize) {
  const Texts files{"/a", "", "/m/caf\xE9\n.juk", std::string(70000, 'x'), "\0"s};
  const std::string bytes = HandOverRequest::Serialize(files);
  for (const std::size_t piece :
       {std::size_t{1}, std::size_t{3}, std::size_t{4096}, bytes.size()}) {
    HandOverRequest request;
    State state = State::kPartial;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
      EXPECT_EQ(state, State::kPartial);
      state = request.Add(std::string_view(bytes).substr(at, piece));
    }
    EXPECT_EQ(state, State::kComplete);
    EXPECT_EQ(request.Files(), files);
  }
}

TEST(HandOverRequestTest, TheBytesMatchTheDocumentedFormat) {
  EXPECT_EQ(HandOverRequest::Serialize({"/a", "/bc"}), "\0\0\0\2\0\0\0\2/a\0\0\0\3/bc"s);
  HandOverRequest none;
  EXPECT_EQ(none.Add("\0\0\0\0"s), State::kComplete);
  EXPECT_TRUE(none.Files().empty());
}

TEST(HandOverRequestTest, NumbersBeyondTheLimitsAreRejected) {
  for (const std::string& bytes :
       {"\xFF\xFF\xFF\xFF"s, "\0\1\x86\xA1"s, "\0\0\0\1\xFF\xFF\xFF\xFF"s, "\0\0\0\1\0\x60\0\1"s,
        "\0\0\0\0x"s}) {
    HandOverRequest request;
    EXPECT_EQ(request.Add(bytes), State::kBroken);
    EXPECT_EQ(request.Add("more"), State::kBroken);
  }
}

TEST(HandOverRequestTest, ARequestBeyondTheMaximumSizeIsBroken) {
  HandOverRequest request;
  std::string bytes =
      HandOverRequest::Serialize({std::string(5 << 20, 'x'), std::string(5 << 20, 'x')});
  EXPECT_EQ(request.Add(bytes), State::kBroken);
}

TEST(HandOverRequestTest, RandomBytesNeverYieldMoreThanWasSent) {
  std::mt19937 random(1);
  for (int round = 0; round < 10000; ++round) {
    HandOverRequest request;
    std::size_t sent = 0;
    for (int piece = 0; piece < 5; ++piece) {
      // Small numbers, so that some lengths are plausible.
      std::string bytes(random() % 40, '\0');
      for (char& byte : bytes) byte = static_cast<char>(random() % 4 == 0 ? random() % 20 : 0);
      sent += bytes.size();
      request.Add(bytes);
    }
    std::size_t taken = 0;
    for (const std::string& file : request.Files()) taken += 4 + file.size();
    EXPECT_LE(taken, sent);
  }
}

}  // namespace
}  // namespace tallow

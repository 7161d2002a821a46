// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/like.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "util/text.h"

namespace tallow {
namespace {

TEST(Like, PlainTextMatchesItselfCaseSensitively) {
  EXPECT_TRUE(Like("A.MP3", "A.MP3"));
  EXPECT_FALSE(Like("A.MP3", "a.mp3"));
  EXPECT_FALSE(Like("A.MP3", "A.MP"));
  EXPECT_TRUE(Like("", ""));
  EXPECT_FALSE(Like("a", ""));
}

TEST(Like, QuestionMarkMatchesOneCodePoint) {
  EXPECT_TRUE(Like("b\xC3\xA9p", "b?p"));
  EXPECT_TRUE(Like("b\xFFp", "b?p"));
  EXPECT_FALSE(Like("bp", "b?p"));
  EXPECT_FALSE(Like("b\xC3\xA9p", "b??p"));
}

TEST(Like, AsteriskMatchesAnyRun) {
  EXPECT_TRUE(Like("hard; can not be removed", "*hard*"));
  EXPECT_TRUE(Like("abcabd", "*ab?"));
  EXPECT_TRUE(Like("", "*"));
  EXPECT_TRUE(Like("mississippi", "m*iss*ip*i"));
  EXPECT_FALSE(Like("mississippi", "m*iss*ix*i"));
}

TEST(Like, NumberSignMatchesOneDigit) {
  EXPECT_TRUE(Like("Track 7", "Track #"));
  EXPECT_FALSE(Like("Track x", "Track #"));
  EXPECT_FALSE(Like("B#.mp3", "B#.mp3"));
}

TEST(Like, BracketsMatchOneCharacterOfAList) {
  EXPECT_TRUE(Like("A1.MP3", "A[1].MP3"));
  EXPECT_FALSE(Like("A[1].MP3", "A[1].MP3"));
  EXPECT_TRUE(Like("b", "[a-c]"));
  EXPECT_FALSE(Like("d", "[a-c]"));
  EXPECT_TRUE(Like("d", "[!a-c]"));
  EXPECT_FALSE(Like("b", "[!a-c]"));
  EXPECT_TRUE(Like("!", "[!]"));
  EXPECT_TRUE(Like("-", "[-a]"));
  EXPECT_TRUE(Like("-", "[a-]"));
  EXPECT_TRUE(Like("[", "[[]"));
  EXPECT_TRUE(Like("*", "[*]"));
  EXPECT_FALSE(Like("x", "[*]"));
  EXPECT_FALSE(Like("b", "[c-a]"));
  EXPECT_TRUE(Like("\xC3\xA9", "[\xC3\xA0-\xC3\xBF]"));
}

TEST(Like, AClosingBracketAloneMatchesItself) { EXPECT_TRUE(Like("a]b", "a]b")); }

TEST(Like, AnEmptyListMatchesNoCharacter) {
  EXPECT_TRUE(Like("ab", "a[]b"));
  EXPECT_TRUE(Like("", "[]"));
}

TEST(Like, AnUnclosedBracketMatchesItself) {
  EXPECT_TRUE(Like("demo [live.mp3", "demo [live.mp3"));
  EXPECT_TRUE(Like("a[", "a["));
  EXPECT_TRUE(Like("a[b", "a[?"));
}

TEST(SameName, EqualTextOrAMatch) {
  EXPECT_TRUE(SameName("B#.mp3", "B#.mp3"));
  EXPECT_TRUE(SameName("Jazz [x]", "Jazz [x]"));
  EXPECT_TRUE(SameName("B1.mp3", "B#.mp3"));
  EXPECT_FALSE(SameName("B#.mp3", "B1.mp3"));
}

TEST(MatchesFilePattern, IgnoresCaseAsAFileSystemDoes) {
  EXPECT_TRUE(MatchesFilePattern("SONG.MP3", "*.mp3"));
  EXPECT_TRUE(MatchesFilePattern(".mp3", "*.mp3"));
  EXPECT_FALSE(MatchesFilePattern("song.mp3x", "*.mp3"));
  EXPECT_FALSE(MatchesFilePattern("mp3", "*.mp3"));
  EXPECT_TRUE(MatchesFilePattern("Tallow-Player", "tallow-player"));
  EXPECT_TRUE(MatchesFilePattern("a#1.x", "a#?.X"));
  EXPECT_TRUE(MatchesFilePattern("\xFF.Mp3", "*.mp3"));
  EXPECT_TRUE(MatchesFilePattern("anything", "*"));
}

/// Reference implementation: plain recursion over characters.
bool ReferenceLike(const std::u32string& text, std::size_t t, const std::u32string& pattern,
                   std::size_t p) {
  if (p == pattern.size()) return t == text.size();
  const char32_t c = pattern[p];
  if (c == U'*') {
    for (std::size_t k = t; k <= text.size(); ++k)
      if (ReferenceLike(text, k, pattern, p + 1)) return true;
    return false;
  }
  if (c == U'[') {
    const std::size_t close = pattern.find(U']', p + 1);
    if (close != std::u32string::npos) {
      std::u32string list = pattern.substr(p + 1, close - p - 1);
      if (list.empty()) return ReferenceLike(text, t, pattern, close + 1);
      if (t == text.size()) return false;
      const bool negated = list.size() > 1 && list[0] == U'!';
      if (negated) list.erase(0, 1);
      bool in = false;
      for (std::size_t k = 0; k < list.size(); ++k) {
        if (k + 2 < list.size() && list[k + 1] == U'-') {
          in = in || (list[k] <= text[t] && text[t] <= list[k + 2]);
          k += 2;
        } else {
          in = in || list[k] == text[t];
        }
      }
      return in != negated && ReferenceLike(text, t + 1, pattern, close + 1);
    }
  }
  if (t == text.size()) return false;
  const bool fits = c == U'?' || (c == U'#' ? text[t] >= U'0' && text[t] <= U'9' : c == text[t]);
  return fits && ReferenceLike(text, t + 1, pattern, p + 1);
}

TEST(MatchesFilePattern, ASemicolonSeparatesPatterns) {
  EXPECT_TRUE(MatchesFilePattern("a.FLAC", "*.mp3;*.flac;x?.ogg"));
  EXPECT_TRUE(MatchesFilePattern("xy.ogg", "*.mp3;*.flac;x?.ogg"));
  EXPECT_FALSE(MatchesFilePattern("xyz.ogg", "*.mp3;*.flac;x?.ogg"));
  EXPECT_FALSE(MatchesFilePattern("a.mp3;b.flac", "*.mp3;*.ogg"));
}

TEST(Like, AgreesWithPlainRecursionOnRandomPatterns) {
  std::mt19937 random(7);
  const std::u32string text_letters = U"ab1[]-!\u00E9";
  const std::u32string pattern_letters = U"ab1[[]]-!*?#\u00E9";
  const auto draw = [&](const std::u32string& letters, std::size_t most) {
    std::u32string drawn;
    for (auto n = random() % (most + 1); n > 0; --n) drawn += letters[random() % letters.size()];
    return drawn;
  };
  const auto bytes = [](const std::u32string& text) {
    std::string result;
    for (const char32_t c : text) AppendCharacter(result, c);
    return result;
  };
  int matches = 0;
  for (int round = 0; round < 200000; ++round) {
    const std::u32string text = draw(text_letters, 5);
    const std::u32string pattern = draw(pattern_letters, 7);
    const bool expected = ReferenceLike(text, 0, pattern, 0);
    matches += expected;
    ASSERT_EQ(Like(bytes(text), bytes(pattern)), expected)
        << bytes(text) << " / " << bytes(pattern);
  }
  EXPECT_GT(matches, 1000);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/song_finder.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <thread>

#include "app/columns/given_rank.h"
#include "app/find/find_words.h"
#include "util/threads.h"

namespace tallow {
namespace {

/// A thread of its own searches at least this number of songs.
constexpr std::size_t kSongsOfThread = 20'000;

/// A typed word, and what is known of it before the songs are searched.
struct Word {
  std::string text;
  std::uint64_t pairs;
  std::vector<WordMatch> shared;  ///< see FindIndex::SharedMatches
};

/// Hits of a part of the songs, in the order of their names: first those at the beginning of words,
/// each by rank; the last group has no rank.
constexpr std::size_t kRanks = static_cast<std::size_t>(kHighestRank) + 1;
using Groups = std::array<std::vector<std::int32_t>, 2 * kRanks>;

std::size_t GroupOf(WordMatch match, std::uint8_t rank) noexcept {
  return (match == WordMatch::kAtWordStart ? 0 : kRanks) + (kRanks - 1 - rank);
}

WordMatch MatchOfSong(const Word& word, const FindIndex::Entry& entry, const FindIndex& index) {
  const WordMatch shared =
      std::max({word.shared[entry.artist], word.shared[entry.album], word.shared[entry.genre]});
  if (shared == WordMatch::kAtWordStart || (entry.pairs & word.pairs) != word.pairs) return shared;
  return std::max(shared, MatchOf(word.text, index.OwnText(entry)));
}

void FindIn(std::span<const FindIndex::Entry> entries, const FindIndex& index,
            std::span<const Word> words, Groups& groups) {
  for (const FindIndex::Entry& entry : entries) {
    WordMatch worst = WordMatch::kAtWordStart;
    for (const Word& word : words) {
      worst = std::min(worst, MatchOfSong(word, entry, index));
      if (worst == WordMatch::kNone) break;
    }
    if (worst != WordMatch::kNone) groups[GroupOf(worst, entry.rank)].push_back(entry.record);
  }
}

std::vector<std::int32_t> Joined(std::span<const Groups> parts) {
  std::size_t hits = 0;
  for (const Groups& groups : parts)
    for (const auto& group : groups) hits += group.size();
  std::vector<std::int32_t> records;
  records.reserve(hits);
  for (std::size_t k = 0; k < Groups().size(); ++k)
    for (const Groups& groups : parts)
      records.insert(records.end(), groups[k].begin(), groups[k].end());
  return records;
}

}  // namespace

std::vector<std::int32_t> SongFinder::Find(std::string_view typed) {
  std::vector<std::string> texts = WordsOf(typed);
  if (texts.empty()) return {};
  index_.Update(library_, details_);
  // Long words rule out more songs.
  std::ranges::sort(texts, std::ranges::greater(), &std::string::size);
  std::vector<Word> words;
  for (std::string& text : texts) {
    const std::uint64_t pairs = BytePairsOf(text);
    std::vector<WordMatch> shared = index_.SharedMatches(text);
    words.push_back({std::move(text), pairs, std::move(shared)});
  }

  const std::span<const FindIndex::Entry> entries(index_.Entries());
  const std::size_t cores = std::max(std::thread::hardware_concurrency(), 1U);
  const std::size_t count = std::clamp<std::size_t>(entries.size() / kSongsOfThread, 1, cores);
  std::vector<Groups> parts(count);
  std::vector<std::thread> threads(count);
  for (std::size_t k = 0; k < count; ++k) {
    const std::size_t begin = entries.size() * k / count;
    const std::size_t end = entries.size() * (k + 1) / count;
    const auto find = [&, part = entries.subspan(begin, end - begin), k] {
      FindIn(part, index_, words, parts[k]);
    };
    // This thread searches the last part.
    if (k + 1 < count)
      threads[k] = StartThreadOrRun(find);
    else
      find();
  }
  for (std::thread& thread : threads) Join(thread);
  return Joined(parts);
}

}  // namespace tallow

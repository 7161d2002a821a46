// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/song_finder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <utility>

#include "app/columns/given_rank.h"
#include "app/find/find_words.h"
#include "util/work_at_once.h"

namespace tallow {
namespace {

/// A thread of its own searches at least this number of songs.
constexpr std::size_t kSongsOfThread = 20'000;
/// A thread of its own puts at least this number of songs in order.
constexpr std::size_t kOrderedByThread = 200'000;

/// A typed word, and what is known of it before the songs are searched.
struct Word {
  std::string text;
  std::uint64_t pairs;
  std::vector<WordMatch> sets;  ///< see FindIndex::SetMatches
};

// A hit belongs to a group: first are those at the beginning of words, each by rank; the last group
// has no rank.
constexpr std::size_t kRanks = static_cast<std::size_t>(kHighestRank) + 1;
constexpr std::size_t kGroups = 2 * kRanks;
constexpr std::uint8_t kNoHit = kGroups;
/// Hits of a part of the songs, in the order of their names.
using Groups = std::array<std::vector<std::int32_t>, kGroups>;

std::uint8_t GroupOf(WordMatch match, std::uint8_t rank) noexcept {
  return static_cast<std::uint8_t>((match == WordMatch::kAtWordStart ? 0 : kRanks) +
                                   (kRanks - 1 - rank));
}

WordMatch MatchOfSong(const Word& word, const FindIndex::Entry& entry, std::uint64_t pairs,
                      const FindIndex& index) {
  const WordMatch shared = word.sets[entry.set];
  if (shared == WordMatch::kAtWordStart || (pairs & word.pairs) != word.pairs) return shared;
  return std::max(shared, MatchOf(word.text, index.OwnText(entry)));
}

/// The group of an entry, or kNoHit.
std::uint8_t GroupOf(const FindIndex& index, std::size_t k, std::span<const Word> words) {
  const FindIndex::Entry& entry = index.Entries()[k];
  if (!entry.is_there) return kNoHit;
  WordMatch worst = WordMatch::kAtWordStart;
  for (const Word& word : words) {
    worst = std::min(worst, MatchOfSong(word, entry, index.Pairs()[k], index));
    if (worst == WordMatch::kNone) return kNoHit;
  }
  return GroupOf(worst, entry.rank);
}

/// Calls a function for parts of numbers below `size` at the same time.
template <typename Work>
void ForParts(const std::vector<std::size_t>& ends, const Work& work) {
  std::vector<std::function<void()>> works;
  for (std::size_t part = 0; part + 1 < ends.size(); ++part)
    works.emplace_back([&, part] { work(part, ends[part], ends[part + 1]); });
  WorkAtOnce(works);
}

std::vector<std::int32_t> Joined(std::span<const Groups> parts) {
  std::size_t hits = 0;
  for (const Groups& groups : parts)
    for (const auto& group : groups) hits += group.size();
  std::vector<std::int32_t> records;
  records.reserve(hits);
  for (std::size_t k = 0; k < kGroups; ++k)
    for (const Groups& groups : parts)
      records.insert(records.end(), groups[k].begin(), groups[k].end());
  return records;
}

/// The hits in their order.
/// \param group_of by record number - 1
std::vector<std::int32_t> Ordered(std::span<const std::int32_t> by_name,
                                  std::span<const std::uint8_t> group_of) {
  const std::vector<std::size_t> ends = PartsForCores(by_name.size(), kOrderedByThread);
  std::vector<Groups> parts(ends.size() - 1);
  ForParts(ends, [&](std::size_t part, std::size_t begin, std::size_t end) {
    for (const std::int32_t record : by_name.subspan(begin, end - begin))
      if (const std::uint8_t group = group_of[static_cast<std::size_t>(record - 1)];
          group != kNoHit)
        parts[part][group].push_back(record);
  });
  return Joined(parts);
}

}  // namespace

std::vector<std::int32_t> SongFinder::Find(std::string_view typed,
                                           std::chrono::milliseconds max_wait) {
  std::vector<std::string> texts = WordsOf(typed);
  if (texts.empty()) return {};
  index_.Update(library_, details_, max_wait);
  // Long words rule out more songs.
  std::ranges::sort(texts, std::ranges::greater(), &std::string::size);
  std::vector<Word> words;
  for (std::string& text : texts) {
    const std::uint64_t pairs = BytePairsOf(text);
    std::vector<WordMatch> sets = index_.SetMatches(text);
    words.push_back({std::move(text), pairs, std::move(sets)});
  }
  std::vector<std::uint8_t> group_of(index_.Entries().size());
  ForParts(PartsForCores(group_of.size(), kSongsOfThread),
           [&](std::size_t, std::size_t begin, std::size_t end) {
             for (std::size_t k = begin; k < end; ++k) group_of[k] = GroupOf(index_, k, words);
           });
  return Ordered(index_.ByName(), group_of);
}

}  // namespace tallow

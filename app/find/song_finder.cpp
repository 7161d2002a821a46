// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/song_finder.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>

#include "app/library_details.h"
#include "details/details_table.h"
#include "library/cls_main.h"
#include "util/fold.h"

namespace tallow {
namespace {

/// How well a word matches.
enum class Match : unsigned char { kNone, kInside, kAtWordStart };

std::vector<std::string> WordsOf(std::string_view typed) {
  const std::string folded = Folded(typed);
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < folded.size();) {
    const std::size_t end = std::min(folded.find(' ', begin), folded.size());
    if (end > begin) words.push_back(folded.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

Match MatchOf(std::string_view word, std::string_view folded) {
  Match best = Match::kNone;
  for (std::size_t at = folded.find(word); at != std::string_view::npos;
       at = folded.find(word, at + 1)) {
    if (IsWordStart(folded, at)) return Match::kAtWordStart;
    best = Match::kInside;
  }
  return best;
}

struct Hit {
  Match match;
  std::int32_t rank;
  std::string name;
  std::int32_t record;
};

}  // namespace

std::vector<std::int32_t> SongFinder::Find(std::string_view typed) {
  const std::vector<std::string> words = WordsOf(typed);
  if (words.empty()) return {};
  const DetailsTable& table = details_.LoadAll();
  std::vector<Hit> hits;
  for (std::int32_t record = 1; record <= library_.UBoundOfMp3Array(); ++record) {
    const SongView song = library_.Song(record);
    if (!song.IsPresent()) continue;
    const DetailsRow row = table.Row(record);
    Match worst = Match::kAtWordStart;
    for (const std::string& word : words) {
      Match best = Match::kNone;
      for (const std::string_view text : {row.title, row.artist, row.album, row.genre, song.Name()})
        best = std::max(best, MatchOf(word, Folded(text)));
      worst = std::min(worst, best);
    }
    if (worst == Match::kNone) continue;
    std::string name;
    AppendNaturalBytes(name, Folded(song.Name()));
    hits.push_back({worst, song.Rank(), std::move(name), record});
  }
  std::ranges::sort(hits, [](const Hit& a, const Hit& b) {
    return std::tie(b.match, b.rank, a.name, a.record) <
           std::tie(a.match, a.rank, b.name, b.record);
  });
  std::vector<std::int32_t> records(hits.size());
  std::ranges::transform(hits, records.begin(), &Hit::record);
  return records;
}

}  // namespace tallow

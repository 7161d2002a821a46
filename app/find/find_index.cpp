// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/find_index.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "app/columns/given_rank.h"
#include "app/find/own_text.h"
#include "app/library_details.h"
#include "library/cls_main.h"
#include "util/fold.h"
#include "util/free_memory.h"
#include "util/text_order.h"
#include "util/work_at_once.h"

namespace tallow {
namespace {

/// Replaced own texts of fewer bytes are not removed.
constexpr std::size_t kMinWaste = std::size_t{1} << 20U;
/// A thread of its own makes the texts of at least this number of songs.
constexpr std::size_t kSongsOfThread = 5'000;
/// Fewer new songs than this part of all are put in their places; otherwise all are sorted.
constexpr std::size_t kManyNew = 8;

/// The songs that can be found, in the order of their file names.
std::vector<std::int32_t> SongsByName(const clsMain& library) {
  std::vector<std::int32_t> records;
  std::string keys;
  std::vector<std::size_t> ends;
  const auto rows = static_cast<std::size_t>(library.UBoundOfMp3Array());
  records.reserve(rows);
  ends.reserve(rows);
  std::string folded;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    if (!song.IsPresent()) continue;
    folded.clear();
    AppendFolded(folded, song.Name());
    AppendNaturalBytes(keys, folded);
    records.push_back(record);
    ends.push_back(keys.size());
  }
  std::vector<std::string_view> views;
  views.reserve(ends.size());
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    views.push_back(std::string_view(keys).substr(begin, end - begin));
    begin = end;
  }
  std::vector<std::int32_t> sorted;
  sorted.reserve(records.size());
  for (const std::uint32_t index : OrderOfTexts(views)) sorted.push_back(records[index]);
  return sorted;
}

std::uint8_t RankOf(const SongView& song) {
  return static_cast<std::uint8_t>(GivenRank(song.Rank()));
}

}  // namespace

void FindIndex::Update(const clsMain& library, LibraryDetails& details,
                       std::chrono::milliseconds max_wait) {
  if (!is_built_) return Build(library, details, max_wait);
  const DetailsTable& table = details.LoadAll(max_wait);
  if (names_version_ != library.NamesVersion()) FollowNames(library, table);
  if (library_version_ != library.Version()) FollowRanks(library);
  FollowDetails(library, table);
  FollowSets(table);
  PackIfWasteful();
}

void FindIndex::Build(const clsMain& library, LibraryDetails& details,
                      std::chrono::milliseconds max_wait) {
  const FreeMemoryReturned memory;
  const std::function<void()> works[] = {[&] { by_name_ = SongsByName(library); },
                                         [&] { details.LoadAll(max_wait); }};
  details.BeginLoading();
  WorkAtOnce(works);
  ++sorts_;
  const DetailsTable& table = details.Table();
  FillTexts(library, table);
  names_version_ = library.NamesVersion();
  FollowRanks(library);
  details_version_ = table.Version();
  packings_ = table.Packings();
  FollowSets(table);
  is_built_ = true;
}

void FindIndex::FillTexts(const clsMain& library, const DetailsTable& table) {
  const auto rows = static_cast<std::size_t>(library.UBoundOfMp3Array());
  entries_ = std::vector<Entry>(rows);
  pairs_ = std::vector<std::uint64_t>(rows);
  const std::vector<std::size_t> ends = PartsForCores(rows, kSongsOfThread);
  std::vector<std::string> texts(ends.size() - 1);
  std::vector<std::function<void()>> works;
  for (std::size_t part = 0; part < texts.size(); ++part)
    works.emplace_back([&, part] {
      OwnTextMaker maker;
      for (std::size_t k = ends[part]; k < ends[part + 1]; ++k) {
        const auto record = static_cast<std::int32_t>(k + 1);
        const SongView song = library.Song(record);
        if (!song.IsPresent()) continue;
        const std::string_view text = maker.Make(song.Name(), table.Title(record));
        pairs_[k] = BytePairsOf(text);
        entries_[k] = {.begin = static_cast<std::uint32_t>(texts[part].size()),
                       .length = static_cast<std::uint16_t>(text.size()),
                       .is_there = true,
                       .set = table.SharedSet(record)};
        texts[part] += text;
      }
    });
  WorkAtOnce(works);
  std::size_t size = 0;
  for (const std::string& text : texts) size += text.size();
  own_texts_ = {};
  own_texts_.reserve(size);
  wasted_ = 0;
  for (std::size_t part = 0; part < texts.size(); ++part) {
    const auto shift = static_cast<std::uint32_t>(own_texts_.size());
    for (std::size_t k = ends[part]; k < ends[part + 1]; ++k) entries_[k].begin += shift;
    own_texts_ += std::exchange(texts[part], {});
  }
}

void FindIndex::FollowNames(const clsMain& library, const DetailsTable& table) {
  const auto rows = static_cast<std::size_t>(library.UBoundOfMp3Array());
  std::vector<bool> moves(std::max(rows, entries_.size()));
  std::fill(moves.begin() + static_cast<std::ptrdiff_t>(rows), moves.end(), true);
  entries_.resize(rows);
  pairs_.resize(rows);
  std::vector<std::int32_t> added;
  std::string name;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    Entry& entry = At(record);
    if (!song.IsPresent()) {
      if (!entry.is_there) continue;
      wasted_ += entry.length;
      entry = {};
      moves[static_cast<std::size_t>(record - 1)] = true;
      continue;
    }
    name.clear();
    AppendFolded(name, song.Name());
    if (entry.is_there && NameOf(entry) == name) continue;
    moves[static_cast<std::size_t>(record - 1)] = true;
    entry.is_there = true;
    SetTexts(record, library, table);
    added.push_back(record);
  }
  std::erase_if(by_name_,
                [&](std::int32_t record) { return moves[static_cast<std::size_t>(record - 1)]; });
  InsertByName(library, added);
  names_version_ = library.NamesVersion();
}

void FindIndex::InsertByName(const clsMain& library, const std::vector<std::int32_t>& records) {
  if (records.empty()) return;
  if (records.size() > by_name_.size() / kManyNew) {
    by_name_ = SongsByName(library);
    ++sorts_;
    return;
  }
  std::vector<std::pair<std::string, std::int32_t>> added;
  added.reserve(records.size());
  for (const std::int32_t record : records) added.emplace_back(KeyOfName(record), record);
  std::ranges::sort(added);
  std::vector<std::int32_t> merged;
  merged.reserve(by_name_.size() + added.size());
  auto rest = by_name_.cbegin();
  for (const auto& song : added) {
    const auto place = std::partition_point(rest, by_name_.cend(), [&](std::int32_t record) {
      return std::pair(KeyOfName(record), record) < song;
    });
    merged.insert(merged.end(), rest, place);
    merged.push_back(song.second);
    rest = place;
  }
  merged.insert(merged.end(), rest, by_name_.cend());
  by_name_ = std::move(merged);
}

std::string FindIndex::KeyOfName(std::int32_t record) const {
  std::string key;
  AppendNaturalBytes(key, NameOf(At(record)));
  return key;
}

std::string_view FindIndex::NameOf(const Entry& entry) const noexcept {
  const std::string_view text = OwnText(entry);
  return text.substr(0, text.find(kBetweenTexts));
}

void FindIndex::FollowRanks(const clsMain& library) {
  for (std::size_t k = 0; k < entries_.size(); ++k)
    if (entries_[k].is_there)
      entries_[k].rank = RankOf(library.Song(static_cast<std::int32_t>(k + 1)));
  library_version_ = library.Version();
}

void FindIndex::FollowDetails(const clsMain& library, const DetailsTable& table) {
  const bool are_all = packings_ != table.Packings();
  if (!are_all && details_version_ == table.Version()) return;
  if (are_all) {
    sets_.clear();
    shared_indexes_.clear();
    shared_texts_.clear();
    shared_ends_.clear();
    shared_pairs_.clear();
  }
  for (std::size_t k = 0; k < entries_.size(); ++k) {
    const auto record = static_cast<std::int32_t>(k + 1);
    if (entries_[k].is_there && (are_all || table.ChangedAt(record) > details_version_))
      SetTexts(record, library, table);
  }
  details_version_ = table.Version();
  packings_ = table.Packings();
}

void FindIndex::SetTexts(std::int32_t record, const clsMain& library, const DetailsTable& table) {
  Entry& entry = At(record);
  entry.set = table.SharedSet(record);
  OwnTextMaker maker;
  const std::string_view text = maker.Make(library.Song(record).Name(), table.Title(record));
  if (text == OwnText(entry)) return;
  wasted_ += entry.length;
  entry.begin = static_cast<std::uint32_t>(own_texts_.size());
  entry.length = static_cast<std::uint16_t>(text.size());
  pairs_[static_cast<std::size_t>(record - 1)] = BytePairsOf(text);
  own_texts_ += text;
}

void FindIndex::FollowSets(const DetailsTable& table) {
  for (auto set = static_cast<std::uint32_t>(sets_.size()); set < table.Sets(); ++set) {
    const DetailsTable::SharedTexts texts = table.Texts(set);
    sets_.push_back({SharedIndex(texts.artist, table), SharedIndex(texts.album, table),
                     SharedIndex(texts.genre, table)});
  }
}

std::uint32_t FindIndex::SharedIndex(TextHandle handle, const DetailsTable& table) {
  const auto next = static_cast<std::uint32_t>(shared_ends_.size());
  const auto [found, is_new] = shared_indexes_.emplace(handle, next);
  if (is_new) {
    const std::size_t begin = shared_texts_.size();
    AppendFolded(shared_texts_, table.Text(handle));
    shared_ends_.push_back(static_cast<std::uint32_t>(shared_texts_.size()));
    shared_pairs_.push_back(BytePairsOf(std::string_view(shared_texts_).substr(begin)));
  }
  return found->second;
}

void FindIndex::PackIfWasteful() {
  if (wasted_ < kMinWaste || wasted_ < own_texts_.size() / 2) return;
  std::string packed;
  packed.reserve(own_texts_.size() - wasted_);
  for (Entry& entry : entries_) {
    const std::string_view text = OwnText(entry);
    entry.begin = static_cast<std::uint32_t>(packed.size());
    packed += text;
  }
  own_texts_ = std::move(packed);
  wasted_ = 0;
}

std::vector<WordMatch> FindIndex::SetMatches(std::string_view word) const {
  const std::uint64_t pairs = BytePairsOf(word);
  std::vector<WordMatch> texts(shared_ends_.size());
  std::size_t begin = 0;
  for (std::size_t k = 0; k < texts.size(); ++k) {
    const std::size_t end = shared_ends_[k];
    if ((shared_pairs_[k] & pairs) == pairs)
      texts[k] = MatchOf(word, std::string_view(shared_texts_).substr(begin, end - begin));
    begin = end;
  }
  std::vector<WordMatch> matches(sets_.size());
  std::ranges::transform(sets_, matches.begin(), [&](const std::array<std::uint32_t, 3>& set) {
    return std::max({texts[set[0]], texts[set[1]], texts[set[2]]});
  });
  return matches;
}

std::size_t FindIndex::Bytes() const noexcept {
  constexpr std::size_t kNode = 32;  // of the hash table, and its place in a bucket
  return entries_.capacity() * sizeof(Entry) + pairs_.capacity() * sizeof(std::uint64_t) +
         by_name_.capacity() * sizeof(std::int32_t) + own_texts_.capacity() +
         sets_.capacity() * sizeof(sets_.front()) + shared_texts_.capacity() +
         shared_ends_.capacity() * sizeof(std::uint32_t) +
         shared_pairs_.capacity() * sizeof(std::uint64_t) + shared_indexes_.size() * kNode;
}

}  // namespace tallow

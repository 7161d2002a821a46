// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/find_index.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <span>
#include <thread>

#include "app/columns/given_rank.h"
#include "app/library_details.h"
#include "library/cls_main.h"
#include "util/fold.h"
#include "util/text_order.h"
#include "util/threads.h"

namespace tallow {
namespace {

/// Between the file name and the title in a song's own text; in no folded text.
constexpr char kBetween = '\n';
constexpr std::size_t kMaxOwnText = std::numeric_limits<std::uint16_t>::max();
/// Replaced own texts of fewer bytes are not removed.
constexpr std::size_t kMinWaste = std::size_t{1} << 20U;

/// A checksum of the songs that can be found: of their numbers and file names.
std::uint64_t ChecksumOfSongs(const clsMain& library) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
  std::uint64_t sum = 0;
  for (std::int32_t record = 1; record <= library.UBoundOfMp3Array(); ++record) {
    const SongView song = library.Song(record);
    if (!song.IsPresent()) continue;
    const std::uint64_t hash = std::hash<std::string_view>()(song.Name());
    // Mixed, so that two songs that exchange their names change the sum.
    std::uint64_t mixed = (hash ^ static_cast<std::uint64_t>(record)) * kFactor;
    mixed ^= mixed >> 32U;
    sum += mixed * kFactor;
  }
  return sum;
}

/// The songs that can be found, in the order of their file names.
std::vector<std::int32_t> SongsByName(const clsMain& library) {
  std::vector<std::int32_t> records;
  std::string keys;
  std::vector<std::size_t> ends;
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

/// Makes own texts; keeps the memory of one between songs.
class OwnTextMaker {
 public:
  /// The own text of a song, valid until the next call.
  std::string_view Make(std::string_view name, std::string_view title) {
    text_.clear();
    AppendFolded(text_, name);
    title_.clear();
    AppendFolded(title_, title);
    // What is found in the title is found in a name that contains it, too.
    if (!title_.empty() && MatchOf(title_, text_) != WordMatch::kAtWordStart)
      (text_ += kBetween) += title_;
    return std::string_view(text_).substr(0, kMaxOwnText);
  }

 private:
  std::string text_;
  std::string title_;
};

/// Appends the own text of an entry.
void AppendOwnText(std::string& texts, FindIndex::Entry& entry, std::string_view text) {
  entry.begin = static_cast<std::uint32_t>(texts.size());
  entry.length = static_cast<std::uint16_t>(text.size());
  entry.pairs = BytePairsOf(text);
  texts += text;
}

/// Makes the own texts of entries one after another.
void AppendOwnTexts(std::string& texts, std::span<FindIndex::Entry> entries, const clsMain& library,
                    const DetailsTable& table) {
  OwnTextMaker maker;
  for (FindIndex::Entry& entry : entries)
    AppendOwnText(texts, entry,
                  maker.Make(library.Song(entry.record).Name(), table.Title(entry.record)));
}

}  // namespace

void FindIndex::Update(const clsMain& library, LibraryDetails& details) {
  if (!is_built_) return Build(library, details);
  if (library_version_ != library.Version()) {
    if (ChecksumOfSongs(library) != songs_) return Build(library, details);
    FollowRanks(library);
    library_version_ = library.Version();
  }
  const DetailsTable& table = details.Table();
  if (packings_ != table.Packings()) return Build(library, details);
  if (details_version_ == table.Version()) return;
  FollowDetails(library, table);
  details_version_ = table.Version();
  if (wasted_ > kMinWaste && wasted_ > own_texts_.size() / 2) Build(library, details);
}

void FindIndex::Build(const clsMain& library, LibraryDetails& details) {
  // The names are sorted while the details are read from the database.
  std::vector<std::int32_t> sorted;
  std::thread sorting = StartThreadOrRun([&] { sorted = SongsByName(library); });
  const DetailsTable& table = details.LoadAll();
  Join(sorting);
  entries_.assign(sorted.size(), {});
  entries_.shrink_to_fit();
  for (std::size_t k = 0; k < sorted.size(); ++k) entries_[k].record = sorted[k];
  FillEntries(library, table);
  is_built_ = true;
  library_version_ = library.Version();
  songs_ = ChecksumOfSongs(library);
  details_version_ = table.Version();
  packings_ = table.Packings();
}

void FindIndex::FillEntries(const clsMain& library, const DetailsTable& table) {
  const std::span<Entry> all(entries_);
  const std::span<Entry> second = all.subspan(all.size() / 2);
  std::string texts_of_second;
  std::thread other =
      StartThreadOrRun([&] { AppendOwnTexts(texts_of_second, second, library, table); });
  own_texts_ = {};
  wasted_ = 0;
  AppendOwnTexts(own_texts_, all.first(all.size() / 2), library, table);
  Join(other);
  const auto shift = static_cast<std::uint32_t>(own_texts_.size());
  for (Entry& entry : second) entry.begin += shift;
  own_texts_.reserve(own_texts_.size() + texts_of_second.size());
  own_texts_ += texts_of_second;
  own_texts_.shrink_to_fit();

  shared_indexes_.clear();
  shared_texts_.clear();
  shared_ends_.clear();
  shared_pairs_.clear();
  FillShared(table);
  FollowRanks(library);
}

void FindIndex::FillShared(const DetailsTable& table) {
  std::int32_t last = 0;
  for (const Entry& entry : entries_) last = std::max(last, entry.record);
  std::vector<Entry*> by_record(static_cast<std::size_t>(last) + 1);
  for (Entry& entry : entries_) by_record[static_cast<std::size_t>(entry.record)] = &entry;
  DetailsTable::SharedTexts before;
  const Entry* entry_before = nullptr;
  for (Entry* const entry : by_record) {
    if (entry == nullptr) continue;
    const DetailsTable::SharedTexts shared = table.Shared(entry->record);
    if (entry_before != nullptr && shared == before) {
      entry->artist = entry_before->artist;
      entry->album = entry_before->album;
      entry->genre = entry_before->genre;
    } else {
      SetShared(*entry, table);
    }
    before = shared;
    entry_before = entry;
  }
}

void FindIndex::FollowRanks(const clsMain& library) {
  for (Entry& entry : entries_) entry.rank = RankOf(library.Song(entry.record));
}

void FindIndex::FollowDetails(const clsMain& library, const DetailsTable& table) {
  OwnTextMaker maker;
  for (Entry& entry : entries_) {
    if (table.ChangedAt(entry.record) <= details_version_) continue;
    const std::string_view text =
        maker.Make(library.Song(entry.record).Name(), table.Title(entry.record));
    if (text != OwnText(entry)) {
      wasted_ += entry.length;
      AppendOwnText(own_texts_, entry, text);
    }
    SetShared(entry, table);
  }
}

void FindIndex::SetShared(Entry& entry, const DetailsTable& table) {
  const DetailsTable::SharedTexts shared = table.Shared(entry.record);
  entry.artist = SharedIndex(shared.artist, table);
  entry.album = SharedIndex(shared.album, table);
  entry.genre = SharedIndex(shared.genre, table);
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

std::vector<WordMatch> FindIndex::SharedMatches(std::string_view word) const {
  const std::uint64_t pairs = BytePairsOf(word);
  std::vector<WordMatch> matches(shared_ends_.size());
  std::size_t begin = 0;
  for (std::size_t k = 0; k < matches.size(); ++k) {
    const std::size_t end = shared_ends_[k];
    if ((shared_pairs_[k] & pairs) == pairs)
      matches[k] = MatchOf(word, std::string_view(shared_texts_).substr(begin, end - begin));
    begin = end;
  }
  return matches;
}

std::size_t FindIndex::Bytes() const noexcept {
  constexpr std::size_t kNode = 32;  // of the hash table, and its place in a bucket
  return entries_.capacity() * sizeof(Entry) + own_texts_.capacity() + shared_texts_.capacity() +
         shared_ends_.capacity() * sizeof(std::uint32_t) +
         shared_pairs_.capacity() * sizeof(std::uint64_t) + shared_indexes_.size() * kNode;
}

}  // namespace tallow

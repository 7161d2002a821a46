// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/filing.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "details/tag_date.h"
#include "jukebox/edit_history.h"
#include "jukebox/filing_rules.h"
#include "jukebox/sorting.h"
#include "jukebox/special_folders.h"
#include "library/cls_main.h"
#include "util/natural_order.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Texts of the decade folders of the classic style, indexed by the third digit of the year. The
/// 10's have no folder.
constexpr std::array<std::string_view, 10> kDecades = {"00's", "",     "20's", "30's", "40's",
                                                       "50's", "60's", "70's", "80's", "90's"};

/// Index, from 0, of the digit of a year that selects the decade in the classic style.
constexpr std::size_t kDecadeDigit = 2;

constexpr std::string_view kDigits = "0123456789";

/// The place of a song without a track.
constexpr std::int32_t kLastTrack = std::numeric_limits<std::int32_t>::max();

}  // namespace

Filing::Filing(FolderTree& tree, const clsMain& library, std::vector<std::string>& problems,
               const FolderSet* unused_folders, Scope scope)
    : tree_(tree),
      library_(library),
      switches_(library.Switches()),
      problems_(problems),
      keeps_additions_(unused_folders != nullptr) {
  const FolderSet none{};
  const FolderSet& unused = unused_folders != nullptr ? *unused_folders : none;
  using Match = CategoryIndex::Match;
  if (switches_.albums) Open(album_, FindAlbumFolder(tree_), Match::kWhole, unused);
  if (scope == Scope::kAlbumsOnly) return;
  Folder* const decades = tree_.Find("Decades");
  if (switches_.all_decades)
    Open(decades_, decades, Match::kExact, unused);
  else if (decades != nullptr)
    for (std::size_t k = 0; k < kDecades.size(); ++k)
      if (!kDecades[k].empty()) classic_decades_[k] = tree_.Find(kDecades[k], decades);
  Open(genre_, tree_.Find("Genre"), Match::kExact, unused);
  Open(artist_, tree_.Find("Artist"), switches_.whole_artists ? Match::kWhole : Match::kBeginning,
       unused);
  Open(year_, tree_.Find("Year"), switches_.four_digit_years ? Match::kWhole : Match::kBeginning,
       unused);
}

void Filing::Open(std::optional<CategoryIndex>& index, Folder* category, CategoryIndex::Match match,
                  const FolderSet& unused) {
  if (category == nullptr) return;
  index.emplace(tree_, *category, match, unused);
  categories_.push_back({category, category->Children(), &index == &decades_});
}

void Filing::Append(Folder& folder, const SongEntry& entry) {
  if (keeps_additions_ && old_sizes_.try_emplace(&folder, folder.Items().size()).second)
    filled_.push_back(&folder);
  folder.Items().push_back(entry);
}

void Filing::File(std::int32_t row, const SongTags& tags) {
  if (!tags.found) return;
  const SongView song = library_.Song(row);
  const SongEntry entry(song.RecordNumber(), song.Rank());
  if (artist_) {
    std::string artist = tags.FolderArtist();
    if (switches_.whole_artists)
      artist = ToNfc(Trim(artist));
    else
      StripBrackets(artist);
    if (!artist.empty()) Append(artist_->FolderFor(artist), entry);
  }
  FileByYear(row, entry, tags);
  if (genre_ && tags.genre != "None" && !tags.genre.empty())
    Append(genre_->FolderFor(tags.genre), entry);
  FileByAlbum(entry, tags);
}

void Filing::FileByYear(std::int32_t row, const SongEntry& entry, const SongTags& tags) {
  if (!year_) return;
  const std::string year = YearOf(row, tags);
  if (year.empty()) return;
  Append(year_->FolderFor(year), entry);
  if (Folder* const decade = DecadeOf(year)) Append(*decade, entry);
}

/// The text of a song's year; empty for none. In the classic style, a text that is not a number is
/// reported as an error of the song.
std::string Filing::YearOf(std::int32_t row, const SongTags& tags) {
  if (switches_.four_digit_years) return std::string(FourDigitYear(tags.date));
  std::string year = tags.date;
  StripBrackets(year);
  // Newer tags have whole dates, which begin with the year.
  if (switches_.newer_tags) year.resize(std::min(year.find_first_not_of(kDigits), year.size()));
  if (year.empty()) return {};
  const std::optional<std::int32_t> number = TryConvertToInt32(year);
  if (!number)
    problems_.push_back(library_.Song(row).Path() + ": the year in the tag, '" + year +
                        "', is not a number. The song is in no year and no decade folder.");
  return number && *number != 0 ? year : std::string();
}

Folder* Filing::DecadeOf(const std::string& year) {
  if (switches_.all_decades) {
    const std::string number(FourDigitYear(year));
    const std::string text = DecadeText(TryConvertToInt32(number).value_or(0));
    return decades_ && !text.empty() ? &decades_->FolderFor(text) : nullptr;
  }
  if (year.size() <= kDecadeDigit) return nullptr;
  const char digit = year[kDecadeDigit];
  return digit >= '0' && digit <= '9' ? classic_decades_[static_cast<std::size_t>(digit - '0')]
                                      : nullptr;
}

void Filing::FileByAlbum(const SongEntry& entry, const SongTags& tags) {
  if (!album_) return;
  const std::string text = AlbumFolderText(tags);
  if (text.empty()) return;
  Folder& folder = album_->FolderFor(text);
  if (old_sizes_.try_emplace(&folder, folder.Items().size()).second)
    filled_albums_.push_back(&folder);
  folder.Items().push_back(entry);
  GiveAlbumSong(entry.SubItem(), tags);
}

Filing::AlbumPlace Filing::PlaceOf(std::int32_t record, const SongTags& tags) const {
  return {std::max(tags.disc, 1), tags.track > 0 ? tags.track : kLastTrack,
          NaturalKey(library_.Song(record).Name())};
}

void Filing::GiveAlbumSong(std::int32_t record, const SongTags& tags) {
  places_.insert_or_assign(record, PlaceOf(record, tags));
}

std::vector<std::int32_t> Filing::OldAlbumSongs() const {
  std::vector<std::int32_t> songs;
  for (Folder* const album : filled_albums_) {
    const std::size_t old_size = old_sizes_.at(album);
    for (std::size_t k = 0; k < old_size; ++k) {
      const SongView song = library_.Song(album->Items()[k].SubItem());
      if (song.IsPresent() && !song.IsAway()) songs.push_back(song.Row());
    }
  }
  return songs;
}

void Filing::RecordAdditions(EditHistory& history) const {
  for (const Category& category : categories_)
    history.FoldersAppended(*category.folder, category.old_children);
  for (const auto* const folders : {&filled_, &filled_albums_})
    for (Folder* const folder : *folders) history.SongsAppended(*folder, old_sizes_.at(folder));
}

void Filing::Arrange(EditHistory& history, bool sort_all) {
  for (const Category& category : categories_) ArrangeFolders(category, history, sort_all);
  for (Folder* const album : filled_albums_) ArrangeAlbum(*album, history);
}

void Filing::ArrangeFolders(const Category& category, EditHistory& history, bool sort_all) const {
  const std::int32_t count = category.folder->Children();
  if (category.is_decades) {
    std::vector<std::int32_t> years;
    for (std::int32_t k = 0; k < count; ++k)
      years.push_back(FirstYearOfDecade(category.folder->ChildAt(k).Text()));
    const auto year = [&](std::int32_t k) { return years[static_cast<std::size_t>(k)]; };
    history.ArrangeFolders(*category.folder,
                           OrderWithNew(count, category.old_children,
                                        [&](auto a, auto b) { return year(a) < year(b); }));
    return;
  }
  if (!switches_.natural_order || (!sort_all && count == category.old_children)) return;
  std::vector<std::string> keys;
  keys.reserve(static_cast<std::size_t>(count));
  for (std::int32_t k = 0; k < count; ++k)
    keys.push_back(NaturalKey(category.folder->ChildAt(k).Text()));
  const auto key = [&](std::int32_t k) -> const std::string& {
    return keys[static_cast<std::size_t>(k)];
  };
  history.ArrangeFolders(*category.folder, OrderWithNew(count, sort_all ? 0 : category.old_children,
                                                        [&](auto a, auto b) {
                                                          return NaturalKeyLess(key(a), key(b));
                                                        }));
}

void Filing::ArrangeAlbum(Folder& album, EditHistory& history) const {
  const std::vector<SongEntry>& songs = album.Items();
  const auto place = [&](std::int32_t k) -> const AlbumPlace* {
    const auto found = places_.find(songs[static_cast<std::size_t>(k)].SubItem());
    return found == places_.end() ? nullptr : &found->second;
  };
  const auto comes_before = [&](std::int32_t a, std::int32_t b) {
    const AlbumPlace* const one = place(a);
    const AlbumPlace* const other = place(b);
    // Nothing is put before a song whose place is not known.
    if (one == nullptr || other == nullptr) return false;
    if (one->disc != other->disc) return one->disc < other->disc;
    if (one->track != other->track) return one->track < other->track;
    return NaturalKeyLess(one->name, other->name);
  };
  history.ArrangeSongs(
      album, OrderWithNew(static_cast<std::int32_t>(songs.size()),
                          static_cast<std::int32_t>(old_sizes_.at(&album)), comes_before));
}

void ArrangeFiled(Filing& filing, const SongTagReader& reader, EditHistory& history, bool sort_all,
                  const GoOn& go_on) {
  const std::vector<std::int32_t> rows = filing.OldAlbumSongs();
  try {
    reader.Read(
        rows,
        [&](std::size_t k, const ReadSong& song) {
          if (song.is_answered && !song.has_failed) filing.GiveAlbumSong(rows[k], song.tags);
        },
        go_on);
  } catch (const Stopped&) {
    // The songs whose tags were not read stay where they are.
  }
  filing.Arrange(history, sort_all);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/sorting.h"

#include <array>
#include <optional>
#include <utility>

#include "jukebox/category_index.h"
#include "jukebox/jukebox.h"
#include "library/cls_main.h"
#include "library/folder_scan.h"
#include "library/mp3_tag_editor.h"
#include "library/tag_cache.h"
#include "util/number.h"
#include "util/read_ahead.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::string_view kAllSongs = "All Songs";

/// Number of tags that a thread reads in one batch, see ReadAhead.
constexpr std::size_t kTagsAtOnce = 64;

/// Texts of the decade folders, indexed by the third digit of the year. The 10's have no folder.
constexpr std::array<std::string_view, 10> kDecades = {"00's", "",     "20's", "30's", "40's",
                                                       "50's", "60's", "70's", "80's", "90's"};

/// Maximum number of entries without a song that are reported one by one; a damaged jukebox may
/// have millions.
constexpr std::size_t kMaxNamed = 100;

/// Index, from 0, of the digit of a year that selects the decade.
constexpr std::size_t kDecadeDigit = 2;

/// Request for the tag of a song.
struct TagQuestion {
  std::optional<TagBlock> known;
  std::string path;
};

TagQuestion TagQuestionOf(const SongView& song, const TagCache* found_tags) {
  if (found_tags != nullptr)
    if (const auto found = found_tags->Find(song.Folder(), song.Name())) return {found, {}};
  return {std::nullopt, song.Path()};
}

/// Creates the entry of a song, with its record number and with its rank as icon.
SongEntry EntryOf(const SongView& song) { return {song.RecordNumber(), song.Rank()}; }

/// Files songs into one jukebox during one run.
class Filing {
 public:
  Filing(Jukebox& jukebox, const clsMain& library, std::vector<std::string>& problems)
      : tree_(jukebox.Nodes()), library_(library), problems_(problems) {
    if (Folder* const decades = tree_.Find("Decades"))
      for (std::size_t k = 0; k < kDecades.size(); ++k)
        if (!kDecades[k].empty()) decades_[k] = tree_.Find(kDecades[k], decades);
    OpenCategory(genre_, "Genre", CategoryIndex::Match::kExact);
    OpenCategory(artist_, "Artist", CategoryIndex::Match::kBeginning);
    OpenCategory(year_, "Year", CategoryIndex::Match::kBeginning);
  }

  /// Files a song by its tag.
  void File(std::int32_t row, const TagBlock& block) {
    tag_.LoadMP3({}, block);
    if (!tag_.TagExists()) return;
    const SongEntry entry = EntryOf(library_.Song(row));
    std::string artist = tag_.Artist();
    std::string year = tag_.Year();
    StripBrackets(artist);
    StripBrackets(year);
    if (artist_ && !artist.empty()) artist_->FolderFor(artist).Items().push_back(entry);
    if (year_ && IsYear(year, row)) {
      year_->FolderFor(year).Items().push_back(entry);
      if (Folder* const decade = DecadeOf(year)) decade->Items().push_back(entry);
    }
    const std::string_view genre = GenreNameFromID(tag_.Genra());
    if (genre_ && genre != "None" && !genre.empty())
      genre_->FolderFor(genre).Items().push_back(entry);
  }

 private:
  void OpenCategory(std::optional<CategoryIndex>& index, std::string_view text,
                    CategoryIndex::Match match) {
    if (Folder* const category = tree_.Find(text)) index.emplace(tree_, *category, match);
  }

  /// Whether to file a song by this year. A text that starts with NUL is no year, but not an error.
  /// A text that is not a number is reported as an error of the song.
  bool IsYear(const std::string& year, std::int32_t row) {
    if (year.empty() || year.front() == '\0') return false;
    const std::optional<std::int32_t> number = TryConvertToInt32(year);
    if (!number)
      problems_.push_back(library_.Song(row).Path() + ": the year in the tag, '" +
                          std::string(StripAtNul(year)) +
                          "', is not a number. The song is in no year and no decade folder.");
    return number && *number != 0;
  }

  Folder* DecadeOf(const std::string& year) const noexcept {
    if (year.size() <= kDecadeDigit) return nullptr;
    const char digit = year[kDecadeDigit];
    return digit >= '0' && digit <= '9' ? decades_[static_cast<std::size_t>(digit - '0')] : nullptr;
  }

  FolderTree& tree_;
  const clsMain& library_;
  std::vector<std::string>& problems_;
  MP3TagEditor tag_;
  std::array<Folder*, kDecades.size()> decades_{};
  std::optional<CategoryIndex> genre_;
  std::optional<CategoryIndex> artist_;
  std::optional<CategoryIndex> year_;
};

/// Result of filing into one jukebox.
enum class Filed {
  kAll,
  kNoSongs,    ///< the library is empty
  kCancelled,  ///< cancelled before the last song
};

/// Files the songs that are not yet in one jukebox.
Filed FillJukebox(int mode, Jukebox& jukebox, clsMain& library, const TagCache* found_tags,
                  const FilingProgress& progress, std::vector<std::string>& problems) {
  FolderTree& tree = jukebox.Nodes();
  Folder* const all_songs = tree.Find(kAllSongs);
  jukebox.IsFormDirty(true);
  std::vector<std::int32_t> rows;
  // Each song is added to all its folders at once, so that filing can be cancelled after any song.
  std::vector<Folder*> for_all;
  if (all_songs != nullptr) {
    std::vector<char> flags;
    MarkSongsToFile(*all_songs, library, flags, problems);
    if (flags.empty()) return Filed::kNoSongs;
    for (std::size_t k = 0; k < flags.size(); ++k)
      if (flags[k]) rows.push_back(static_cast<std::int32_t>(k + 1));
    for_all.push_back(all_songs);
    Folder* const latest = tree.Find("New");
    if (mode != kFillAllButNew && latest != nullptr) for_all.push_back(latest);
  }
  for (Folder* const folder : for_all)
    folder->Items().reserve(folder->Items().size() + rows.size());
  Filing filing(jukebox, library, problems);
  std::size_t filed = 0;
  GoOn go_on;
  if (progress) go_on = [&](std::string_view) { return progress(filed, rows.size()); };
  // No value for a song on a drive that does not answer.
  using Tag = std::optional<TagBlock>;
  Filed result = Filed::kAll;
  try {
    ReadAhead(
        rows.size(), kTagsAtOnce,
        [&](std::size_t k) { return TagQuestionOf(library.Song(rows[k]), found_tags); },
        [unanswered = library.Unanswered()](const TagQuestion& question) -> Tag {
          if (question.known) return question.known;
          if (unanswered->Covers(question.path)) return std::nullopt;
          return ReadTagBlock(question.path);
        },
        [&](std::size_t k, const Tag& tag) {
          if (tag) {
            for (Folder* const folder : for_all)
              folder->Items().push_back(EntryOf(library.Song(rows[k])));
            filing.File(rows[k], *tag);
            ++filed;
          }
          if (go_on && !go_on({})) throw Stopped();
        },
        go_on
            ? library.WaitingFor([&](std::size_t k) { return library.Song(rows[k]).Path(); }, go_on)
            : WhileWaiting(),
        [](std::size_t) { return Tag(); });
  } catch (const Stopped&) {
    result = Filed::kCancelled;
  }
  jukebox.ListRefilled(library);
  return result;
}

}  // namespace

FilingError::FilingError(std::vector<std::string> problems)
    : std::runtime_error(problems.front()), problems_(std::move(problems)) {}

std::string FilingLine(std::size_t filed, std::size_t songs) {
  return "Filed " + std::to_string(filed) + " of " + std::to_string(songs) + " songs";
}

std::string FilingCancelledLine() {
  return "Filing was cancelled; the remaining songs will be filed when the jukebox is next opened";
}

bool FillAutomaticFolders(int mode, bool skip_sort, std::string_view caption, clsMain& library,
                          std::span<Jukebox* const> windows, const TagCache* found_tags,
                          const FilingProgress& progress) {
  if (!skip_sort) library.SortByRecord();
  std::vector<std::string> problems;
  Filed filed = Filed::kAll;
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (!caption.empty() && (*window)->Caption() != caption) continue;
    filed = FillJukebox(mode, **window, library, found_tags, progress, problems);
    if (filed != Filed::kAll) break;
  }
  if (!problems.empty()) throw FilingError(std::move(problems));
  return filed != Filed::kCancelled;
}

void MarkSongsToFile(const Folder& folder, const clsMain& library, std::vector<char>& flags,
                     std::vector<std::string>& problems) {
  const std::int32_t count = library.UBoundOfMp3Array();
  flags.assign(static_cast<std::size_t>(count), 1);
  if (count == 0) return;
  for (std::int32_t row = 1; row <= count; ++row) {
    const SongView song = library.Song(row);
    if (!song.IsPresent() || song.IsAway()) flags[static_cast<std::size_t>(row - 1)] = 0;
  }
  std::size_t unknown_rows = 0;
  for (const SongEntry& entry : folder.Items()) {
    const std::int32_t record = entry.SubItem();
    if (library.IsHidden(record) && record < 1) continue;
    if (library.Song(record).Exists())
      flags[static_cast<std::size_t>(record - 1)] = 0;
    else if (++unknown_rows <= kMaxNamed)
      problems.push_back("'" + folder.Text() + "' contains an entry for song number " +
                         std::to_string(record) + ", but the library has songs 1 to " +
                         std::to_string(count) + ". The entry was skipped.");
  }
  if (unknown_rows > kMaxNamed)
    problems.push_back("'" + folder.Text() + "' contains " +
                       std::to_string(unknown_rows - kMaxNamed) +
                       " more entries for songs that are not in the library. They were skipped.");
}

std::vector<std::int32_t> RefreshFolderList(Folder& folder, const clsMain& library) {
  std::vector<std::int32_t> removed;
  std::vector<SongEntry>& entries = folder.Items();
  // Compact the list in place, instead of removing entries one by one; `kept` is the next free
  // index.
  std::size_t kept = 0;
  std::int32_t position = 0;
  bool skip = false;
  for (std::size_t k = 0; k < entries.size(); ++k) {
    SongEntry entry = entries[k];
    const std::int32_t record = entry.SubItem();
    const SongView song = library.Song(record);
    const bool present = song.IsPresent();
    const bool hidden = !present && library.IsHidden(record);
    const bool known = hidden || song.Exists();
    if (!skip && !known) {
      // Kept for compatibility: after an entry that is removed here, the next one is not checked.
      skip = true;
      removed.push_back(static_cast<std::int32_t>(k));
      continue;
    }
    if (!skip && !present && !hidden) {
      removed.push_back(static_cast<std::int32_t>(k));
      continue;
    }
    if (!hidden) ++position;
    if (!skip) {
      entry.LabelPosition(hidden ? 0 : position);
      if (!hidden) entry.Icon(song.Rank());
    }
    skip = false;
    entries[kept++] = entry;
  }
  entries.resize(kept);
  return removed;
}

std::string_view GenreNameFromID(std::int32_t id) noexcept { return GenreName(id); }

void StripBrackets(std::string& text) {
  for (char& c : text)
    if (c == '[' || c == ']') c = ' ';
  text = std::string(Trim(text));
}

}  // namespace tallow

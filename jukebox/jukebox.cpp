// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox.h"

#include <new>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

#include "jukebox/sorting.h"
#include "library/cls_main.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/quicksort.h"

namespace tallow {
namespace {

/// One of the four sort orders of the list, which clicks cycle through.
struct ListOrder {
  std::string_view header;
  SongColumn key;
  void (*sort)(TextTable&, std::int32_t, std::int32_t, std::int16_t, std::int16_t);
};

/// Maximum size of a jukebox file. A million songs in all their folders need less than a tenth of
/// this.
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{1} << 30U;

constexpr int kFirstOrder = 1;
constexpr int kLastOrder = 4;

constexpr ListOrder kOrders[kLastOrder] = {
    {"Name    --   ", kFileName, &SortCity::QuickSortStringsAscending},
    {"Name    --   ", kFileName, &SortCity::QuickSortStringsDescending},
    {"By Rank -- best to worst", kSongRank, &SortCity::QuickSortNumericDecending},
    {"By Rank -- worst to best", kSongRank, &SortCity::QuickSortNumericAscending},
};

/// The indexes, from 0, of a folder's songs that are shown in its list.
std::vector<std::size_t> ShownPlaces(const std::vector<SongEntry>& entries,
                                     const clsMain& library) {
  std::vector<std::size_t> places;
  places.reserve(entries.size());
  for (std::size_t k = 0; k < entries.size(); ++k)
    if (!library.IsHidden(entries[k].SubItem())) places.push_back(k);
  return places;
}

/// The shown songs of a folder as a table of two columns: the sort key and the record number.
/// Sorting the table does not move hidden songs.
class KeyTable : public TextTable {
 public:
  static constexpr std::int16_t kKey = 1;
  static constexpr std::int16_t kColumns = 2;

  KeyTable(std::vector<SongEntry>& entries, const clsMain& library, SongColumn key)
      : entries_(entries),
        library_(library),
        key_(key),
        places_(ShownPlaces(entries, library)),
        origins_(entries.size()) {
    std::iota(origins_.begin(), origins_.end(), 0);
  }

  std::int32_t Rows() const noexcept { return static_cast<std::int32_t>(places_.size()); }

  /// For each position, the position that its song had before the sort; both from 0.
  std::vector<std::int32_t>& Origins() noexcept { return origins_; }

  std::string_view Cell(std::int16_t /*column*/, std::int32_t row) const override {
    const std::int32_t record = entries_[PlaceOf(row)].SubItem();
    // An entry that labelling skipped may refer to no song.
    return library_.Song(record).Exists() ? library_.Mp3Info(key_, record) : "0";
  }

  void MoveRows(std::int32_t first, std::span<const std::int32_t> order,
                std::int16_t /*columns*/) override {
    std::vector<std::int32_t> records(order.size());
    std::vector<std::int32_t> origins(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
      const std::size_t from = PlaceOf(order[k]);
      records[k] = entries_[from].SubItem();
      origins[k] = origins_[from];
    }
    for (std::size_t k = 0; k < order.size(); ++k) {
      const std::size_t to = PlaceOf(first + static_cast<std::int32_t>(k));
      entries_[to].SubItem(records[k]);
      origins_[to] = origins[k];
    }
  }

 private:
  std::size_t PlaceOf(std::int32_t row) const { return places_[static_cast<std::size_t>(row - 1)]; }

  std::vector<SongEntry>& entries_;
  const clsMain& library_;
  SongColumn key_;
  std::vector<std::size_t> places_;
  std::vector<std::int32_t> origins_;
};

}  // namespace

std::string_view FileNameOf(const SongEntry& entry, const clsMain& library) {
  return library.Song(entry.SubItem()).Name();
}

std::string EntryText(const SongEntry& entry, const clsMain& library) {
  if (entry.LabelPosition() == 0) return std::to_string(entry.SubItem());
  return (std::to_string(entry.LabelPosition()) + ".  ").append(FileNameOf(entry, library));
}

void Jukebox::Caption(std::string_view caption) {
  caption_ = caption;
  if (view_ != nullptr) view_->CaptionChanged();
}

void Jukebox::AddColumnHeader(std::string_view text) {
  headers_.emplace_back(text);
  if (view_ != nullptr) view_->HeadersChanged();
}

void Jukebox::NameColumnHeader(std::string_view text) {
  if (headers_.empty()) headers_.emplace_back();
  headers_.front() = text;
  if (view_ != nullptr) view_->HeadersChanged();
}

std::string Jukebox::Encode(const clsMain& library) const {
  return EncodeJukebox(tree_, headers_, library, absent_names_);
}

bool Jukebox::Save(const std::string& path, const clsMain& library) {
  const auto fail = [this](const std::string& reason) {
    file_problem_ = "The jukebox could not be saved. " + reason +
                    ". Save it in another folder, or mend this and save again.";
    return false;
  };
  try {
    const std::string bytes = Encode(library);
    if (bytes.size() > kMaxFileBytes) return fail(path + ": there are too many songs for one file");
    const auto before = StampOf(path);
    // Skip reading the old file when the sizes differ.
    if (!before || before->size != bytes.size() || ReadWholeFile(path) != bytes)
      WriteFileAtomically(path, bytes, [&] { KeepReplaced(path); });
  } catch (const FileError& error) {
    return fail(error.what());
  } catch (const std::bad_alloc&) {
    return fail(path + ": there is not enough memory");
  }
  file_path_ = path;
  RememberContent();
  return true;
}

bool Jukebox::Load(const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) {
  const auto fail = [this](const std::string& reason) {
    file_problem_ = "The jukebox could not be opened. " + reason + ".";
    return false;
  };
  try {
    const auto bytes = ReadWholeFile(path, kMaxFileBytes);
    if (!bytes) throw FileError(path, "the file is gone");
    Take(*bytes, path, library, ask);
  } catch (const FileTooLargeError&) {
    return fail(FileError(path, "the file is too large for a jukebox").what());
  } catch (const FileError& error) {
    return fail(error.what());
  } catch (const JukeboxFileError& error) {
    return fail(path + ": " + error.what() +
                (FileExists(path + std::string(kBackupSuffix))
                     ? ". The jukebox as it was saved before is in " +
                           std::string(NameOfPath(path)) + std::string(kBackupSuffix) +
                           " beside it; give that a name that ends in .juk"
                     : std::string()));
  } catch (const std::bad_alloc&) {
    return fail(path + ": there is not enough memory");
  }
  RememberContent();
  return true;
}

bool Jukebox::LoadUnsaved(std::string_view bytes, const std::string& file, const clsMain& library,
                          const ResolveConfusedSongs& ask) {
  try {
    Take(bytes, file, library, ask);
  } catch (const JukeboxFileError& error) {
    file_problem_ = error.what();
    return false;
  } catch (const std::bad_alloc&) {
    file_problem_ = "there is not enough memory";
    return false;
  }
  is_form_dirty_ = true;
  // The inverted hash makes the content differ from that of the file. Later content matches this
  // value only by a collision, one in 2^64.
  remembered_content_ = ~ContentHash(tree_);
  return true;
}

void Jukebox::Take(std::string_view bytes, const std::string& path, const clsMain& library,
                   const ResolveConfusedSongs& ask) {
  JukeboxContent content = DecodeJukebox(bytes);
  RelinkSongs(content, library, ask);
  SongNames absent_names = AbsentNames(content, library);
  FolderTree loaded;
  FillTree(content, library, loaded);
  selected_ = nullptr;
  sort_state_ = 0;
  history_.Clear();
  tree_.Swap(loaded);
  headers_ = std::move(content.columns);
  absent_names_ = std::move(absent_names);
  file_path_ = path;
  if (view_ != nullptr) {
    view_->HeadersChanged();
    view_->ListChanged();
  }
}

void Jukebox::Renumber(const NewNumbers& numbers) {
  const std::uint64_t before = ContentHash(tree_);
  for (std::int32_t k = 0; k < tree_.Children(); ++k) tallow::Renumber(tree_.ChildAt(k), numbers);
  history_.Renumber(numbers);
  const std::uint64_t after = ContentHash(tree_);
  if (before == remembered_content_)
    remembered_content_ = after;
  else
    remembered_is_stale_ = true;
}

bool Jukebox::HasUnsavedChanges(const clsMain& library) const {
  if (file_path_.empty() || IsGone(file_path_)) return true;
  if (!DiffersFromFile()) return false;
  if (!remembered_is_stale_) return true;
  Jukebox file;
  return !file.Load(file_path_, library) || ContentHash(file.tree_) != ContentHash(tree_);
}

void Jukebox::IsFormDirty(bool dirty) noexcept {
  is_form_dirty_ = dirty;
  if (!dirty) history_.MarkSaved();
}

Jukebox::StepResult Jukebox::Undo() {
  return history_.CanUndo() ? AfterStep(history_.Undo()) : StepResult{};
}

Jukebox::StepResult Jukebox::Redo() {
  return history_.CanRedo() ? AfterStep(history_.Redo()) : StepResult{};
}

Jukebox::StepResult Jukebox::AfterStep(Folder* concerned) {
  HideRemovedFolder();
  return {true, concerned, selected_ != nullptr && history_.LastSongChange(*selected_).any};
}

void Jukebox::ResetSort() {
  NameColumnHeader(kNameHeader);
  sort_state_ = 0;
}

void Jukebox::HideRemovedFolder() {
  if (selected_ == nullptr || tree_.Contains(*selected_)) return;
  for (SongEntry& entry : std::exchange(selected_, nullptr)->Items()) entry.LabelPosition(0);
  if (view_ != nullptr) view_->ListChanged();
}

void Jukebox::PicturesChanged() {
  if (view_ != nullptr) view_->LabelsChanged();
}

void Jukebox::LabelSongs(const clsMain& library) {
  history_.SongsPruned(*selected_, RefreshFolderList(*selected_, library));
}

void Jukebox::ShowFolder(Folder& folder, const clsMain& library, std::int64_t& folder_changes) {
  if (selected_ != nullptr)
    for (SongEntry& entry : selected_->Items()) entry.LabelPosition(0);
  ++folder_changes;
  selected_ = &folder;
  // Fill the list first: a header change makes views read the rows.
  ListRefilled(library);
  ResetSort();
}

void Jukebox::ListRefilled(const clsMain& library) {
  if (selected_ == nullptr) return;
  LabelSongs(library);
  if (view_ != nullptr) view_->ListChanged();
}

void Jukebox::ColumnClick(const clsMain& library) {
  if (selected_ == nullptr) return;
  const int state = sort_state_ == 0 ? kFirstOrder : sort_state_;
  const ListOrder& order = kOrders[state - 1];
  std::vector<SongEntry>& entries = selected_->Items();
  KeyTable table(entries, library, order.key);
  history_.Begin(selected_);
  const auto keep = [&] {
    history_.SongsReordered(*selected_, std::move(table.Origins()));
    history_.End();
  };
  try {
    order.sort(table, 1, table.Rows(), KeyTable::kKey, KeyTable::kColumns);
  } catch (...) {
    // Some songs have already moved.
    keep();
    ListRefilled(library);
    throw;
  }
  keep();
  sort_state_ = state == kLastOrder ? kFirstOrder : state + 1;
  const std::size_t before = entries.size();
  LabelSongs(library);
  NameColumnHeader(order.header);
  if (view_ == nullptr) return;
  if (entries.size() == before)
    view_->LabelsChanged();
  else
    view_->ListChanged();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/library_details.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string_view>
#include <utility>

#include "app/records_by_path.h"
#include "details/all_rows.h"
#include "details/cover_reader.h"
#include "details/details_store.h"
#include "details/tag_children.h"
#include "details/tag_reader.h"
#include "library/cls_main.h"
#include "util/file_system.h"
#include "util/number.h"

namespace tallow {
namespace {

/// Reading the details of one song by its path takes as long as reading about this number of songs
/// in their order.
constexpr std::size_t kRowsInTimeOfOne = 16;

}  // namespace

/// The database. Worker threads that were abandoned keep it alive.
struct LibraryDetails::Stored {
  explicit Stored(std::string path_) : path(std::move(path_)) {}

  /// The store, opened by the first call.
  DetailsStore& Store() {
    std::call_once(was_opened, [this] {
      store.Open(path);
      is_open = true;
    });
    return store;
  }

  const std::string path;
  std::once_flag was_opened;
  std::atomic<bool> is_open = false;
  DetailsStore store;
};

/// What BeginLoading has started.
struct LibraryDetails::Loading {
  Loading(const std::string& database, std::vector<std::string> paths, const clsMain& library,
          const std::vector<std::int32_t>& missing)
      : rows(database, std::move(paths)),
        records(library, missing),
        last(library.UBoundOfMp3Array()),
        names_version(library.NamesVersion()) {}

  AllRows rows;
  RecordsByPath records;  ///< made while the rows are being read
  std::int32_t last;      ///< record number of the last song
  std::uint64_t names_version;
  bool has_found = false;  ///< details were stored since the last look
};

LibraryDetails::LibraryDetails(std::string path, std::function<RemainingTime::Time()> now)
    : stored_(std::make_shared<Stored>(std::move(path))), now_(std::move(now)) {}

LibraryDetails::~LibraryDetails() {
  // A thread that was abandoned may be writing, and destroys the database when it ends.
  if (Stop()) stored_->store.Close();
}

ReadTags LibraryDetails::TagReader() const {
  auto children = children_ ? std::make_shared<TagChildren>(*children_) : nullptr;
  return [stored = stored_, children = std::move(children)](const std::string& path) {
    DetailsStore& store = stored->Store();
    // At the first run nothing is stored, and the disk need not be asked for the stamp.
    if (!store.IsEmpty())
      if (const auto stamp = StampOf(path))
        if (auto details = store.Find(path, *stamp)) return std::move(details->tags);
    return children ? children->Read(path) : ReadSongTags(path);
  };
}

std::optional<SongTags> LibraryDetails::TagsOf(const std::string& path) const {
  if (!stored_->is_open) return std::nullopt;
  return stored_->store.TagsOf(path);
}

DetailsRow LibraryDetails::RowOf(std::int32_t record) {
  if (library_ == nullptr || record < 1) return {};
  // Only reading songs opens the database, and songs that are away are not read.
  if (!stored_->is_open && filler_ && pass_.empty() && record > loaded_) BeginLoading();
  // What LoadAll has not found is not stored.
  const bool may_be_stored = !table_.Knows(record) && record > loaded_ && stored_->is_open;
  if (may_be_stored && !library_->Song(record).IsMissing()) {
    if (const auto details = stored_->store.LastOf(library_->Song(record).Path())) {
      table_.Set(record, tallow::RowOf(*details));
      // The song may be one that was not known before, because the filler has stored it since.
      if (std::exchange(returned_unknown_, false)) ++version_;
    }
  }
  const DetailsRow row = table_.Row(record);
  if (!row.known) returned_unknown_ = true;
  return row;
}

void LibraryDetails::BeginLoading() {
  DropOutdatedLoading();
  if (library_ == nullptr || loading_ != nullptr) return;
  const std::int32_t rows = library_->UBoundOfMp3Array();
  std::vector<std::int32_t> missing;
  for (std::int32_t record = loaded_ + 1; record <= rows; ++record)
    if (!table_.Knows(record) && !library_->Song(record).IsMissing()) missing.push_back(record);
  if (missing.empty()) {
    loaded_ = std::max(loaded_, rows);
    return;
  }
  table_.Reserve(rows);
  // A few songs are read one by one, because reading all rows would take longer.
  std::vector<std::string> paths;
  if (missing.size() < static_cast<std::size_t>(rows) / kRowsInTimeOfOne)
    for (const std::int32_t record : missing) paths.push_back(library_->Song(record).Path());
  loading_ = std::make_unique<Loading>(stored_->path, std::move(paths), *library_, missing);
}

void LibraryDetails::StoreLoaded(std::string_view path, const DetailsRow& row) {
  loading_->records.ForEach(path, [&](std::int32_t record) {
    // What was read from the file meanwhile is newer.
    if (table_.Knows(record)) return;
    table_.Set(record, row);
    loading_->has_found = true;
  });
}

void LibraryDetails::TakeLoaded(std::chrono::steady_clock::time_point until) {
  DropOutdatedLoading();
  if (loading_ == nullptr) return;
  const auto store = [this](std::string_view path, const DetailsRow& row) {
    StoreLoaded(path, row);
  };
  const AllRows::State state = loading_->rows.Take(store, until);
  // There is no database yet, or it cannot be read. The store creates it.
  if (state == AllRows::State::kFailed) stored_->Store().ReadAll(store);
  if (std::exchange(loading_->has_found, false) && std::exchange(returned_unknown_, false))
    ++version_;
  if (state == AllRows::State::kReading) return;
  loaded_ = loading_->last;
  loading_.reset();
}

void LibraryDetails::DropOutdatedLoading() {
  if (loading_ != nullptr && library_->NamesVersion() != loading_->names_version) loading_.reset();
}

const DetailsTable& LibraryDetails::LoadAll(std::chrono::milliseconds max_wait) {
  const auto until = std::chrono::steady_clock::now() + max_wait;
  BeginLoading();
  TakeLoaded(until);
  return table_;
}

void LibraryDetails::Keep(std::int32_t record, const DetailsRow& row) {
  const bool was_known = table_.Knows(record);
  if (!table_.Set(record, row)) return;
  // What nobody has asked for is no news.
  if (was_known || record <= loaded_ || std::exchange(returned_unknown_, false)) ++version_;
}

std::function<std::string(const std::string& path, const std::function<bool()>& stopped)>
LibraryDetails::CoverReader() const {
  return [children = children_](const std::string& path, const std::function<bool()>& stopped) {
    return ReadCover(path, children, stopped);
  };
}

RemainingTime::Time LibraryDetails::Now() const {
  return now_ ? now_() : std::chrono::steady_clock::now();
}

void LibraryDetails::Start(const clsMain& library, DetailsFiller::MakeReader make_reader) {
  if (library_ != &library) {
    table_.Clear();
    loading_.reset();
    loaded_ = 0;
    ++version_;
  }
  library_ = &library;
  if (!make_reader && children_) make_reader = ReadersInChildren(*children_);
  // The first worker thread opens the database, because that may wait for the disk.
  const auto open = [stored = stored_, make = std::move(make_reader)]() -> DetailsFiller::Reader {
    stored->Store();
    if (make) return make();
    return [](const std::string& path, const std::function<bool()>& stopped) {
      return ReadSongDetails(path, {.stopped = stopped});
    };
  };
  // The store is a part of the object that the filler keeps alive.
  filler_.emplace(std::shared_ptr<DetailsStore>(stored_, &stored_->store), open);
  facts_.clear();
  BeginPass();
}

void LibraryDetails::BeginPass() {
  needs_pass_ = false;
  const bool are_all = facts_.empty();
  rows_ = library_->UBoundOfMp3Array();
  facts_.resize(static_cast<std::size_t>(rows_) + 1);
  pass_.clear();
  songs_ = 0;
  newer_ = 0;
  for (std::int32_t record = 1; record <= rows_; ++record) {
    const SongView song = library_->Song(record);
    if (!song.IsPresent()) continue;
    ++songs_;
    const unsigned char facts = facts_[static_cast<std::size_t>(record)];
    if ((facts & kOnlyNewer) != 0) ++newer_;
    if ((facts & kRead) == 0 && !song.IsAway()) pass_.push_back(record);
  }
  remaining_.emplace(Now());
  progress_ = {0, pass_.size()};
  filler_->Start(
      pass_.size(), [this](std::size_t index) { return library_->Song(pass_[index]).Path(); },
      are_all);
}

void LibraryDetails::Poll() {
  TakeLoaded({});
  if (!filler_) return;
  // Not during a pass, nor in the call that ends it, because that would wait for its threads.
  if (!IsReading() && (needs_pass_ || library_->UBoundOfMp3Array() > rows_)) BeginPass();
  if (!IsReading()) return;
  progress_ = filler_->Poll(
      [this](std::size_t index, const SongDetails& details) { Add(pass_[index], details); });
}

void LibraryDetails::Add(std::int32_t record, const SongDetails& details) {
  unsigned char& facts = facts_[static_cast<std::size_t>(record)];
  facts = 0;
  // A file that was not there or could not be opened has no stamp, and is tried again.
  if (details.stamp != FileStamp()) facts |= kRead;
  if (details.failed) facts |= kFailed;
  Keep(record, tallow::RowOf(details));
  if (!details.HasOnlyNewerTags()) return;
  facts |= kOnlyNewer;
  if (library_->IsPresent(record)) ++newer_;
}

bool LibraryDetails::Stop() {
  loading_.reset();
  const bool all_ended = !filler_ || filler_->Stop();
  filler_.reset();
  remaining_.reset();
  return all_ended;
}

std::string LibraryDetails::ProgressText() const {
  if (!IsReading() || !remaining_->IsLong(progress_.done, progress_.total, Now())) return {};
  return "Reading the details of songs: " +
         GroupedNumber(static_cast<std::int64_t>(progress_.done)) + " of " +
         GroupedNumber(static_cast<std::int64_t>(progress_.total));
}

std::vector<std::int32_t> LibraryDetails::Having(Fact fact) const {
  std::vector<std::int32_t> records;
  for (std::size_t record = 1; record < facts_.size(); ++record)
    if ((facts_[record] & fact) != 0 && library_->IsPresent(static_cast<std::int32_t>(record)))
      records.push_back(static_cast<std::int32_t>(record));
  return records;
}

std::vector<std::string> LibraryDetails::TakeProblems() { return stored_->store.TakeProblems(); }

}  // namespace tallow

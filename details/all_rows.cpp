// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/all_rows.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <utility>

#include "details/database.h"
#include "details/details_schema.h"
#include "util/detached_threads.h"

namespace tallow {
namespace {

/// Rows that are handed out together.
constexpr std::size_t kRowsOfBatch = 1000;
/// Rows that are read while the database is locked against commits.
constexpr std::int64_t kRowsOfPart = 20'000;

/// The texts of a row, in the order in which a batch has them.
constexpr std::array kTexts = {&DetailsRow::title, &DetailsRow::artist, &DetailsRow::album_artist,
                               &DetailsRow::album, &DetailsRow::genre,  &DetailsRow::format};

/// Rows with copies of their texts, one after another in one block of memory.
class Batch {
 public:
  void Add(std::string_view path, const DetailsRow& row) {
    Row& added = rows_.emplace_back();
    added.row = row;
    AddText(added, 0, path);
    for (std::size_t k = 0; k < kTexts.size(); ++k) AddText(added, k + 1, row.*kTexts[k]);
  }
  std::size_t Size() const noexcept { return rows_.size(); }

  void HandOut(const AllRows::FoundRow& found) {
    std::size_t begin = 0;
    const auto next = [&](std::size_t length) {
      const std::string_view text = std::string_view(texts_).substr(begin, length);
      begin += length;
      return text;
    };
    for (Row& row : rows_) {
      const std::string_view path = next(row.lengths[0]);
      for (std::size_t k = 0; k < kTexts.size(); ++k) row.row.*kTexts[k] = next(row.lengths[k + 1]);
      found(path, row.row);
    }
  }

 private:
  struct Row {
    std::array<std::size_t, kTexts.size() + 1> lengths;
    DetailsRow row;
  };
  void AddText(Row& row, std::size_t index, std::string_view text) {
    row.lengths[index] = text.size();
    texts_ += text;
  }

  std::string texts_;
  std::vector<Row> rows_;
};

}  // namespace

/// What the thread shares with its object. A thread that was abandoned keeps it alive.
struct AllRows::Shared {
  /// The work of the thread.
  void Read();
  void ReadPaths(Database& database);
  /// Reads a part of the rows. \param last path of the last row that was read; becomes the new one
  /// \returns the number of rows
  std::int64_t ReadPart(Database& database, std::string& last);
  void Add(const Statement& row);
  void HandOver();

  std::string path;
  std::vector<std::string> paths;
  std::atomic<bool> is_stopped = false;
  Batch batch;  ///< being filled; used by the thread alone

  std::mutex mutex;  ///< guards all below
  std::condition_variable changed;
  DetachedThreads threads{mutex};
  std::vector<Batch> batches;
  State state = State::kReading;
};

void AllRows::Shared::Add(const Statement& row) {
  batch.Add(row.View(0), RowOf(row));
  if (batch.Size() == kRowsOfBatch) HandOver();
}

void AllRows::Shared::HandOver() {
  const std::lock_guard lock(mutex);
  batches.push_back(std::exchange(batch, {}));
  changed.notify_all();
}

void AllRows::Shared::ReadPaths(Database& database) {
  Statement find(database.get(), kReadRow);
  for (const std::string& song : paths) {
    if (is_stopped) return;
    find.BindBytes(0, song);
    if (find.Step()) Add(find);
    find.Reset();
  }
}

std::int64_t AllRows::Shared::ReadPart(Database& database, std::string& last) {
  Statement rows(database.get(), kReadRows);
  rows.BindBytes(0, last);
  rows.Bind(1, kRowsOfPart);
  std::int64_t count = 0;
  std::string path_of_row;
  while (!is_stopped && rows.Step()) {
    Add(rows);
    // The parameter has to stay as it is until the last step.
    if (++count == kRowsOfPart) path_of_row = rows.Text(0);
  }
  last = std::move(path_of_row);
  return count;
}

void AllRows::Shared::Read() {
  State end = State::kComplete;
  try {
    Database database(path, Database::Access::kExisting);
    database.Execute("PRAGMA cache_size = -2048; PRAGMA trusted_schema = OFF;");
    std::string last;
    if (!paths.empty())
      ReadPaths(database);
    else
      while (!is_stopped && ReadPart(database, last) == kRowsOfPart) {
      }
    HandOver();
  } catch (const std::exception&) {
    end = State::kFailed;
  }
  const std::lock_guard lock(mutex);
  state = end;
  changed.notify_all();
  threads.RemoveLocked();
}

AllRows::AllRows(const std::string& path, std::vector<std::string> paths)
    : shared_(std::make_shared<Shared>()) {
  shared_->path = path;
  shared_->paths = std::move(paths);
  if (!shared_->threads.Start([shared = shared_] { shared->Read(); }))
    shared_->state = State::kFailed;
}

AllRows::~AllRows() {
  shared_->is_stopped = true;
  shared_->threads.WaitForEnd(kAbandonAfter);
}

AllRows::State AllRows::Take(const FoundRow& found, std::chrono::steady_clock::time_point until) {
  for (;;) {
    std::vector<Batch> batches;
    State state;
    {
      std::unique_lock lock(shared_->mutex);
      shared_->changed.wait_until(lock, until, [this] {
        return !shared_->batches.empty() || shared_->state != State::kReading;
      });
      batches.swap(shared_->batches);
      state = shared_->state;
    }
    for (Batch& batch : batches) batch.HandOut(found);
    if (state != State::kReading || batches.empty()) return state;
  }
}

}  // namespace tallow

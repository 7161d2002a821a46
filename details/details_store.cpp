// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_store.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "details/database.h"
#include "details/details_schema.h"
#include "util/atomic_file.h"
#include "util/errors.h"

namespace tallow {
namespace {

/// Memory of the page cache is limited to 2 MB. Functions in a manipulated schema do not run.
constexpr const char* kSettings =
    "PRAGMA cache_size = -2048; PRAGMA synchronous = FULL; PRAGMA trusted_schema = OFF;";

/// As a number of rows: all rows.
constexpr std::int64_t kAllRows = -1;

// A part of the rows, so that the store is not locked for long.
constexpr const char* kListGone =
    "SELECT song.path, gone.since FROM song LEFT JOIN gone USING (path)"
    " WHERE song.path > ?1 ORDER BY song.path LIMIT 500";
constexpr const char* kMarkGone = "INSERT INTO gone VALUES (?1, ?2)";
constexpr const char* kUnmarkGone = "DELETE FROM gone WHERE path = ?1";
constexpr const char* kDrop = "DELETE FROM song WHERE path = ?1";

/// A row, and the day since when its file is gone; no value when it was there.
struct MarkedRow {
  std::string path;
  std::optional<std::int64_t> since;
};

/// The next rows in the order of their paths.
std::vector<MarkedRow> RowsAfter(const Database& database, const std::string& last) {
  Statement list(database.get(), kListGone);
  list.BindBytes(0, last);
  std::vector<MarkedRow> rows;
  while (list.Step()) {
    rows.push_back({list.Text(0), std::nullopt});
    // Days are positive.
    if (list.Number(1) > 0) rows.back().since = list.Number(1);
  }
  return rows;
}

/// Runs a statement with a path as its only parameter.
void Run(const Database& database, const char* sql, const std::string& path) {
  Statement statement(database.get(), sql);
  statement.BindBytes(0, path);
  statement.Step();
}

}  // namespace

/// The open database and its statements, which are destroyed before it.
struct DetailsStore::Opened {
  explicit Opened(const std::string& path) : database(path) {
    database.Execute(kSettings);
    UpdateSchema(database);
    find.emplace(database.get(), kFindDetails);
    find_last.emplace(database.get(), kFindLastDetails);
    put.emplace(database.get(), kPutDetails);
  }

  Database database;
  std::optional<Statement> find;
  std::optional<Statement> find_last;
  std::optional<Statement> put;
};

DetailsStore::DetailsStore(std::function<std::chrono::steady_clock::time_point()> now)
    : now_(std::move(now)) {}

DetailsStore::~DetailsStore() { Close(); }

std::chrono::steady_clock::time_point DetailsStore::Now() const {
  return now_ ? now_() : std::chrono::steady_clock::now();
}

void DetailsStore::Open(const std::string& path) {
  Close();
  const std::lock_guard lock(mutex_);
  path_ = path;
  OpenLocked();
}

void DetailsStore::OpenLocked() {
  try {
    opened_ = std::make_unique<Opened>(path_);
    can_write_ = !opened_->database.IsReadOnly();
    is_empty_ = !HasSongs(opened_->database);
  } catch (const DatabaseError& error) {
    HandleLocked(error);
  }
}

void DetailsStore::HandleLocked(const DatabaseError& error) {
  if (error.IsDamage()) return SetAsideLocked();
  // Reading may go on; a transaction that is open cannot be trusted any more.
  if (has_transaction_) {
    try {
      opened_->database.Execute("ROLLBACK");
    } catch (const DatabaseError&) {
      // SQLite has rolled back by itself.
    }
    has_transaction_ = false;
  }
  if (opened_ != nullptr && !can_write_) return;
  can_write_ = false;
  AddProblem(path_ + " cannot be written (" + error.what() +
             "), so the details of songs are read again at the next start.");
}

void DetailsStore::SetAsideLocked() {
  opened_.reset();
  is_empty_ = true;
  can_write_ = false;
  has_transaction_ = false;
  try {
    MoveToBackup(path_);
  } catch (const FileError& error) {
    AddProblem(path_ + " is damaged, and cannot be renamed to end in .bak (" + error.reason() +
               "), so the details of songs are not kept.");
    return;
  }
  // The journal of the damaged file must not be applied to the new one.
  RemoveFile(path_ + "-journal");
  AddProblem(path_ +
             " is damaged. It was renamed to end in .bak, and is made again from the "
             "songs.");
  try {
    opened_ = std::make_unique<Opened>(path_);
    can_write_ = !opened_->database.IsReadOnly();
  } catch (const DatabaseError& error) {
    AddProblem(path_ + " cannot be made (" + error.what() +
               "), so the details of songs are not kept.");
  }
}

std::optional<SongDetails> DetailsStore::Find(const std::string& path, const FileStamp& stamp) {
  const std::lock_guard lock(mutex_);
  if (opened_ == nullptr) return std::nullopt;
  try {
    Statement& find = *opened_->find;
    BindKey(find, path, stamp);
    if (!find.Step()) return std::nullopt;
    SongDetails details = DetailsOf(find, stamp);
    find.Reset();
    return details;
  } catch (const DatabaseError& error) {
    HandleLocked(error);
    return std::nullopt;
  }
}

std::optional<SongDetails> DetailsStore::LastOfLocked(const std::string& path) {
  if (opened_ == nullptr) return std::nullopt;
  try {
    Statement& find = *opened_->find_last;
    find.BindBytes(0, path);
    if (!find.Step()) return std::nullopt;
    SongDetails details = LastDetailsOf(find);
    find.Reset();
    return details;
  } catch (const DatabaseError& error) {
    HandleLocked(error);
    return std::nullopt;
  }
}

std::optional<SongTags> DetailsStore::TagsOf(const std::string& path) {
  const std::lock_guard lock(mutex_);
  std::optional<SongDetails> details = LastOfLocked(path);
  if (!details) return std::nullopt;
  return std::move(details->tags);
}

std::optional<SongDetails> DetailsStore::LastOf(const std::string& path) {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock) return std::nullopt;
  return LastOfLocked(path);
}

void DetailsStore::ReadAll(const FoundRow& found) {
  const std::lock_guard lock(mutex_);
  if (opened_ == nullptr) return;
  try {
    Statement rows(opened_->database.get(), kReadRows);
    rows.BindBytes(0, {});
    rows.Bind(1, kAllRows);
    while (rows.Step()) found(rows.View(0), RowOf(rows));
  } catch (const DatabaseError& error) {
    HandleLocked(error);
  }
}

bool DetailsStore::IsEmpty() {
  const std::lock_guard lock(mutex_);
  return is_empty_;
}

void DetailsStore::Put(const std::string& path, const SongDetails& details) {
  const std::lock_guard lock(mutex_);
  if (opened_ == nullptr || !can_write_) return;
  try {
    BeginLocked();
    Statement& put = *opened_->put;
    BindKey(put, path, details.stamp);
    BindDetails(put, details);
    put.Step();
    is_empty_ = false;
    CommitIfDueLocked();
  } catch (const DatabaseError& error) {
    HandleLocked(error);
  }
}

void DetailsStore::BeginLocked() {
  if (has_transaction_) return;
  opened_->database.Execute("BEGIN");
  has_transaction_ = true;
}

std::size_t DetailsStore::HashOf(std::string_view path) noexcept {
  return std::hash<std::string_view>()(path);
}

void DetailsStore::DropGone(std::vector<std::size_t> present, std::int64_t today,
                            const std::function<bool()>& stopped) {
  std::ranges::sort(present);
  std::string last;
  while (!stopped || !stopped()) {
    const std::lock_guard lock(mutex_);
    if (opened_ == nullptr || !can_write_) return;
    try {
      if (!DropSomeGoneLocked(present, today, last)) return;
    } catch (const DatabaseError& error) {
      HandleLocked(error);
    }
  }
}

bool DetailsStore::DropSomeGoneLocked(const std::vector<std::size_t>& present, std::int64_t today,
                                      std::string& last) {
  const std::vector<MarkedRow> rows = RowsAfter(opened_->database, last);
  for (const MarkedRow& row : rows) {
    const bool is_gone = !std::ranges::binary_search(present, HashOf(row.path));
    if (is_gone == row.since.has_value() && (!is_gone || today - *row.since < kDropAfterDays))
      continue;
    BeginLocked();
    if (!is_gone) {
      Run(opened_->database, kUnmarkGone, row.path);
    } else if (!row.since) {
      Statement mark(opened_->database.get(), kMarkGone);
      mark.BindBytes(0, row.path);
      mark.Bind(1, today);
      mark.Step();
    } else {
      Run(opened_->database, kUnmarkGone, row.path);
      Run(opened_->database, kDrop, row.path);
    }
  }
  CommitIfDueLocked();
  if (!rows.empty()) last = rows.back().path;
  return !rows.empty();
}

void DetailsStore::CommitLocked() {
  if (!has_transaction_) return;
  opened_->database.Execute("COMMIT");
  has_transaction_ = false;
  last_commit_ = Now();
}

void DetailsStore::CommitIfDueLocked() {
  if (Now() - last_commit_ >= kCommitEvery) CommitLocked();
}

void DetailsStore::Commit() {
  const std::lock_guard lock(mutex_);
  try {
    CommitLocked();
  } catch (const DatabaseError& error) {
    HandleLocked(error);
  }
}

void DetailsStore::Close() {
  Commit();
  const std::lock_guard lock(mutex_);
  opened_.reset();
  is_empty_ = true;
  can_write_ = false;
}

std::vector<std::string> DetailsStore::TakeProblems() {
  const std::lock_guard lock(problems_mutex_);
  return std::exchange(problems_, {});
}

void DetailsStore::AddProblem(std::string problem) {
  const std::lock_guard lock(problems_mutex_);
  problems_.push_back(std::move(problem));
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_store.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "details/database.h"
#include "details/tag_date.h"
#include "util/atomic_file.h"
#include "util/errors.h"

namespace tallow {
namespace {

// The version of the schema is SQLite's user_version; a new file has 0.
//
// One row for each file. Its columns are the members of SongDetails, in the order of kColumns. The
// path is a blob, because on Linux it may be any bytes. Times of change are in the unit of
// FileStamp; lengths in milliseconds.
//
// The table "gone" has the rows whose files were not there at the last fill, and the day since
// when, counted from 1970.
constexpr std::int64_t kSchemaVersion = 2;
constexpr const char* kCreate =
    "BEGIN;"
    "DROP TABLE IF EXISTS song;"
    "DROP TABLE IF EXISTS gone;"
    "CREATE TABLE gone (path BLOB PRIMARY KEY, since INTEGER NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE song (path BLOB PRIMARY KEY, size INTEGER NOT NULL, modified INTEGER NOT NULL,"
    " failed INTEGER NOT NULL, found INTEGER NOT NULL, title TEXT NOT NULL, artist TEXT NOT NULL,"
    " album_artist TEXT NOT NULL, album TEXT NOT NULL, date TEXT NOT NULL, genre TEXT NOT NULL,"
    " disc INTEGER NOT NULL, track INTEGER NOT NULL, comment TEXT NOT NULL,"
    " length_ms INTEGER NOT NULL, bit_rate INTEGER NOT NULL, sample_rate INTEGER NOT NULL,"
    " format TEXT NOT NULL, id3v1 INTEGER NOT NULL) WITHOUT ROWID;"
    "PRAGMA user_version = 2;"
    "COMMIT;";

/// Memory of the page cache is limited to 2 MB. Functions in a manipulated schema do not run.
constexpr const char* kSettings =
    "PRAGMA cache_size = -2048; PRAGMA synchronous = FULL; PRAGMA trusted_schema = OFF;";

constexpr const char* kFind =
    "SELECT failed, found, title, artist, album_artist, album, date, genre, disc, track, comment,"
    " length_ms, bit_rate, sample_rate, format, id3v1 FROM song"
    " WHERE path = ?1 AND size = ?2 AND modified = ?3";
constexpr const char* kFindLast =
    "SELECT failed, found, title, artist, album_artist, album, date, genre, disc, track, comment,"
    " length_ms, bit_rate, sample_rate, format, id3v1, size, modified FROM song WHERE path = ?1";
constexpr int kSizeColumn = 16;  ///< of kFindLast
constexpr const char* kReadAll =
    "SELECT path, title, artist, album_artist, album, genre, format, disc, track, date, length_ms,"
    " bit_rate, modified FROM song ORDER BY path";
constexpr const char* kPut =
    "INSERT OR REPLACE INTO song VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13,"
    " ?14, ?15, ?16, ?17, ?18, ?19)";

// A part of the rows, so that the store is not locked for long.
constexpr const char* kListGone =
    "SELECT song.path, gone.since FROM song LEFT JOIN gone USING (path)"
    " WHERE song.path > ?1 ORDER BY song.path LIMIT 500";
constexpr const char* kMarkGone = "INSERT INTO gone VALUES (?1, ?2)";
constexpr const char* kUnmarkGone = "DELETE FROM gone WHERE path = ?1";
constexpr const char* kDrop = "DELETE FROM song WHERE path = ?1";

std::int64_t VersionOf(const Database& database) {
  Statement statement(database.get(), "PRAGMA user_version");
  return statement.Step() ? statement.Number(0) : 0;
}

bool HasSongs(const Database& database) {
  return Statement(database.get(), "SELECT 1 FROM song LIMIT 1").Step();
}

std::int32_t Number(const Statement& row, int column) {
  return static_cast<std::int32_t>(row.Number(column));
}

SongDetails DetailsOf(const Statement& row, const FileStamp& stamp) {
  SongDetails details;
  int column = 0;
  details.failed = row.Number(column++) != 0;
  SongTags& tags = details.tags;
  tags.found = row.Number(column++) != 0;
  for (std::string* const text :
       {&tags.title, &tags.artist, &tags.album_artist, &tags.album, &tags.date, &tags.genre})
    *text = row.Text(column++);
  tags.disc = Number(row, column++);
  tags.track = Number(row, column++);
  details.comment = row.Text(column++);
  details.length_ms = Number(row, column++);
  details.bit_rate = Number(row, column++);
  details.sample_rate = Number(row, column++);
  details.format = row.Text(column++);
  details.has_id3v1 = row.Number(column++) != 0;
  details.stamp = stamp;
  return details;
}

/// The columns of kReadAll after the path.
DetailsRow RowOf(const Statement& row) {
  int column = 1;
  DetailsRow details{.known = true};
  for (std::string_view* const text : {&details.title, &details.artist, &details.album_artist,
                                       &details.album, &details.genre, &details.format})
    *text = row.View(column++);
  details.disc = Number(row, column++);
  details.track = Number(row, column++);
  details.year = YearOfDate(row.View(column++));
  details.length_ms = Number(row, column++);
  details.bit_rate = Number(row, column++);
  details.modified = DayOf({.size = 0, .modified = row.Number(column)});
  return details;
}

/// Binds the key, the first three parameters of both statements.
void BindKey(Statement& statement, const std::string& path, const FileStamp& stamp) {
  statement.BindBytes(0, path);
  statement.Bind(1, static_cast<std::int64_t>(stamp.size));
  statement.Bind(2, stamp.modified);
}

void BindDetails(Statement& statement, const SongDetails& details) {
  int parameter = 3;
  const SongTags& tags = details.tags;
  statement.Bind(parameter++, details.failed ? 1 : 0);
  statement.Bind(parameter++, tags.found ? 1 : 0);
  for (const std::string* const text :
       {&tags.title, &tags.artist, &tags.album_artist, &tags.album, &tags.date, &tags.genre})
    statement.BindText(parameter++, *text);
  statement.Bind(parameter++, tags.disc);
  statement.Bind(parameter++, tags.track);
  statement.BindText(parameter++, details.comment);
  statement.Bind(parameter++, details.length_ms);
  statement.Bind(parameter++, details.bit_rate);
  statement.Bind(parameter++, details.sample_rate);
  statement.BindText(parameter++, details.format);
  statement.Bind(parameter++, details.has_id3v1 ? 1 : 0);
}

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
    if (VersionOf(database) != kSchemaVersion && !database.IsReadOnly()) database.Execute(kCreate);
    find.emplace(database.get(), kFind);
    find_last.emplace(database.get(), kFindLast);
    put.emplace(database.get(), kPut);
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
    const FileStamp stamp{.size = static_cast<std::uint64_t>(find.Number(kSizeColumn)),
                          .modified = find.Number(kSizeColumn + 1)};
    SongDetails details = DetailsOf(find, stamp);
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
    Statement rows(opened_->database.get(), kReadAll);
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

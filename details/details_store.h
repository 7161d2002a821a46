// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "details/details_table.h"
#include "details/song_details.h"
#include "util/file_system.h"

namespace tallow {

class DatabaseError;

/// Name of the database, in the folder of the library's state.
inline constexpr std::string_view kDetailsFileName = "SongDetails.db";

/// A transaction is committed when this time has passed since the last one.
inline constexpr std::chrono::seconds kCommitEvery{1};

/// Details of a file that is not there for this number of days are dropped. A drive may be away for
/// months.
inline constexpr std::int64_t kDropAfterDays = 180;

/// The details of songs, kept in an SQLite database between runs.
///
/// It is a cache: all of it can be read again from the songs. A song is found by its path, as long
/// as size and time of change of the file are those of the stored details.
///
/// - A damaged file is renamed to end in ".bak" and made again. It may be found to be damaged at
///   any call, because it is not checked as a whole when it is opened.
/// - A database of another version of the schema is emptied.
/// - If the file cannot be opened or written, the store keeps what it can read, stores nothing, and
///   reports this once.
///
/// The journal is SQLite's rollback journal, not a write-ahead log. Both survive a power loss. But
/// a database with a log cannot be opened in a folder that is read-only, and the log requires
/// shared memory, which network file systems do not have. The log would be faster for many small
/// transactions; here they are few. A commit waits until its bytes are on the disk.
///
/// All functions may be called from any thread. One may wait while another commits.
class DetailsStore {
 public:
  /// \param now the clock; empty: std::chrono::steady_clock
  explicit DetailsStore(std::function<std::chrono::steady_clock::time_point()> now = {});
  DetailsStore(const DetailsStore&) = delete;
  DetailsStore& operator=(const DetailsStore&) = delete;
  /// Closes the database.
  ~DetailsStore();

  /// Opens the database, and creates it if it does not exist. Problems can be taken afterwards.
  void Open(const std::string& path);

  /// The details of a song; no value when they are not stored, or the file has changed since.
  std::optional<SongDetails> Find(const std::string& path, const FileStamp& stamp);

  /// The tags that were stored last for a path, even if the file has changed since; no value when
  /// none are stored. Does not ask the disk for the file.
  std::optional<SongTags> TagsOf(const std::string& path);

  /// Like TagsOf, but returns all details. Does not wait while the store is in use, and returns no
  /// value then.
  std::optional<SongDetails> LastOf(const std::string& path);

  /// Receives the stored details of a file; the texts are valid during the call.
  using FoundRow = std::function<void(std::string_view path, const DetailsRow& row)>;
  /// Reads the details of all files, in the order of their paths as bytes.
  void ReadAll(const FoundRow& found);

  /// Whether no details are stored.
  bool IsEmpty();

  /// Stores the details of a song, in place of earlier ones. They are on the disk after the next
  /// commit: at most one a second.
  void Put(const std::string& path, const SongDetails& details);

  /// Drops the details of files that were not there for kDropAfterDays, and marks those that are
  /// not there now, so that the database does not grow for ever. Commits as Put does.
  ///
  /// \param present HashOf() of the paths that are there; two paths of one hash only keep details
  ///        for longer
  /// \param today   the day, from 1970
  /// \param stopped called every few milliseconds; true ends the call, and the next one goes on.
  ///        May be empty
  void DropGone(std::vector<std::size_t> present, std::int64_t today,
                const std::function<bool()>& stopped = {});
  static std::size_t HashOf(std::string_view path) noexcept;

  /// Commits what was stored.
  void Commit();

  /// Commits and closes the database. The store is then empty, and stores nothing.
  void Close();

  /// Removes and returns the problems since the last call, one sentence each. Does not wait for a
  /// commit.
  std::vector<std::string> TakeProblems();

 private:
  struct Opened;

  std::optional<SongDetails> LastOfLocked(const std::string& path);
  void OpenLocked();
  void BeginLocked();
  void CommitLocked();
  /// Commits when the last commit is long enough ago.
  void CommitIfDueLocked();
  /// A step of DropGone. \param last the last path of the step before; becomes that of this step
  /// \returns false after the last row
  bool DropSomeGoneLocked(const std::vector<std::size_t>& present, std::int64_t today,
                          std::string& last);
  /// Handles an error of the database: renames a damaged one, stops writing to another.
  void HandleLocked(const DatabaseError& error);
  void SetAsideLocked();
  void AddProblem(std::string problem);
  std::chrono::steady_clock::time_point Now() const;

  std::mutex mutex_;
  std::function<std::chrono::steady_clock::time_point()> now_;
  std::string path_;
  std::unique_ptr<Opened> opened_;  ///< null when there is no database
  bool can_write_ = false;
  bool is_empty_ = true;
  bool has_transaction_ = false;
  std::chrono::steady_clock::time_point last_commit_;
  std::mutex problems_mutex_;
  std::vector<std::string> problems_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tallow {

/// SQLite reported an error.
class DatabaseError : public std::runtime_error {
 public:
  /// \param code a result code of SQLite
  DatabaseError(int code, const std::string& text) : std::runtime_error(text), code_(code) {}

  /// Whether the content of the file is damaged, or it is no database; false when it only cannot be
  /// accessed now.
  bool IsDamage() const noexcept;

 private:
  int code_;
};

/// A prepared statement of a Database, which must outlive it. Parameters and columns count from 0.
class Statement {
 public:
  /// \throws DatabaseError
  Statement(sqlite3* database, const char* sql);

  /// Sets a parameter. Texts must stay valid until the last Step.
  void Bind(int parameter, std::int64_t number);
  void BindText(int parameter, std::string_view text);
  void BindBytes(int parameter, std::string_view bytes);

  /// Runs to the next row. After the last row and after an error, the statement can run again.
  /// \returns false after the last row
  /// \throws DatabaseError
  bool Step();

  /// Ends the statement before its last row.
  void Reset() noexcept;

  // The columns of the row that Step has reached.
  std::int64_t Number(int column) const noexcept;
  std::string Text(int column) const { return std::string(View(column)); }
  /// Valid until the next Step or Reset.
  std::string_view View(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// An SQLite database file. Used by one thread at a time. A statement waits up to kMaxLockWait for
/// other connections to the same file.
class Database {
 public:
  static constexpr std::chrono::seconds kMaxLockWait{10};

  enum class Access {
    kCreate,    ///< opens the file, or creates it
    kExisting,  ///< opens a file that exists
  };

  /// Opens a database; one that cannot be written is opened for reading.
  /// \throws DatabaseError
  explicit Database(const std::string& path, Access access = Access::kCreate);

  /// Runs statements that return no rows.
  /// \throws DatabaseError
  void Execute(const char* sql);

  /// Whether the file cannot be written.
  bool IsReadOnly() const noexcept;

  sqlite3* get() const noexcept { return database_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace tallow

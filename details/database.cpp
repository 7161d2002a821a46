// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/database.h"

#include <algorithm>
#include <limits>
#include <sqlite3.h>

namespace tallow {
namespace {

/// The bits of a result code without the details that SQLite adds.
constexpr int kPrimaryCode = 0xFF;

[[noreturn]] void Throw(sqlite3* database, int code) {
  throw DatabaseError(code, database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

/// A length that SQLite takes; longer texts do not occur.
int Length(std::string_view text) noexcept {
  return static_cast<int>(std::min<std::size_t>(text.size(), std::numeric_limits<int>::max()));
}

/// The pointer of a text, never null, which SQLite would take for NULL.
const char* Pointer(std::string_view text) noexcept {
  return text.data() != nullptr ? text.data() : "";
}

}  // namespace

bool DatabaseError::IsDamage() const noexcept {
  const int primary = code_ & kPrimaryCode;
  // SQLITE_ERROR: a table or column of the schema is not there.
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

Statement::Statement(sqlite3* database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  statement_.reset(statement);
  if (code != SQLITE_OK) Throw(database, code);
}

void Statement::Bind(int parameter, std::int64_t number) {
  sqlite3_bind_int64(statement_.get(), parameter + 1, number);
}

void Statement::BindText(int parameter, std::string_view text) {
  sqlite3_bind_text(statement_.get(), parameter + 1, Pointer(text), Length(text), SQLITE_STATIC);
}

void Statement::BindBytes(int parameter, std::string_view bytes) {
  sqlite3_bind_blob(statement_.get(), parameter + 1, Pointer(bytes), Length(bytes), SQLITE_STATIC);
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) {
    const DatabaseError error(code, sqlite3_errmsg(sqlite3_db_handle(statement_.get())));
    Reset();
    throw error;
  }
  Reset();
  return false;
}

void Statement::Reset() noexcept { sqlite3_reset(statement_.get()); }

std::int64_t Statement::Number(int column) const noexcept {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string_view Statement::View(int column) const {
  // The bytes of a text as they are stored; asking for a text would copy them to append a 0.
  const void* const bytes = sqlite3_column_blob(statement_.get(), column);
  if (bytes == nullptr) return {};
  const int length = sqlite3_column_bytes(statement_.get(), column);
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

void Database::Close::operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }

Database::Database(const std::string& path, Access access) {
  const int create = access == Access::kCreate ? SQLITE_OPEN_CREATE : 0;
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &database,
                                   SQLITE_OPEN_READWRITE | create | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) Throw(database, code);
  sqlite3_busy_timeout(database, static_cast<int>(std::chrono::milliseconds(kMaxLockWait).count()));
}

void Database::Execute(const char* sql) {
  const int code = sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Throw(database_.get(), code);
}

bool Database::IsReadOnly() const noexcept {
  return sqlite3_db_readonly(database_.get(), "main") == 1;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_schema.h"

#include <cstdint>
#include <string_view>

#include "details/database.h"
#include "details/tag_date.h"

namespace tallow {
namespace {

/// The version of the schema is SQLite's user_version; a new file has 0.
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

constexpr int kSizeColumn = 16;  ///< of kFindLastDetails

std::int64_t VersionOf(const Database& database) {
  Statement statement(database.get(), "PRAGMA user_version");
  return statement.Step() ? statement.Number(0) : 0;
}

std::int32_t Number(const Statement& row, int column) {
  return static_cast<std::int32_t>(row.Number(column));
}

}  // namespace

const char* const kFindDetails =
    "SELECT failed, found, title, artist, album_artist, album, date, genre, disc, track, comment,"
    " length_ms, bit_rate, sample_rate, format, id3v1 FROM song"
    " WHERE path = ?1 AND size = ?2 AND modified = ?3";
const char* const kFindLastDetails =
    "SELECT failed, found, title, artist, album_artist, album, date, genre, disc, track, comment,"
    " length_ms, bit_rate, sample_rate, format, id3v1, size, modified FROM song WHERE path = ?1";
const char* const kPutDetails =
    "INSERT OR REPLACE INTO song VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13,"
    " ?14, ?15, ?16, ?17, ?18, ?19)";
const char* const kReadRows =
    "SELECT path, title, artist, album_artist, album, genre, format, disc, track, date, length_ms,"
    " bit_rate, modified FROM song WHERE path > ?1 ORDER BY path LIMIT ?2";
const char* const kReadRow =
    "SELECT path, title, artist, album_artist, album, genre, format, disc, track, date, length_ms,"
    " bit_rate, modified FROM song WHERE path = ?1";

void UpdateSchema(Database& database) {
  if (VersionOf(database) != kSchemaVersion && !database.IsReadOnly()) database.Execute(kCreate);
}

bool HasSongs(const Database& database) {
  return Statement(database.get(), "SELECT 1 FROM song LIMIT 1").Step();
}

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

SongDetails LastDetailsOf(const Statement& row) {
  return DetailsOf(row, {.size = static_cast<std::uint64_t>(row.Number(kSizeColumn)),
                         .modified = row.Number(kSizeColumn + 1)});
}

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

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "details/details_table.h"
#include "details/song_details.h"
#include "util/file_system.h"

namespace tallow {

class Database;
class Statement;

// The schema of the database of song details, and its rows as SongDetails and DetailsRow.
//
// One row for each file. Its columns are the members of SongDetails. The path is a blob, because on
// Linux it may be any bytes. Times of change are in the unit of FileStamp; lengths in milliseconds.
//
// The table "gone" has the rows whose files were not there at the last fill, and the day since
// when, counted from 1970.

/// Empties a database of another version of the schema, or creates the schema in a new file; not
/// if the file cannot be written.
/// \throws DatabaseError
void UpdateSchema(Database& database);

/// Whether details are stored. \throws DatabaseError
bool HasSongs(const Database& database);

/// Finds the details of a file: the parameters are those of BindKey.
extern const char* const kFindDetails;
/// Finds the details of a path, which is the parameter, whatever the file's stamp is.
extern const char* const kFindLastDetails;
/// Stores details: the parameters are those of BindKey and BindDetails.
extern const char* const kPutDetails;

/// Binds path and stamp.
void BindKey(Statement& statement, const std::string& path, const FileStamp& stamp);
/// Binds what kPutDetails stores besides the key.
void BindDetails(Statement& statement, const SongDetails& details);

/// The row that kFindDetails has found.
SongDetails DetailsOf(const Statement& row, const FileStamp& stamp);
/// The row that kFindLastDetails has found.
SongDetails LastDetailsOf(const Statement& row);

/// Reads the rows after a path, the first parameter, in the order of the paths; the second is the
/// maximum number of rows. The first column is the path.
extern const char* const kReadRows;
/// Reads the row of a path, the parameter, with the columns of kReadRows.
extern const char* const kReadRow;
/// The row that kReadRows or kReadRow has reached; its texts are valid until the next step.
DetailsRow RowOf(const Statement& row);

}  // namespace tallow

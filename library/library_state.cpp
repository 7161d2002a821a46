// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_state.h"

#include <cstddef>
#include <utility>

#include "library/song_view.h"
#include "util/errors.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Reads one state file into the object that it stores.
template <typename Memory>
void LoadFile(Memory& memory, StateFile& file, const std::string& path,
              std::vector<std::string>& problems) {
  file.Load(
      path, [&memory](const std::string& bytes) { memory.Decode(bytes); }, problems);
}

/// Writes an object to its state file if it has changed.
/// \throws FileError
template <typename Memory>
void SaveFile(Memory& memory, const StateFile& file) {
  if (!memory.IsDirty()) return;
  file.Save(memory.Encode());
  memory.MarkSaved();
}

}  // namespace

void LibraryState::ResetDrives(std::vector<std::string> given) {
  drives_ = KnownDrives(std::move(given));
  drives_are_loaded_ = false;
}

void LibraryState::LoadDrives(const std::string& folder, std::vector<std::string>& problems) {
  if (std::exchange(drives_are_loaded_, true)) return;
  LoadFile(drives_, drives_file_, folder + "Drives.json", problems);
}

void LibraryState::Load(const std::string& folder, const SongTable& table,
                        std::vector<std::string>& problems) {
  LoadDrives(folder, problems);
  if (std::exchange(is_loaded_, true)) return;
  LoadFile(missing_, missing_file_, folder + "Missing.json", problems);
  LoadFile(repaired_, repaired_file_, folder + "Repaired.json", problems);
  LoadFile(unread_, unread_file_, folder + "Unread.json", problems);
  DropObsolete(table);
}

bool LibraryState::CanSaveMissing(const SongTable& table) {
  if (!missing_file_.IsUnreadable()) return true;
  // Try again; the file may be readable now. The error was reported before, so ignore new messages.
  std::vector<std::string> ignored;
  LoadFile(missing_, missing_file_, missing_file_.path(), ignored);
  if (missing_file_.IsUnreadable()) return false;
  DropObsolete(table);
  return true;
}

void LibraryState::DropObsolete(const SongTable& table) {
  // The program may have been killed after it wrote these files and before it wrote the library.
  missing_.Forget([&](const MissingSong& song) {
    const SongView row(table, song.number);
    return !row.Exists() || !row.IsMissing();
  });
  missing_.ForgetReturns([&](const MissingSong& song) {
    const SongView now(table, song.now);
    if (song.now <= song.number || !now.Exists()) return true;
    return now.IsMissing() ? missing_.Find(song.now) == nullptr
                           : !IsSamePathText(now.Name(), song.name);
  });
}

void LibraryState::SaveBeforeLibrary(std::int32_t rows, std::vector<std::string>& problems) {
  // Missing songs: once a row is blanked on disk, its song is known only from this file.
  if (missing_.IsDirty()) missing_.Shrink(static_cast<std::size_t>(rows));
  SaveFile(missing_, missing_file_);
  // Repaired numbers: the jukeboxes need to know which numbers were confused.
  if (repaired_.IsDirty() && repaired_file_.IsUnreadable())
    throw FileError(repaired_file_.path(), "cannot be read");
  SaveFile(repaired_, repaired_file_);
  // Unread folders: once a library exists, a start scans only known folders and these.
  if (!unread_.IsDirty()) return;
  try {
    SaveFile(unread_, unread_file_);
    unread_error_.clear();
  } catch (const FileError& error) {
    // Report the same error only once; the next save tries again.
    if (std::exchange(unread_error_, error.what()) != error.what())
      problems.push_back(unread_error_ +
                         ". Until it is written, folders that could not be read are not searched "
                         "again. Free some disk space, or make the file writable.");
  }
}

void LibraryState::Save(std::vector<std::string>& problems) {
  const auto save = [&problems](auto& memory, const StateFile& file) {
    try {
      SaveFile(memory, file);
    } catch (const FileError& error) {
      problems.push_back(std::string(error.what()) +
                         ". Free some disk space, or make the file writable.");
    }
  };
  // The next start may know only from this file that songs may have to be set aside.
  if (missing_.MayHaveNamesakes()) save(missing_, missing_file_);
  save(drives_, drives_file_);
  save(repaired_, repaired_file_);
  save(unread_, unread_file_);
}

}  // namespace tallow

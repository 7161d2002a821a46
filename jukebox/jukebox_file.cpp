// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/jukebox_file.h"

#include <new>
#include <optional>
#include <utility>

#include "jukebox/jukebox_reader.h"
#include "jukebox/jukebox_writer.h"
#include "util/atomic_file.h"
#include "util/errors.h"
#include "util/file_system.h"
#include "util/path_text.h"

namespace tallow {
namespace {

/// Maximum size of a jukebox file. A million songs in all their folders need less than a tenth of
/// this.
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{1} << 30U;

/// Points to the backup of a file that is not a valid jukebox; empty when there is none.
std::string BackupHint(const std::string& path) {
  if (!FileExists(path + std::string(kBackupSuffix))) return {};
  return ". The jukebox as it was saved before is in " + std::string(NameOfPath(path)) +
         std::string(kBackupSuffix) + " beside it; to open that file, rename it to end in .juk";
}

}  // namespace

std::string JukeboxFile::Encode(const FolderTree& folders, const std::vector<std::string>& columns,
                                const clsMain& library) const {
  return EncodeJukebox(folders, columns, library, absent_names_, absent_places_);
}

bool JukeboxFile::Save(const std::string& path, const FolderTree& folders,
                       const std::vector<std::string>& columns, const clsMain& library) {
  const auto fail = [this](const std::string& reason) {
    problem_ = "The jukebox could not be saved. " + reason +
               ". Save it in another folder, or correct the problem and save again.";
    return false;
  };
  try {
    const std::string bytes = Encode(folders, columns, library);
    if (bytes.size() > kMaxFileBytes) return fail(path + ": there are too many songs for one file");
    const auto before = StampOf(path);
    // Skip reading the old file when the sizes differ.
    if (!before || before->size != bytes.size() || ReadWholeFile(path) != bytes)
      WriteFileAtomically(path, bytes, [&] { KeepReplaced(path); });
  } catch (const FileError& error) {
    return fail(error.what());
  } catch (const std::bad_alloc&) {
    return fail(path + ": there is not enough memory");
  }
  path_ = path;
  content_.Remember(folders);
  return true;
}

std::unique_ptr<LoadedJukebox> JukeboxFile::Load(const std::string& path, const clsMain& library,
                                                 const ResolveConfusedSongs& ask) {
  const auto fail = [this](const std::string& reason) {
    problem_ = "The jukebox could not be opened. " + reason + ".";
    return nullptr;
  };
  try {
    const auto bytes = ReadWholeFile(path, kMaxFileBytes);
    if (!bytes) throw FileError(path, "the file is gone");
    auto loaded = Decode(*bytes, path, library, ask);
    content_.Remember(loaded->folders);
    return loaded;
  } catch (const FileTooLargeError&) {
    return fail(FileError(path, "the file is too large for a jukebox").what());
  } catch (const FileError& error) {
    return fail(error.what());
  } catch (const JukeboxFileError& error) {
    return fail(path + ": " + error.what() + BackupHint(path));
  } catch (const std::bad_alloc&) {
    return fail(path + ": there is not enough memory");
  }
}

std::unique_ptr<LoadedJukebox> JukeboxFile::LoadUnsaved(std::string_view bytes,
                                                        const std::string& path,
                                                        const clsMain& library,
                                                        const ResolveConfusedSongs& ask) {
  try {
    auto loaded = Decode(bytes, path, library, ask);
    content_.RememberOtherThan(loaded->folders);
    return loaded;
  } catch (const JukeboxFileError& error) {
    problem_ = error.what();
  } catch (const std::bad_alloc&) {
    problem_ = "there is not enough memory";
  }
  return nullptr;
}

std::unique_ptr<LoadedJukebox> JukeboxFile::Decode(std::string_view bytes, const std::string& path,
                                                   const clsMain& library,
                                                   const ResolveConfusedSongs& ask) {
  JukeboxContent content = DecodeJukebox(bytes);
  RelinkSongs(content, library, ask);
  SongNames absent_names = AbsentNames(content, library);
  SongPlaces absent_places = AbsentPlaces(content, library);
  auto loaded = std::make_unique<LoadedJukebox>();
  FillTree(content, library, loaded->folders);
  loaded->columns = std::move(content.columns);
  path_ = path;
  absent_names_ = std::move(absent_names);
  absent_places_ = std::move(absent_places);
  return loaded;
}

bool JukeboxFile::HasUnsavedChanges(const FolderTree& folders, const clsMain& library) const {
  if (path_.empty() || IsGone(path_)) return true;
  if (!content_.DiffersFrom(folders)) return false;
  if (!content_.IsStale()) return true;
  JukeboxFile file;
  const auto loaded = file.Load(path_, library, {});
  return loaded == nullptr || ContentHash(loaded->folders) != ContentHash(folders);
}

}  // namespace tallow

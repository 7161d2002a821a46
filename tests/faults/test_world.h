// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "app/search/drive_list.h"
#include "app/system.h"
#include "app/tallow.h"
#include "tests/recorded_windows.h"

namespace tallow {

/// A file, a folder or a symbolic link of a world, as saved by World::Save().
struct SavedEntry {
  std::string path;  ///< below the root
  bool is_folder = false;
  std::string link;  ///< target of a symbolic link; empty for all others
  std::string content;
  unsigned int mode = 0;
};
using SavedFiles = std::vector<SavedEntry>;

/// The folder of a jukebox that the user fills; the program fills the others.
inline constexpr std::string_view kOwnFolder = "Mine";

/// The root folder of a program under test: contains its application folder, a drive of songs, and
/// a removable stick.
class World {
 public:
  /// \param root created if necessary; ends in a separator
  explicit World(std::string root);

  const std::string& root() const noexcept { return root_; }
  std::string Application() const { return root_ + "app/"; }
  std::string Music() const { return root_ + "music/"; }
  std::string Stick() const { return root_ + "stick/"; }
  std::string Grouping() const { return Application() + "Grouping/"; }
  std::string SystemFiles() const { return Grouping() + "System/"; }

  /// The path relative to the root; unchanged if it is not below the root.
  std::string Below(std::string_view path) const;

  /// Creates or replaces a file, and creates the folders above it. All path parameters are relative
  /// to the root.
  void Write(const std::string& path, std::string_view content) const;
  /// Makes an MP3 file with an artist in its tag.
  void MakeSong(const std::string& path, const std::string& artist) const;
  void Remove(const std::string& path) const;
  void Move(const std::string& from, const std::string& to) const;
  /// The content of a file; empty if there is no regular file.
  std::string Read(const std::string& path) const;

  SavedFiles Save() const;
  /// Deletes everything below the root, and restores saved files.
  void Restore(const SavedFiles& files) const;

  /// The mounted volumes: the drive of songs, and the stick if its folder exists.
  MountedVolumes Volumes() const;

 private:
  std::string root_;
};

/// A user whose answers can do no harm: recovers unsaved changes, uses the last good library, and
/// declines all other questions.
class CarefulUser : public RecordedWindows {
 public:
  MessageAnswer Show(const Message& message) override;
  std::optional<std::size_t> Choose(const std::string& text,
                                    const std::vector<std::string>& of) override;

  /// Answers Yes to every question instead.
  bool agrees = false;
};

/// The program running in a world, without windows.
class RunningProgram {
 public:
  explicit RunningProgram(const World& world);

  bool Start() { return system.Main(RuntimeFile{}); }

  /// The row of a song by its file name; 0 if there is none.
  std::int32_t RowOf(std::string_view name) const;
  /// The first jukebox that a start has opened.
  Jukebox& First() { return *user.open.at(0); }
  /// All messages, questions and notices to the user.
  std::vector<std::string> Messages() const;

  CarefulUser user;
  Tallow tallow;
  std::unique_ptr<DriveList> drives;
  System system;
};

/// The present songs of a library file with their ranks, parsed from the file format alone. Paths
/// are relative to the root of the world. A missing file has no songs.
///
/// \param in_order requires each row to have its place as its record number
/// \throws std::runtime_error when the file is damaged
nlohmann::json SongsOfLibraryFile(const World& world, const std::string& path, bool in_order);

/// The folders of a jukebox file with the names of their songs, parsed from the file format alone.
/// \throws std::exception when the file is damaged
nlohmann::json FoldersOfJukeboxFile(const World& world, const std::string& path);

/// The part of FindBelongings that one start shows, regardless of the library file, and the
/// settings.
nlohmann::json FindInMemory(const World& world);

/// What the user has after the next start: songs, ranks, jukeboxes, unsaved changes, settings. If
/// `put_back` is given, also the songs and jukeboxes after another start with the missing songs
/// restored. The result contains no record numbers and no times.
///
/// \param put_back restores missing songs; may be empty
nlohmann::json FindBelongings(const World& world, const std::function<void()>& put_back);

}  // namespace tallow

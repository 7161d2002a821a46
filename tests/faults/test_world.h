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

/// A file, a folder or a link of a world, as it was at one moment.
struct SavedEntry {
  std::string path;  ///< below the root
  bool is_folder = false;
  std::string link;  ///< what a link leads to; empty for all others
  std::string content;
  unsigned int mode = 0;
};
using SavedFiles = std::vector<SavedEntry>;

/// The folder of a jukebox that is the user's own; the others are filled by the program.
inline constexpr std::string_view kOwnFolder = "Mine";

/// A folder with all that a program under test has: its application folder, a drive of songs, and a stick
/// that can be taken away.
class World {
 public:
  /// \param root made if it is not there; ends in a separator
  explicit World(std::string root);

  const std::string& root() const noexcept { return root_; }
  std::string Application() const { return root_ + "app/"; }
  std::string Music() const { return root_ + "music/"; }
  std::string Stick() const { return root_ + "stick/"; }
  std::string Grouping() const { return Application() + "Grouping/"; }
  std::string SystemFiles() const { return Grouping() + "System/"; }

  /// A path below the root; the whole path when it is not below.
  std::string Below(std::string_view path) const;

  /// Makes or replaces a file, and the folders above it. All paths are below the root.
  void Write(const std::string& path, std::string_view content) const;
  /// Makes an MP3 file with the name of an artist.
  void MakeSong(const std::string& path, const std::string& artist) const;
  void Remove(const std::string& path) const;
  void Move(const std::string& from, const std::string& to) const;
  /// The content; an empty text when there is no regular file.
  std::string Read(const std::string& path) const;

  SavedFiles Save() const;
  /// Brings everything back, whatever is there now.
  void Restore(const SavedFiles& files) const;

  /// What is mounted where: the songs' drive, and the stick while its folder is there.
  MountedVolumes Volumes() const;

 private:
  std::string root_;
};

/// A user who is asked only what cannot do harm: unsaved changes are recovered, all else is left as it is.
class CarefulUser : public RecordedWindows {
 public:
  bool Ask(const std::string& text) override;
  std::optional<bool> AskUnlessLeft(const std::string& text) override;
  std::optional<std::size_t> Choose(const std::string& text,
                                    const std::vector<std::string>& of) override;

  /// Says Yes to everything instead.
  bool agrees = false;
};

/// A program that runs in a world, without windows.
class RunningProgram {
 public:
  explicit RunningProgram(const World& world);

  bool Start() { return system.Main(RuntimeFile{}); }

  /// The row of a song, by its file name; 0 for none.
  std::int32_t RowOf(std::string_view name) const;
  /// The jukebox that a start has opened first.
  Jukebox& First() { return *user.open.at(0); }
  /// What was said to the user: messages, questions, notices.
  std::vector<std::string> Said() const;

  CarefulUser user;
  Tallow tallow;
  std::unique_ptr<DriveList> drives;
  System system;
};

/// The songs of a library file that are there, with their ranks, read by its description alone. Paths are
/// below the root of the world. A file that is not there has none.
///
/// \param in_order each row has to have the number of its place
/// \throws std::runtime_error when the file is damaged
nlohmann::json SongsOfLibraryFile(const World& world, const std::string& path, bool in_order);

/// The folders of a jukebox file with the names of their songs, read by its description alone.
/// \throws std::exception when the file is damaged
nlohmann::json FoldersOfJukeboxFile(const World& world, const std::string& path);

/// The part of FindBelongings that one start tells, whatever lies on the disk, and the settings.
nlohmann::json FindInMemory(const World& world);

/// What a user has after the next start: songs, ranks, jukeboxes, unsaved changes, settings; and once songs
/// that have gone are put back, at the start after that. Nothing that is compared has a place in the
/// library or a time in it.
///
/// \param put_back puts back what has gone; may be empty
nlohmann::json FindBelongings(const World& world, const std::function<void()>& put_back);

}  // namespace tallow

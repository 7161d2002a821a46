// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/test_world.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "jukebox/jukebox.h"
#include "tests/tagged_file.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* kLibrary = "app/Grouping/FileLocNames.lmz";
constexpr std::string_view kRecover = "Tallow was not closed properly. Recover";

/// Reads a little-endian number.
std::uint64_t NumberAt(const std::string& bytes, std::size_t at, std::size_t length) {
  std::uint64_t number = 0;
  for (std::size_t k = length; k-- > 0;)
    number = number << 8U | static_cast<unsigned char>(bytes.at(at + k));
  return number;
}

/// The songs of a jukebox folder. The user's own folder keeps its order; the others are sorted,
/// because the program fills them in the order of the search.
json InOrder(const std::string& folder, std::vector<std::string> songs) {
  if (folder != kOwnFolder) std::sort(songs.begin(), songs.end());
  return songs;
}

/// Adds a folder of an open jukebox, and the folders below it, with the names of their songs.
void AddFolders(const Folder& folder, const std::string& above, const clsMain& library,
                json& folders) {
  const std::string name = above + folder.Text();
  std::vector<std::string> songs;
  for (const SongEntry& entry : folder.Items()) songs.emplace_back(FileNameOf(entry, library));
  folders[name] = InOrder(name, std::move(songs));
  for (std::int32_t k = 0; k < folder.Children(); ++k)
    AddFolders(folder.ChildAt(k), name + "/", library, folders);
}

/// The folders of all open jukeboxes, with the names of their songs.
json OpenJukeboxesOf(RunningProgram& program) {
  json open = json::object();
  for (const Jukebox* const jukebox : program.user.open) {
    json& folders = open[jukebox->Caption()] = json::object();
    const FolderTree& tree = jukebox->Nodes();
    for (std::int32_t k = 0; k < tree.Children(); ++k)
      AddFolders(tree.ChildAt(k), {}, program.tallow.library, folders);
  }
  return open;
}

json SongsOf(const World& world, const clsMain& library) {
  json songs = json::object();
  for (std::int32_t row = 1; row <= library.UBoundOfMp3Array(); ++row)
    if (library.IsPresent(row))
      songs[world.Below(std::string(library.Mp3Info(kFileLocation, row))
                            .append(library.Mp3Info(kFileName, row)))] =
          library.Mp3Info(kSongRank, row);
  return songs;
}

/// The day on which each song was added, by file name, read from the companion file.
json FactsOfCompanion(const World& world, const clsMain& library) {
  constexpr std::size_t kRowsAt = 32;
  constexpr std::size_t kFirstRowAt = 36;
  constexpr std::size_t kRowBytes = 12;
  json facts = json::object();
  const std::string bytes = world.Read("app/Grouping/FileLocNames.more");
  if (bytes.size() < kFirstRowAt) return facts;
  const auto rows = static_cast<std::int32_t>(NumberAt(bytes, kRowsAt, 4));
  for (std::int32_t row = 1; row <= std::min(rows, library.UBoundOfMp3Array()); ++row) {
    const std::size_t at = kFirstRowAt + kRowBytes * static_cast<std::size_t>(row - 1);
    if (library.IsPresent(row))
      facts[std::string(library.Mp3Info(kFileName, row))] = NumberAt(bytes, at + 8, 4);
  }
  return facts;
}

json SettingsOf(const World& world) {
  json lines = json::array();
  const std::string path = "app/Grouping/System/TallowOrganizer.ini";
  std::error_code ignored;
  // Settings are never that long, and reading such a file would take long.
  constexpr std::uintmax_t kMaxBytes = std::uintmax_t{16} << 20U;
  if (fs::file_size(world.root() + path, ignored) > kMaxBytes && !ignored) return lines;
  const std::string text = world.Read(path);
  std::size_t number = 0;
  for (const std::string_view line : SplitLines(text))
    // Skips the count, which depends on the library, and the player, which is searched again.
    if (++number != 3 && number != 4) lines.push_back(world.Below(line));
  return lines;
}

/// All symbolic links, with the permissions of their targets.
json LinksOf(const World& world) {
  json links = json::object();
  for (const auto& entry : fs::recursive_directory_iterator(world.Application())) {
    if (!entry.is_symlink()) continue;
    struct stat status {};
    links[world.Below(entry.path().string())] =
        stat(entry.path().c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777U) : -1;
  }
  return links;
}

}  // namespace

World::World(std::string root) : root_(std::move(root)) { fs::create_directories(root_); }

std::string World::Below(std::string_view path) const {
  return std::string(path.starts_with(root_) ? path.substr(root_.size()) : path);
}

void World::Write(const std::string& path, std::string_view content) const {
  const fs::path whole = root_ + path;
  fs::create_directories(whole.parent_path());
  std::ofstream(whole, std::ios::binary) << content;
}

void World::MakeSong(const std::string& path, const std::string& artist) const {
  // Songs of different sizes are never mistaken for each other.
  Write(path, Audio(400 + 8 * path.size()) + Tag({.artist = artist, .year = "1985", .genra = 17}));
}

void World::Remove(const std::string& path) const { fs::remove_all(root_ + path); }

void World::Move(const std::string& from, const std::string& to) const {
  fs::create_directories(fs::path(root_ + to).parent_path());
  fs::rename(root_ + from, root_ + to);
}

std::string World::Read(const std::string& path) const {
  std::error_code ignored;
  if (!fs::is_regular_file(root_ + path, ignored)) return {};
  std::ifstream file(root_ + path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

SavedFiles World::Save() const {
  SavedFiles files;
  for (const auto& entry : fs::recursive_directory_iterator(root_)) {
    SavedEntry& saved = files.emplace_back();
    saved.path = Below(entry.path().string());
    saved.mode = static_cast<unsigned int>(entry.symlink_status().permissions());
    if (entry.is_symlink())
      saved.link = fs::read_symlink(entry.path()).string();
    else if (entry.is_directory())
      saved.is_folder = true;
    else
      saved.content = Read(saved.path);
  }
  return files;
}

void World::Restore(const SavedFiles& files) const {
  for (const auto& entry : fs::directory_iterator(root_)) fs::remove_all(entry.path());
  for (const SavedEntry& saved : files) {
    const std::string path = root_ + saved.path;
    if (saved.is_folder) {
      fs::create_directory(path);
    } else if (!saved.link.empty()) {
      fs::create_symlink(saved.link, path);
    } else {
      std::ofstream(path, std::ios::binary) << saved.content;
      fs::permissions(path, static_cast<fs::perms>(saved.mode));
    }
  }
}

MountedVolumes World::Volumes() const {
  MountedVolumes volumes{{"/", {"uuid system", "/"}, false}, {Music(), {"uuid music", "/"}, false}};
  // Uses the system call directly, so that the fault library cannot fail it.
  if (syscall(SYS_faccessat, AT_FDCWD, Stick().c_str(), F_OK) == 0)
    volumes.push_back({Stick(), {"uuid stick", "/"}, false});
  return volumes;
}

MessageAnswer CarefulUser::Show(const Message& message) {
  if (message.can_be_dismissed && message.text.starts_with(kRecover)) return MessageAnswer::kYes;
  RecordedWindows::Show(message);
  if (message.buttons == MessageButtons::kOk) return MessageAnswer::kOk;
  if (agrees) return MessageAnswer::kYes;
  return message.can_be_dismissed ? MessageAnswer::kCancel : MessageAnswer::kNo;
}

std::optional<std::size_t> CarefulUser::Choose(const std::string& text,
                                               const std::vector<std::string>& of) {
  RecordedWindows::Choose(text, of);
  const auto last_good = std::find(of.begin(), of.end(), "Use the Last Good One");
  if (last_good != of.end()) return static_cast<std::size_t>(last_good - of.begin());
  // The first choice keeps the existing files; declining the question starts no search.
  return agrees ? std::optional<std::size_t>(0) : std::nullopt;
}

RunningProgram::RunningProgram(const World& world)
    : tallow(world.Application()),
      drives(GivenDrives({world.Music(), world.Stick()})),
      // Any existing program serves as the player; none is started.
      system(tallow, *drives, user, [] { return std::string("/bin/sh"); }) {
  tallow.library.UseDrives([&world] { return world.Volumes(); }, {world.Music(), world.Stick()});
}

std::int32_t RunningProgram::RowOf(std::string_view name) const {
  for (std::int32_t row = 1; row <= tallow.library.UBoundOfMp3Array(); ++row)
    if (tallow.library.Mp3Info(kFileName, row) == name) return row;
  return 0;
}

std::vector<std::string> RunningProgram::Messages() const {
  std::vector<std::string> said = user.messages;
  said.insert(said.end(), user.asked.begin(), user.asked.end());
  said.insert(said.end(), user.notices.begin(), user.notices.end());
  return said;
}

json SongsOfLibraryFile(const World& world, const std::string& path, bool in_order) {
  const std::string bytes = world.Read(path);
  json songs = json::object();
  std::size_t at = 0;
  for (std::int32_t row = 1; at < bytes.size(); ++row) {
    std::string fields[12];
    for (std::string& field : fields) {
      if (bytes.size() - at < 2) throw std::runtime_error(path + " is cut off");
      const auto length = static_cast<std::size_t>(NumberAt(bytes, at, 2));
      if (bytes.size() - at - 2 < length) throw std::runtime_error(path + " is cut off");
      field = bytes.substr(at + 2, length);
      at += 2 + length;
    }
    if (in_order && fields[2] != std::to_string(row))
      throw std::runtime_error("row " + std::to_string(row) + " has the number " + fields[2]);
    if (fields[3] == "1") songs[world.Below(fields[1] + fields[0])] = fields[4];
  }
  return songs;
}

json FoldersOfJukeboxFile(const World& world, const std::string& path) {
  const json file = json::parse(world.Read(path));
  std::map<int, std::string> names_by_key;
  json folders = json::object();
  for (const json& folder : file.at("folders")) {
    const int parent = folder.at("parent").get<int>();
    const std::string text = folder.at("text").get<std::string>();
    std::string& name = names_by_key[folder.at("key").get<int>()];
    name = parent == 0 ? text : names_by_key.at(parent) + "/" + text;
    std::vector<std::string> songs;
    for (const json& song : folder.at("songs"))
      songs.push_back(file.at("names").at(std::to_string(song.get<int>())));
    folders[name] = InOrder(name, std::move(songs));
  }
  return folders;
}

json FindInMemory(const World& world) {
  json found;
  RunningProgram program(world);
  found["start"] = {{"goes on", program.Start()},
                    {"asks", program.user.asked},
                    {"messages", program.user.messages}};
  found["songs"] = SongsOf(world, program.tallow.library);
  found["open"] = OpenJukeboxesOf(program);
  found["days"] = FactsOfCompanion(world, program.tallow.library);
  found["settings"] = SettingsOf(world);
  json& files = found["jukeboxes"] = json::object();
  for (const auto& entry : fs::directory_iterator(world.Grouping())) {
    if (entry.path().extension() != ".juk") continue;
    json& file = files[entry.path().filename().string()];
    try {
      file = FoldersOfJukeboxFile(world, world.Below(entry.path().string()));
    } catch (const std::exception&) {
      file = "damaged";
    }
  }
  return found;
}

json FindBelongings(const World& world, const std::function<void()>& put_back) {
  // Checks the library file before a start may repair it.
  SongsOfLibraryFile(world, kLibrary, false);
  json found = FindInMemory(world);
  found["songs on disk"] = SongsOfLibraryFile(world, kLibrary, true);
  found["links"] = LinksOf(world);
  if (put_back) {
    put_back();
    RunningProgram program(world);
    program.Start();
    found["songs put back"] = SongsOf(world, program.tallow.library);
    found["open then"] = OpenJukeboxesOf(program);
  }
  return found;
}

}  // namespace tallow

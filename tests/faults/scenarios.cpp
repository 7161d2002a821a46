// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/scenarios.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>

#include "app/add_files.h"
#include "app/jukebox_documents.h"
#include "app/new_songs.h"
#include "app/search/file_search.h"
#include "jukebox/jukebox.h"
#include "jukebox/ranking.h"
#include "library/library_companion.h"
#include "library/size_finder.h"
#include "util/errors.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr const char* kMix = "app/Grouping/mix.juk";
constexpr const char* kOther = "app/Grouping/other.juk";
constexpr const char* kLibrary = "app/Grouping/FileLocNames.lmz";
constexpr const char* kCompanion = "app/Grouping/FileLocNames.more";
constexpr const char* kDrives = "app/Grouping/System/Drives.json";
constexpr const char* kMissing = "app/Grouping/System/Missing.json";
constexpr const char* kFolderList = "app/Grouping/System/LocOfMainTargetFiles.lmz";
constexpr const char* kSettings = "app/Grouping/System/TallowOrganizer.ini";

/// The windows that the commands on jukebox files and songs need; the first jukebox is the active
/// one.
class CommandWindows : public DocumentWindows, public NewSongsWindows {
 public:
  explicit CommandWindows(RunningProgram& program) : program_(program) {}

  Jukebox* ActiveJukebox() override { return &program_.First(); }
  std::span<Jukebox* const> OpenJukeboxes() override { return program_.user.open; }
  bool IsOpen(std::string_view caption) override {
    for (const Jukebox* const jukebox : program_.user.open)
      if (jukebox->Caption() == caption) return true;
    return false;
  }
  Jukebox& NewJukebox() override { return program_.user.NewJukebox(); }
  void ShowJukebox(Jukebox& /*jukebox*/) override {}
  void DiscardJukebox(Jukebox& /*jukebox*/) override {}
  std::optional<std::string> AskForFileToOpen(const std::string& /*folder*/) override {
    return chosen;
  }
  std::optional<std::string> AskForFileToSave(const std::string& /*folder*/) override {
    return chosen;
  }
  MessageAnswer Show(const Message& message) override {
    if (message.buttons == MessageButtons::kOk) said.push_back(message.text);
    return MessageAnswer::kYes;
  }
  void Notice(const Texts& lines) override {
    for (const std::string& line : lines)
      (IsAboutSettings(line) ? said_about_settings : said).push_back(line);
  }
  void NoticeScan(const Texts& lines) override {
    // A single line holds only the counts.
    const auto others = std::count_if(lines.begin(), lines.end(),
                                      [](const auto& line) { return !IsAboutSettings(line); });
    if (others > 1) Notice(lines);
  }
  SearchProgress& ShowSearching() override { return progress_; }
  void UnloadSearching() override {}
  void EnableFrame(bool /*enabled*/) override {}

  std::string chosen;
  Texts said;
  /// Separate, because settings that cannot be saved do not explain songs that are lost.
  Texts said_about_settings;

 private:
  static bool IsAboutSettings(const std::string& line) {
    return line.starts_with("The settings could not be saved. ");
  }

  RunningProgram& program_;
  RecordedProgress progress_;
};

/// Starts a program, and throws if the start fails or shows a message.
std::unique_ptr<RunningProgram> Started(const World& world) {
  auto program = std::make_unique<RunningProgram>(world);
  if (!program->Start() || !program->Messages().empty())
    throw std::runtime_error("the program does not start: " +
                             (program->Messages().empty() ? "" : program->Messages().front()));
  return program;
}

/// The user's own folder in the first jukebox.
Folder& MineOf(RunningProgram& program) {
  Folder* const mine = program.First().Nodes().Find(kOwnFolder);
  if (mine == nullptr) throw std::runtime_error("the jukebox has lost the folder of the user");
  return *mine;
}

void AddTo(Folder& folder, RunningProgram& program, std::string_view name) {
  const std::int32_t row = program.RowOf(name);
  if (row == 0) throw std::runtime_error("there is no song " + std::string(name));
  folder.Items().emplace_back(row, 2);
  program.First().IsFormDirty(true);
}

void Rank(RunningProgram& program, const std::string& name, const std::string& rank) {
  program.tallow.library.Mp3Info(kSongRank, program.RowOf(name), rank);
}

/// Sets a different date of addition for every song, all long ago.
void SetDays(const World& world) {
  constexpr std::size_t kFirstDayAt = 36 + 8;
  constexpr std::size_t kRowBytes = 12;
  constexpr std::size_t kChecksumBytes = 8;
  std::string bytes = world.Read(kCompanion);
  bytes.resize(bytes.size() - kChecksumBytes);
  char day = 1;
  for (std::size_t at = kFirstDayAt; at < bytes.size(); at += kRowBytes)
    bytes.replace(at, 4, std::string{day++, '\x40', '\0', '\0'});
  std::uint64_t checksum = ChecksumOf(bytes);
  for (std::size_t k = 0; k < kChecksumBytes; ++k, checksum >>= 8U)
    bytes.push_back(static_cast<char>(checksum & 0xFFU));
  world.Write(kCompanion, bytes);
}

Texts StartIt(const World& world, const std::function<void()>& from_here) {
  RunningProgram program(world);
  from_here();
  Texts said;
  if (!program.Start()) said.push_back("The start ended.");
  for (std::string& text : program.Messages()) said.push_back(std::move(text));
  return said;
}

void PutBack(const World& world) {
  world.MakeSong("music/b/gone.mp3", "Abba");
  world.MakeSong("stick/s/away.mp3", "Queen");
  world.MakeSong("stick/s/far.mp3", "Queen");
}

/// Adds a song, removes one, and restores one.
void Change(const World& world) {
  world.MakeSong("music/a/new.mp3", "Queen");
  world.Remove("music/a/two.mp3");
  world.MakeSong("music/b/gone.mp3", "Abba");
}

/// Restores all songs after Change.
void PutBackAll(const World& world) {
  world.MakeSong("music/a/two.mp3", "Abba");
  PutBack(world);
}

/// Replaces a file by a symbolic link to it, and sets permissions that the program would not
/// choose.
void MakeLink(const World& world, const std::string& path) {
  const std::string real = "elsewhere/" + fs::path(path).filename().string();
  world.Move(path, real);
  fs::permissions(world.root() + real, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(world.root() + real, world.root() + path);
}

/// Makes a library as an earlier version left it: the record numbers of the first two songs are
/// swapped.
void ConfuseNumbers(const World& world) {
  constexpr int kFields = 12;
  constexpr int kNumberField = 2;
  std::string bytes = world.Read(kLibrary);
  std::vector<std::size_t> numbers;
  std::size_t at = 0;
  for (int field = 0; numbers.size() < 2; ++field) {
    if (field % kFields == kNumberField) numbers.push_back(at + 2);
    at += 2U + static_cast<unsigned char>(bytes.at(at));
  }
  std::swap(bytes.at(numbers[0]), bytes.at(numbers[1]));
  world.Write(kLibrary, bytes);
  // The earlier version had no companion file.
  world.Remove(kCompanion);
}

Texts SaveIt(RunningProgram& program, const std::string& as) {
  CommandWindows windows(program);
  windows.chosen = as;
  JukeboxDocuments documents(program.tallow, windows);
  const bool saved = as.empty() ? documents.SaveDatForm() : documents.SaveAs();
  if (!saved) windows.said.push_back("The jukebox is not saved.");
  for (const std::string& text : windows.said_about_settings) windows.said.push_back(text);
  for (const std::string& text : program.Messages()) windows.said.push_back(text);
  return windows.said;
}

}  // namespace

void MakeCollection(const World& world) {
  for (const char* const name : {"a/one", "a/two", "b/three", "b/four", "b/gone"})
    world.MakeSong("music/" + std::string(name) + ".mp3", "Abba");
  for (const char* const name : {"away", "far"})
    world.MakeSong("stick/s/" + std::string(name) + ".mp3", "Queen");
  fs::create_directories(world.Application());
  {
    const auto program = Started(world);
    Rank(*program, "one.mp3", "3");
    Rank(*program, "two.mp3", "4");
    Rank(*program, "three.mp3", "5");
    Rank(*program, "gone.mp3", "6");
    Rank(*program, "away.mp3", "7");
    program->tallow.library.Save();
    // With known sizes, a song that comes back is recognised.
    SizeFinder finder(program->tallow.library);
    while (finder.StoreSizes(program->tallow.library)) std::this_thread::yield();
    program->tallow.library.SaveFacts();
    Folder& mine = program->First().Nodes().AddChild(nullptr, std::string(kOwnFolder));
    for (const char* const name : {"one.mp3", "three.mp3", "gone.mp3", "away.mp3"})
      AddTo(mine, *program, name);
    program->tallow.settings.PictureLocation("/pictures/mine.png");
    program->tallow.settings.IsThereAPicture(true);
    if (!SaveIt(*program, world.root() + kOther).empty() ||
        !SaveIt(*program, world.root() + kMix).empty())
      throw std::runtime_error("the jukeboxes cannot be saved");
  }
  SetDays(world);
  world.Remove("music/b/gone.mp3");
  world.Remove("stick");
  // This start records which songs are missing and which are on the removed stick.
  Started(world);
}

std::vector<Scenario> AllScenarios() {
  std::vector<Scenario> all;
  all.push_back({"first start",
                 [](const World& world) {
                   world.MakeSong("music/a/one.mp3", "Abba");
                   world.MakeSong("music/b/c/two.mp3", "Abba");
                   world.MakeSong("music/b/three.mp3", "Queen");
                   world.MakeSong("stick/s/far.mp3", "Queen");
                   fs::create_directories(world.Application());
                 },
                 StartIt,
                 {}});
  for (const bool links : {false, true})
    all.push_back({links ? "start with changes over links" : "start with changes",
                   [links](const World& world) {
                     MakeCollection(world);
                     Change(world);
                     if (!links) return;
                     for (const char* const path :
                          {kLibrary, kCompanion, kSettings, kFolderList, kDrives, kMissing})
                       MakeLink(world, path);
                   },
                   StartIt, PutBackAll});
  all.push_back({"start without settings",
                 [](const World& world) {
                   MakeCollection(world);
                   world.Remove(kSettings);
                 },
                 StartIt, PutBack});
  all.push_back({"start after a crash",
                 [](const World& world) {
                   MakeCollection(world);
                   const auto program = Started(world);
                   AddTo(MineOf(*program), *program, "two.mp3");
                   program->tallow.unsaved.Keep(program->First(), program->tallow.library);
                 },
                 StartIt, PutBack});
  all.push_back({"start with confused numbers",
                 [](const World& world) {
                   MakeCollection(world);
                   ConfuseNumbers(world);
                 },
                 StartIt,
                 {}});
  all.push_back({"saving a jukebox", MakeCollection,
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   AddTo(MineOf(*program), *program, "two.mp3");
                   program->tallow.settings.PictureLocation("/pictures/other.png");
                   from_here();
                   return SaveIt(*program, {});
                 },
                 PutBack});
  all.push_back({"Save As", MakeCollection,
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   AddTo(MineOf(*program), *program, "two.mp3");
                   from_here();
                   return SaveIt(*program, world.Grouping() + "third.juk");
                 },
                 PutBack});
  all.push_back({"Save As over another", MakeCollection,
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   AddTo(MineOf(*program), *program, "two.mp3");
                   from_here();
                   return SaveIt(*program, world.root() + kOther);
                 },
                 PutBack});
  const auto rank = [](const World& world, const std::function<void()>& from_here) {
    const auto program = Started(world);
    Folder& songs = *program->First().Nodes().Find("All Songs");
    from_here();
    EditHistory& history = program->First().History();
    if (RankSongs(history, songs, {0, 1, 2}, 1, program->tallow.library)) return Texts{};
    return Texts{program->tallow.library.SaveError()};
  };
  all.push_back({"ranking", MakeCollection, rank, PutBack});
  all.push_back(
      {"ranking and saving over links",
       [](const World& world) {
         MakeCollection(world);
         for (const char* const path : {kLibrary, kSettings, kMix}) MakeLink(world, path);
       },
       [rank](const World& world, const std::function<void()>& from_here) {
         const auto program = Started(world);
         Folder& songs = *program->First().Nodes().Find("All Songs");
         AddTo(MineOf(*program), *program, "two.mp3");
         from_here();
         EditHistory& history = program->First().History();
         const bool ranked = RankSongs(history, songs, {0, 1, 2}, 1, program->tallow.library);
         Texts said = SaveIt(*program, {});
         if (!ranked) said.push_back(program->tallow.library.SaveError());
         return said;
       },
       PutBack});
  all.push_back({"autosave", MakeCollection,
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   AddTo(MineOf(*program), *program, "two.mp3");
                   from_here();
                   try {
                     program->tallow.unsaved.Keep(program->First(), program->tallow.library);
                   } catch (const FileError& error) {
                     return Texts{error.what()};
                   }
                   return Texts{};
                 },
                 PutBack});
  for (const NewSongsPlace place : {NewSongsPlace::kKnownFolders, NewSongsPlace::kWholeComputer})
    all.push_back(
        {place == NewSongsPlace::kKnownFolders ? "bringing in new songs" : "searching the computer",
         MakeCollection,
         [place](const World& world, const std::function<void()>& from_here) {
           const auto program = Started(world);
           world.MakeSong("music/a/new.mp3", "Queen");
           world.Remove("music/a/two.mp3");
           world.MakeSong("music/b/gone.mp3", "Abba");
           CommandWindows windows(*program);
           from_here();
           BringInNewSongs(place, program->tallow, windows, [&](SearchProgress& progress) {
             return FileSearch(program->tallow, *program->drives, &progress)
                 .SearchDrivesForMp3s(true, {});
           });
           return windows.said;
         },
         [](const World& world) {
           world.MakeSong("music/a/two.mp3", "Abba");
           PutBack(world);
         }});
  all.push_back({"drop of files",
                 [](const World& world) {
                   MakeCollection(world);
                   world.MakeSong("drop/x.mp3", "Queen");
                   world.MakeSong("drop/y.mp3", "Queen");
                 },
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   const Texts files{world.root() + "drop/x.mp3", world.root() + "drop/y.mp3"};
                   from_here();
                   return AddFiles(files, program->tallow.library).problems;
                 },
                 PutBack});
  all.push_back({"sizes of songs",
                 [](const World& world) {
                   MakeCollection(world);
                   world.MakeSong("music/a/new.mp3", "Queen");
                   Started(world);
                 },
                 [](const World& world, const std::function<void()>& from_here) {
                   const auto program = Started(world);
                   clsMain& library = program->tallow.library;
                   from_here();
                   SizeFinder finder(library);
                   while (finder.StoreSizes(library)) std::this_thread::yield();
                   library.SaveFacts();
                   return library.TakeProblems();
                 },
                 PutBack});
  return all;
}

}  // namespace tallow

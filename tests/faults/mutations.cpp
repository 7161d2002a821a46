// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/mutations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <vector>

#include "jukebox/jukebox.h"
#include "tests/faults/child_process.h"
#include "tests/faults/scenarios.h"
#include "tests/faults/worker_pool.h"
#include "util/text_lines.h"

namespace tallow {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// Maximum processor time of a start, in seconds. Elapsed time is meaningless on a busy machine; a
/// start that blocks is found by kHangSeconds.
constexpr double kMaxSeconds = 2;

/// A kind of file that the program reads.
struct Kind {
  const char* name;
  const char* path;
  /// Whether a damaged file still has the correct format, so that the damage cannot be detected;
  /// null if the file has a checksum, which detects all damage.
  bool (*is_sound)(const World& world, const std::string& path);
};

bool IsWholeNumber(std::string_view text) {
  int number = 0;
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

bool IsSoundSettings(const World& world, const std::string& path) {
  const std::string text = world.Read(path);
  const auto lines = SplitLines(text);
  const auto is_boolean = [](std::string_view line) { return line == "True" || line == "False"; };
  return lines.size() >= 10 && text.ends_with("\r\n") && text.find('\0') == std::string::npos &&
         IsWholeNumber(lines[2]) && (is_boolean(lines[7]) || IsWholeNumber(lines[7])) &&
         (is_boolean(lines[8]) || IsWholeNumber(lines[8]));
}

bool IsSoundList(const World& world, const std::string& path) {
  const std::string text = world.Read(path);
  const auto lines = SplitLines(text);
  return text.ends_with("\r\n") && text.find('\0') == std::string::npos &&
         std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
           return line == "0" || (line.starts_with('/') && line.ends_with('/'));
         });
}

bool IsSoundJson(const World& world, const std::string& path) {
  return json::accept(world.Read(path));
}

bool IsSoundJukebox(const World& world, const std::string& path) {
  try {
    FoldersOfJukeboxFile(world, path);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool IsSoundUnsaved(const World& world, const std::string& path) {
  const std::string text = world.Read(path);
  const std::size_t end = text.find('\n');
  return end != std::string::npos && json::accept(text.substr(0, end)) &&
         json::accept(text.substr(end + 1));
}

constexpr std::array<Kind, 9> kKinds = {
    {{"settings", "app/Grouping/System/TallowOrganizer.ini", IsSoundSettings},
     {"library", "app/Grouping/FileLocNames.lmz", nullptr},
     {"folder list", "app/Grouping/System/LocOfMainTargetFiles.lmz", IsSoundList},
     {"companion", "app/Grouping/FileLocNames.more", nullptr},
     {"drives", "app/Grouping/System/Drives.json", IsSoundJson},
     {"missing songs", "app/Grouping/System/Missing.json", IsSoundJson},
     {"repaired numbers", "app/Grouping/System/Repaired.json", IsSoundJson},
     {"unsaved changes", "app/Grouping/System/Jukebox-1.unsaved", IsSoundUnsaved},
     {"jukebox", "app/Grouping/mix.juk", IsSoundJukebox}}};

/// How a file is damaged or replaced.
enum class Damage {
  kFlipped,
  kCut,
  kLonger,
  kEmpty,
  kFolder,
  kPipe,
  kZeroes,  ///< a symbolic link to a device that never ends
  kFull,    ///< a symbolic link to a device that accepts no bytes
  kNoRights,
  kLoop,
  kNowhere,
  kSparse,
};
constexpr std::array<const char*, 12> kDamages = {"flipped",
                                                  "cut",
                                                  "longer",
                                                  "empty",
                                                  "folder",
                                                  "FIFO",
                                                  "link to /dev/zero",
                                                  "link to /dev/full",
                                                  "mode 000",
                                                  "link to itself",
                                                  "link to nothing",
                                                  "sparse 2 GiB"};

/// One damaged file.
struct Mutation {
  std::size_t kind = 0;
  Damage damage = Damage::kFlipped;
  unsigned int seed = 0;
  bool user_agrees = false;
};

std::string NameOf(const Mutation& one) {
  return std::string(kKinds[one.kind].name) + ", " +
         kDamages[static_cast<std::size_t>(one.damage)] + " #" + std::to_string(one.seed) +
         (one.user_agrees ? ", user says Yes" : "");
}

/// Of every ten cases, eight damage the bytes and two replace the file by something else.
Damage DamageOf(int number, bool big) {
  const int place = number % 10;
  if (place < 4) return Damage::kFlipped;
  if (place < 7) return Damage::kCut;
  if (place == 7) return number / 10 % 2 == 0 ? Damage::kLonger : Damage::kEmpty;
  constexpr int kFirst = static_cast<int>(Damage::kFolder);
  const int kinds = static_cast<int>(big ? Damage::kSparse : Damage::kNowhere) - kFirst + 1;
  return static_cast<Damage>(kFirst + (number / 10 * 2 + place - 8) % kinds);
}

void Apply(const World& world, const Mutation& one) {
  const std::string path = kKinds[one.kind].path;
  const std::string whole = world.root() + path;
  const std::string bytes = world.Read(path);
  std::mt19937 random(one.seed * 9 + static_cast<unsigned int>(one.kind));
  const auto below = [&](std::size_t most) { return random() % std::max<std::size_t>(most, 1); };
  fs::remove(whole);
  switch (one.damage) {
    case Damage::kFlipped: {
      std::string damaged = bytes;
      for (std::size_t flips = 1 + below(3); flips > 0; --flips)
        damaged[below(damaged.size())] ^= static_cast<char>(1 + below(255));
      return world.Write(path, damaged);
    }
    case Damage::kCut:
      return world.Write(path, bytes.substr(0, below(bytes.size())));
    case Damage::kLonger: {
      std::string more = bytes;
      for (std::size_t count = 1 + below(200); count > 0; --count)
        more.push_back(static_cast<char>(below(256)));
      return world.Write(path, more);
    }
    case Damage::kEmpty:
      return world.Write(path, {});
    case Damage::kFolder:
      fs::create_directory(whole);
      return;
    case Damage::kPipe:
      if (mkfifo(whole.c_str(), 0600) != 0) throw std::runtime_error("no FIFO can be made");
      return;
    case Damage::kZeroes:
      return fs::create_symlink("/dev/zero", whole);
    case Damage::kFull:
      return fs::create_symlink("/dev/full", whole);
    case Damage::kNoRights:
      world.Write(path, bytes);
      return fs::permissions(whole, fs::perms::none);
    case Damage::kLoop:
      return fs::create_symlink(whole, whole);
    case Damage::kNowhere:
      return fs::create_symlink(world.root() + "nowhere/file", whole);
    case Damage::kSparse:
      world.Write(path, bytes);
      return fs::resize_file(whole, (std::uintmax_t{2} << 30U) + 1);
  }
}

/// Describes the entry at a path: its type, and its content, length or link target.
json LookAt(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return nullptr;
  if (S_ISLNK(status.st_mode)) return {"link", fs::read_symlink(path).string()};
  if (S_ISDIR(status.st_mode)) return {"folder"};
  if (!S_ISREG(status.st_mode)) return {"other"};
  constexpr off_t kMaxRead = off_t{1} << 20U;
  if (status.st_size > kMaxRead) return {"long file", status.st_size};
  if ((status.st_mode & S_IRUSR) == 0) return {"closed file", status.st_size};
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return {"unreadable"};
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
  std::fclose(file);
  // A hash, because arbitrary bytes are no valid JSON text.
  return {"file", std::hash<std::string>()(bytes), bytes.size()};
}

/// JSON as text, with invalid UTF-8 replaced.
std::string Text(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Starts and uses a program: ranks a song, changes the settings, and saves the jukeboxes.
std::string Use(const World& world, bool user_agrees) {
  RunningProgram program(world);
  program.user.agrees = user_agrees;
  const bool started = program.Start();
  json used{
      {"started", started}, {"said", program.Messages()}, {"asked", program.user.asked.size()}};
  if (started) {
    if (const std::int32_t row = program.RowOf("one.mp3"); row > 0)
      program.tallow.library.Mp3Info(kSongRank, row, "7");
    program.tallow.library.Save();
    program.tallow.settings.IsItTiled(true);
    program.tallow.SaveSettings();
    for (Jukebox* const jukebox : program.user.open)
      if (!jukebox->FilePath().empty() &&
          jukebox->Save(jukebox->FilePath(), program.tallow.library))
        program.tallow.unsaved.Forget(*jukebox);
    program.tallow.library.SaveFacts();
    program.tallow.library.SaveRepaired();
  }
  return Text(used);
}

/// A world with all kinds of files that can be damaged.
class Ground {
 public:
  explicit Ground(const std::string& root) : world_(root) {
    world_.Restore({});
    Demand(RunInChild([&] {
      MakeCollection(world_);
      RunningProgram program(world_);
      program.Start();
      // The unsaved changes belong to another jukebox, so that the start also reads the last saved
      // jukebox.
      Jukebox other;
      if (!other.Load(world_.Grouping() + "other.juk", program.tallow.library))
        throw std::runtime_error(other.FileProblem());
      other.Caption("OTHER");
      other.FileLocation(world_.Grouping());
      Folder* const mine = other.Nodes().Find(kOwnFolder);
      if (mine == nullptr) throw std::runtime_error("the folder of the user is not there");
      mine->Items().emplace_back(program.RowOf("two.mp3"), 2);
      program.tallow.unsaved.Keep(other, program.tallow.library);
      return std::string();
    }));
    world_.Write("app/Grouping/System/Repaired.json",
                 "{\"format\":\"Tallow repaired numbers\",\"version\":1,\n \"numbers\":[\n"
                 "{\"number\":900,\"named\":\"a.mp3\",\"held\":\"b.mp3\",\"heldNow\":901}],\n"
                 " \"answers\":{\"/none.juk\":\"names\"}}\n");
    // A new song in a folder of the folder list.
    world_.MakeSong("music/b/late.mp3", "Queen");
    files_ = world_.Save();
    for (const Kind& kind : kKinds)
      if (world_.Read(kind.path).empty())
        throw std::runtime_error(std::string("there is no file of ") + kind.name);
    old_ = Find();
    world_.Restore(files_);
    Demand(RunInChild([&] { return Use(world_, false); }));
    new_ = Find();
  }

  json Run(const Mutation& one) const {
    const Kind& kind = kKinds[one.kind];
    const std::string path = world_.root() + kind.path;
    world_.Restore(files_);
    const std::string good = world_.Read(kind.path);
    Apply(world_, one);
    const json damaged = LookAt(path);
    const bool is_sound =
        kind.is_sound != nullptr && damaged.at(0) == "file" && kind.is_sound(world_, kind.path);
    std::vector<std::string> wrong;
    const ChildEnd end = RunInChild([&] { return Use(world_, one.user_agrees); });
    if (end.seconds > kMaxSeconds) wrong.push_back("takes " + std::to_string(end.seconds) + " s");
    if (!end.IsDone()) {
      wrong.push_back(end.Words());
      return {{"wrong", wrong}, {"seconds", end.seconds}};
    }
    const json used = json::parse(end.text);
    const bool said = !used.at("said").empty();
    if (!used.at("started").get<bool>() && !said) wrong.push_back("ends without a word");
    const json found = FindAgain(wrong);
    const std::string lost = Lost(found);
    if (!lost.empty() && !said && !is_sound) wrong.push_back("lost silently: " + lost);
    if (!lost.empty() && !is_sound && !IsKept(damaged)) wrong.push_back("not kept: " + lost);
    // With the good file restored, nothing may be lost, which shows that no other file was changed.
    // This does not hold if the user agreed to make the file again, nor for the library and its
    // companion after they have changed.
    const bool is_pair = kind.is_sound == nullptr && used.at("started").get<bool>();
    if (is_pair || (one.user_agrees && used.at("asked") != 0))
      return {{"wrong", wrong}, {"seconds", end.seconds}};
    std::error_code ignored;
    fs::permissions(path, fs::perms::owner_all, ignored);
    fs::remove_all(path);
    world_.Write(kind.path, good);
    const std::string then = Lost(FindAgain(wrong));
    if (!then.empty() && !is_sound) wrong.push_back("lost with the good file put back: " + then);
    return {{"wrong", wrong}, {"seconds", end.seconds}};
  }

  void Clear() const { world_.Restore({}); }

 private:
  /// The parts that differ both from before the use of the program and from a use without damage.
  std::string Lost(const json& found) const {
    std::string lost;
    for (const char* const name : {"songs", "jukeboxes", "settings", "days"}) {
      const json part = OfUser(name, found);
      const json wanted = OfUser(name, new_);
      if (part == wanted || part == OfUser(name, old_)) continue;
      constexpr std::size_t kMaxShown = 200;
      lost += std::string(name) + " " + Text(json::diff(wanted, part)).substr(0, kMaxShown) + " ";
    }
    return lost;
  }

  /// Returns one part of what was found. For "jukeboxes", returns the user's own folder of each
  /// jukebox file and of each open jukebox, which contains recovered changes. The other folders are
  /// left out, because the program fills them.
  static json OfUser(const std::string& name, const json& found) {
    if (name != "jukeboxes") return found.value(name, json());
    json both;
    for (const char* const place : {"open", "jukeboxes"}) {
      json& part = both[place] = found.value(place, json::object());
      for (json& jukebox : part)
        if (jukebox.is_object()) jukebox = jukebox.value(std::string(kOwnFolder), json());
    }
    return both;
  }

  /// Whether the damaged file still exists, in its place or as a backup. An empty file needs no
  /// backup.
  bool IsKept(const json& damaged) const {
    if (damaged.at(0) == "file" && damaged.at(2) == 0) return true;
    for (const auto& entry : fs::recursive_directory_iterator(world_.Grouping()))
      if (LookAt(entry.path().string()) == damaged) return true;
    return false;
  }

  json Find() const {
    const ChildEnd end = RunInChild([&] { return FindBelongings(world_, {}).dump(); });
    Demand(end);
    return json::parse(end.text);
  }
  json FindAgain(std::vector<std::string>& wrong) const {
    const ChildEnd end = RunInChild([&] { return Text(FindInMemory(world_)); });
    if (end.IsDone()) return json::parse(end.text);
    wrong.push_back("the next start " + end.Words());
    return json::object();
  }
  static void Demand(const ChildEnd& end) {
    if (!end.IsDone()) throw std::runtime_error("without damage: " + end.Words());
  }

  World world_;
  SavedFiles files_;
  json old_;
  json new_;
};

}  // namespace

bool RunMutations(const std::string& folder, const MutationChoice& choice) {
  std::vector<Mutation> all;
  for (std::size_t kind = 0; kind < kKinds.size(); ++kind)
    for (int number = 0; number < choice.of_each; ++number) {
      const Mutation one{kind, DamageOf(number, choice.big), static_cast<unsigned int>(number),
                         number % 3 == 2};
      if (NameOf(one).find(choice.of_case) != std::string::npos) all.push_back(one);
    }
  const auto jobs = static_cast<std::size_t>(std::max(choice.jobs, 1));
  const std::vector<json> results = DoCases(folder, all.size(), jobs, [&](std::size_t worker) {
    const auto ground =
        std::make_shared<Ground>(folder + "damaged-" + std::to_string(worker) + "/");
    return [ground, &all](std::size_t number) { return ground->Run(all[number]); };
  });

  std::map<std::string, std::pair<int, int>> table;
  std::vector<std::string> order;
  int losses = 0;
  double longest = 0;
  for (std::size_t k = 0; k < all.size(); ++k) {
    const std::vector<std::string> wrong = results[k].at("wrong");
    longest = std::max(longest, results[k].at("seconds").get<double>());
    const std::string kind = kKinds[all[k].kind].name;
    if (!table.contains(kind)) order.push_back(kind);
    ++table[kind].first;
    if (wrong.empty()) continue;
    ++table[kind].second;
    ++losses;
    std::printf("LOST  %s\n", NameOf(all[k]).c_str());
    for (const std::string& text : wrong) std::printf("      %s\n", text.c_str());
  }
  std::printf("\n%-20s %8s %8s\n", "damaged file", "cases", "losses");
  for (const std::string& kind : order)
    std::printf("%-20s %8d %8d\n", kind.c_str(), table[kind].first, table[kind].second);
  std::printf("\n%zu damaged files, %d with a loss, at most %.2f s of a processor\n", all.size(),
              losses, longest);
  return losses == 0 && !all.empty();
}

}  // namespace tallow

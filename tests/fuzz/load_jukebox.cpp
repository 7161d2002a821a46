// SPDX-License-Identifier: GPL-3.0-or-later
// Passes arbitrary bytes as a jukebox file to Jukebox::Load, with libFuzzer. Nothing may crash. A
// rejected file must leave the jukebox unchanged. An accepted file must be showable and saveable,
// and loading it again must give the same content.
//
// Run by tests/fuzz/run.sh.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "jukebox/sorting.h"

namespace tallow {
namespace {

/// The state that all runs share: a library of a few songs, and a folder for the files.
struct World {
  World() : folder(MakeFolder()), tallow(folder), path(folder + "fuzz.juk") {
    for (int row = 1; row <= 9; ++row) {
      tallow.library.Mp3Info(1, row, "/m/");
      tallow.library.Mp3Info(2, row, std::to_string(row % 5) + ".mp3");
      tallow.library.Mp3Info(3, row, row == 7 ? "0" : "1");
      tallow.library.Mp3Info(4, row, std::to_string(row));
      tallow.library.Mp3Info(5, row, "2");
    }
  }
  ~World() { std::filesystem::remove_all(folder); }

  static std::string MakeFolder() {
    // In memory if possible, because each run writes files.
    const char* const base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    std::string name = std::string(base) + "/tallow-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    return name + "/";
  }
  void Write(const std::uint8_t* data, std::size_t size) const {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }

  std::string folder;
  Tallow tallow;
  std::string path;
};

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireLevels(const Folder& folder, std::int32_t level) {
  Require(folder.Level() == level && level <= kMaxLevel);
  for (std::int32_t k = 0; k < folder.Children(); ++k) {
    Require(folder.ChildAt(k).Parent() == &folder && folder.ChildAt(k).Index() == k);
    RequireLevels(folder.ChildAt(k), level + 1);
  }
}

void Run(World& world, const std::uint8_t* data, std::size_t size) {
  const clsMain& library = world.tallow.library;
  world.Write(data, size);
  Jukebox jukebox;
  jukebox.Caption("BEFORE");
  Folder& before = jukebox.Nodes().AddChild(nullptr, "before");
  const std::uint64_t content = ContentHash(jukebox.Nodes());
  if (!jukebox.Load(world.path, library)) {
    Require(!jukebox.FileProblem().empty() && ContentHash(jukebox.Nodes()) == content &&
            &jukebox.Nodes().ChildAt(0) == &before && jukebox.FilePath().empty());
    return;
  }
  for (std::int32_t k = 0; k < jukebox.Nodes().Children(); ++k)
    RequireLevels(jukebox.Nodes().ChildAt(k), 0);
  const std::uint64_t loaded = ContentHash(jukebox.Nodes());
  Require(jukebox.Save(world.path, library));
  Jukebox again;
  Require(again.Load(world.path, library));
  Require(ContentHash(again.Nodes()) == loaded && again.ColumnHeaders() == jukebox.ColumnHeaders());
  if (jukebox.Nodes().Children() == 0) return;
  std::int64_t changes = 0;
  jukebox.ShowFolder(jukebox.Nodes().ChildAt(0), library, changes);
  jukebox.ColumnClick(library);
}

}  // namespace
}  // namespace tallow

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto world = std::make_unique<tallow::World>();
  tallow::Run(*world, data, size);
  return 0;
}

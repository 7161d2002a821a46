// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_check.h"

#include <filesystem>

#include "tests/library_fixture.h"
#include "util/atomic_file.h"
#include "util/errors.h"

namespace tallow {
namespace {

class LibraryCheckTest : public LibraryTest {
 protected:
  /// Saves a library of three songs, then the same library with another rank.
  void SaveTwice() {
    for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) AddSong(music.path(), name);
    library.Save();
    library.Mp3Info(5, 2, "9");
    library.Save();
  }
  std::string Backup() const { return LibraryPath() + ".bak"; }
  void Write(const std::string& path, const std::string& bytes) const {
    WriteFileAtomically(path, bytes);
  }
};

TEST_F(LibraryCheckTest, ASavedLibraryIsWhole) {
  SaveTwice();
  const LibraryCheck check = CheckLibrary(LibraryPath());
  EXPECT_TRUE(check.is_whole);
  EXPECT_FALSE(check.is_changed);
  EXPECT_FALSE(check.last_good);
}

TEST_F(LibraryCheckTest, ThePreviousLibraryIsWholeToo) {
  SaveTwice();
  // As if the program had ended between writing the companion and writing the library.
  Write(LibraryPath(), *ReadWholeFile(Backup()));
  EXPECT_TRUE(CheckLibrary(LibraryPath()).is_whole);
}

TEST_F(LibraryCheckTest, EveryChangedByteIsDetected) {
  SaveTwice();
  const std::string good = *ReadWholeFile(LibraryPath());
  for (std::size_t at = 0; at < good.size(); ++at) {
    std::string bytes = good;
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    Write(LibraryPath(), bytes);
    const LibraryCheck check = CheckLibrary(LibraryPath());
    EXPECT_TRUE(check.is_changed) << at;
    EXPECT_EQ(check.last_good, 3) << at;
  }
}

TEST_F(LibraryCheckTest, AChangedBackupIsNotTheLastGoodLibrary) {
  SaveTwice();
  Write(LibraryPath(), *ReadWholeFile(LibraryPath()) + std::string(24, '\0'));
  std::string bytes = *ReadWholeFile(Backup());
  bytes.back() = 'x';
  Write(Backup(), bytes);
  EXPECT_FALSE(CheckLibrary(LibraryPath()).last_good);
}

TEST_F(LibraryCheckTest, WithoutACompanionNothingIsKnown) {
  SaveTwice();
  RemoveFile(application / "Grouping/FileLocNames.more");
  Write(LibraryPath(), *ReadWholeFile(LibraryPath()) + std::string(24, '\0'));
  const LibraryCheck check = CheckLibrary(LibraryPath());
  EXPECT_FALSE(check.is_whole);
  EXPECT_FALSE(check.is_changed);
  EXPECT_FALSE(check.last_good);
}

TEST_F(LibraryCheckTest, ForAMissingLibraryTheLastGoodOneIsFound) {
  SaveTwice();
  RemoveFile(LibraryPath());
  const LibraryCheck check = CheckLibrary(LibraryPath());
  EXPECT_FALSE(check.file.exists);
  EXPECT_FALSE(check.is_changed);
  EXPECT_EQ(check.last_good, 3);
}

TEST_F(LibraryCheckTest, TheFirstSaveLeavesABackupToo) {
  AddSong(music.path(), "a.mp3");
  library.Save();
  EXPECT_EQ(ReadWholeFile(Backup()), ReadWholeFile(LibraryPath()));
}

TEST_F(LibraryCheckTest, TheBackupIsThePreviousLibrary) {
  AddSong(music.path(), "a.mp3");
  library.Save();
  const std::string first = *ReadWholeFile(LibraryPath());
  library.Mp3Info(5, 1, "9");
  library.Save();
  EXPECT_EQ(ReadWholeFile(Backup()), first);
  EXPECT_NE(ReadWholeFile(LibraryPath()), first);
}

TEST_F(LibraryCheckTest, UseLastGoodKeepsTheReplacedFile) {
  SaveTwice();
  const std::string good = *ReadWholeFile(Backup());
  Write(LibraryPath(), "damaged");
  const std::string set_aside = FreeSetAsidePath(LibraryPath());
  EXPECT_EQ(set_aside, LibraryPath() + ".damaged");
  UseLastGood(LibraryPath(), set_aside);
  EXPECT_EQ(FreeSetAsidePath(LibraryPath()), LibraryPath() + ".damaged-2");
  EXPECT_EQ(ReadWholeFile(LibraryPath()), good);
  EXPECT_EQ(ReadWholeFile(LibraryPath() + ".damaged"), "damaged");
  EXPECT_EQ(ReadWholeFile(Backup()), good);
  RemoveFile(Backup());
  EXPECT_THROW(UseLastGood(LibraryPath(), set_aside), FileError);
}

TEST_F(LibraryCheckTest, AFileLargerThanTwoGiBIsNotALibrary) {
  SaveTwice();
  std::filesystem::resize_file(LibraryPath(), std::uintmax_t{1} << 31U);
  const LibraryInspection file = InspectLibrary(LibraryPath());
  EXPECT_TRUE(file.exists);
  EXPECT_FALSE(file.sound);
  EXPECT_EQ(file.problem, "it has more than 2147483647 bytes");
  EXPECT_EQ(library.Salvage(), 0);
  EXPECT_FALSE(library.LoadMain());
}

}  // namespace
}  // namespace tallow

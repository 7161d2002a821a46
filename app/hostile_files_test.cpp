// SPDX-License-Identifier: GPL-3.0-or-later
// Files at which the reader of tags crashes, ends or hangs, in a start in the modern style.
#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "app/style_findings.h"
#include "tests/id3v2_tag.h"
#include "tests/served_details.h"
#include "tests/system_fixture.h"
#include "tests/wait_until.h"

namespace tallow {
namespace {

class HostileFiles : public SystemTest {
 protected:
  HostileFiles() {
    children_.arguments = {std::string(kServeDetailsOption)};
    children_.program = OwnProgram();
    // On a busy computer a child, which has a low priority, may wait long for a processor.
    children_.max_start = children_.max_wait = std::chrono::minutes(1);
  }

  /// Runs a start whose files are read in children. The tests are their own child, see
  /// tests/served_details.h.
  bool StartModern() {
    windows.emplace();
    tallow.emplace(application.path());
    tallow->preferences.OverrideStyle(Style::kModern);
    tallow->details.ReadInChildren(children_);
    system.emplace(*tallow, drives, *windows);
    return system->Main(runtime_file);
  }
  /// Creates a song with newer tags. The byte between tag and audio makes it one that is not read
  /// in this process, see IsPlainMp3.
  std::string Song(std::string_view name, const std::string& artist) {
    return music.File("c/" + std::string(name), Id3v2Tag({{"TPE1", artist}}) + "x" + Audio(300));
  }
  Texts Artists() const {
    Texts artists;
    const Folder* const top = windows->open.at(0)->Nodes().Find("Artist");
    for (std::int32_t k = 0; k < top->Children(); ++k) artists.push_back(top->ChildAt(k).Text());
    return artists;
  }
  /// Reads all details, as the frame window does.
  /// \returns the paths in Details below the heading that begins with a text
  Texts InDetails(const std::string& heading) {
    tallow->details.Start(tallow->library);
    EXPECT_TRUE(WaitUntil([this] {
      tallow->details.Poll();
      return !tallow->details.IsReading();
    }));
    Texts paths;
    for (const StyleFindings& findings : ListStyleFindings(*tallow))
      for (std::size_t k = 0; findings.heading.starts_with(heading) && k < findings.rows; ++k)
        paths.push_back(findings.row(k).path);
    return paths;
  }

  ChildSettings children_;
};

TEST_F(HostileFiles, AFileThatCrashesItsReaderIsFiledWithoutTagsAndNamedInDetails) {
  const std::string crashing = Song(kCrashingName, "Crashing");
  const std::string ending = Song(kEndingName, "Ending");
  Song("good.mp3", "Good");
  ASSERT_TRUE(StartModern());
  EXPECT_EQ(SongsOnShow(), 6U);
  EXPECT_EQ(Artists(), (Texts{"ABBA", "Good", "Queen"}));
  Texts unreadable = InDetails("Could not be read completely");
  std::ranges::sort(unreadable);
  EXPECT_EQ(unreadable, (Texts{crashing, ending}));
}

TEST_F(HostileFiles, AFileThatHangsItsReaderIsFiledWithoutTagsAndNamedInDetails) {
  const std::string hanging = Song(kHangingName, "Hanging");
  // Other files may exceed this, too, on a busy computer.
  children_.max_wait = std::chrono::milliseconds(300);
  ASSERT_TRUE(StartModern());
  EXPECT_EQ(SongsOnShow(), 4U);
  const Texts artists = Artists();
  EXPECT_EQ(std::ranges::find(artists, "Hanging"), artists.end());
  const Texts unreadable = InDetails("Could not be read completely");
  EXPECT_NE(std::ranges::find(unreadable, hanging), unreadable.end());
}

}  // namespace
}  // namespace tallow

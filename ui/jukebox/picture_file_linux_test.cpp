// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/frame_fixture.h"
#include "ui/jukebox/picture_file.h"
#include "ui/jukebox/song_list_view.h"

namespace tallow {
namespace {

using PictureFiles = FrameTest;

constexpr const char* kAdvice = ". Choose a JPEG or PNG file with \"Change Backgroup Picture\".";

TEST_F(PictureFiles, APipeAndADeviceAreReportedAndNotOpened) {
  const std::string pipe = music / "pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {pipe, std::string("/dev/zero")}) {
    // Reading a pipe without a writer would block for ever.
    const PictureFile read = ReadPicture(path);
    EXPECT_TRUE(read.pixmap.isNull());
    EXPECT_EQ(read.problem,
              path + " cannot be shown behind the songs: it is a pipe or a device" + kAdvice);
  }
}

TEST_F(PictureFiles, AJukeboxOpensEvenIfItsPictureIsAPipe) {
  const std::string pipe = music / "pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  tallow.settings.PictureLocation(pipe);
  tallow.settings.IsThereAPicture(true);
  frmMain& window = ShowJukebox();
  EXPECT_EQ(window.PictureProblem(), ReadPicture(pipe).problem);
  EXPECT_FALSE(window.findChild<SongListView*>()->HasBackgroundImage());
}

TEST_F(PictureFiles, ADanglingLinkIsReported) {
  const std::string link = music / "link.jpg";
  ASSERT_EQ(symlink("/no/such/picture", link.c_str()), 0);
  EXPECT_EQ(ReadPicture(link).problem,
            link + " cannot be shown behind the songs: The link is broken" + kAdvice);
}

}  // namespace
}  // namespace tallow

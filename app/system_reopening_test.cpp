// SPDX-License-Identifier: GPL-3.0-or-later
// A start with the switch `reopens_jukeboxes`.
#include <filesystem>

#include "jukebox/initial_jukebox.h"
#include "tests/id3v2_tag.h"
#include "tests/system_fixture.h"

namespace tallow {
namespace {

class Reopening : public SystemTest {
 protected:
  /// Saves the sample jukebox under several names and switches reopening on.
  void Save(const std::vector<std::string>& names) {
    for (const std::string& name : names)
      ASSERT_TRUE(windows->open.at(0)->Save(application / name, tallow->library));
    tallow->settings.LocOfLastSavedJukeBox(application / names.back());
    tallow->SaveSettings();
    tallow->preferences.SetSwitches({.reopens_jukeboxes = true});
  }
  OpenJukebox Open(const std::string& name) const { return {.file = application / name}; }
  Texts Captions() const {
    Texts captions;
    for (const Jukebox* const jukebox : windows->open) captions.push_back(jukebox->Caption());
    return captions;
  }
};

TEST_F(Reopening, AllJukeboxesOpenInTheirOrderAsTheyWere) {
  Start();
  Save({"b.juk", "a.juk", "c.juk"});
  OpenJukebox front = Open("b.juk");
  front.is_active = true;
  front.place = {WindowPlace::State::kNormal, 10, 20, 300, 200};
  front.shown = {"Artist", "Queen"};
  front.expanded = {{"Artist"}};
  tallow->open_jukeboxes.Store({front, Open("a.juk")});
  ASSERT_TRUE(Start());
  EXPECT_EQ(Captions(), (Texts{"B", "A"}));
  EXPECT_EQ(windows->front, windows->open[0]);
  EXPECT_EQ(windows->selected, Texts{"Queen"});
  ASSERT_EQ(windows->placed.size(), 2U);
  EXPECT_EQ(windows->placed[0].place, front.place);
  EXPECT_TRUE(windows->open[0]->Nodes().Find("Artist")->Open());
  EXPECT_FALSE(windows->open[0]->Nodes().Find("Decades")->Open());
  EXPECT_TRUE(windows->notices.empty());
}

TEST_F(Reopening, NewSongsAreFiledByNewerTags) {
  Start();
  Save({"a.juk"});
  tallow->preferences.SetSwitches({.newer_tags = true, .reopens_jukeboxes = true});
  tallow->open_jukeboxes.Store({Open("a.juk")});
  music.File("a/newer.mp3", Id3v2Tag({{"TPE1", "Newer"}}) + Audio(400));
  ASSERT_TRUE(Start());
  const FolderTree& tree = windows->open.at(0)->Nodes();
  EXPECT_NE(tree.Find("Newer", tree.Find("Artist")), nullptr);
}

TEST_F(Reopening, WithoutTheSwitchTheLastSavedJukeboxOpens) {
  Start();
  Save({"b.juk", "a.juk"});
  tallow->open_jukeboxes.Store({Open("b.juk"), Open("a.juk")});
  tallow->preferences.SetSwitches(kClassicStyle);
  ASSERT_TRUE(Start());
  EXPECT_EQ(Captions(), Texts{"A"});
  EXPECT_EQ(windows->front, nullptr);
}

TEST_F(Reopening, WithoutOpenJukeboxesTheLastSavedOneOpens) {
  Start();
  Save({"b.juk", "a.juk"});
  ASSERT_TRUE(Start());
  EXPECT_EQ(Captions(), Texts{"A"});
}

TEST_F(Reopening, MissingAndDamagedJukeboxesAreNamedAndTheOthersOpen) {
  Start();
  Save({"a.juk", "b.juk"});
  application.File("damaged.juk", "{");
  tallow->open_jukeboxes.Store(
      {Open("gone.juk"), Open("damaged.juk"), Open("a.juk"), Open("b.juk")});
  ASSERT_TRUE(Start());
  EXPECT_EQ(Captions(), (Texts{"A", "B"}));
  EXPECT_EQ(windows->notices,
            Texts{application / "gone.juk" + " is missing, so it was not opened."});
  ASSERT_EQ(windows->messages.size(), 1U);
  EXPECT_NE(windows->messages[0].find("damaged.juk"), std::string::npos);
}

TEST_F(Reopening, IfNoneCanBeOpenedTheSampleOpens) {
  Start();
  Save({"a.juk"});
  tallow->open_jukeboxes.Store({Open("a.juk")});
  std::filesystem::remove(std::filesystem::path(application / "a.juk"));
  ASSERT_TRUE(Start());
  EXPECT_EQ(Captions(), Texts{std::string(kSampleCaption)});
  EXPECT_EQ(windows->notices.size(), 1U);
}

TEST_F(Reopening, UnsavedChangesAreRecoveredOnce) {
  Start();
  Save({"a.juk", "b.juk"});
  ASSERT_TRUE(Start());
  Jukebox& changed = *windows->open[0];
  changed.Nodes().AddChild(nullptr, "Mine");
  tallow->unsaved.Keep(changed, tallow->library);
  tallow->open_jukeboxes.Store({Open("a.juk"), Open("b.juk")});
  ASSERT_TRUE(Start());
  EXPECT_EQ(windows->asked.size(), 1U);
  ASSERT_EQ(windows->open.size(), 2U);
  EXPECT_NE(windows->open[0]->Nodes().Find("Mine"), nullptr);
  EXPECT_EQ(windows->front, windows->open[0]);
  EXPECT_EQ(windows->open[1]->Caption(), "A");
  EXPECT_EQ(windows->open[1]->Nodes().Find("Mine"), nullptr);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

class PreferencesTest : public testing::Test {
 protected:
  PreferencesTest() { Load(); }

  /// Loads the file as the next start does.
  void Load() {
    preferences.emplace();
    preferences->Load(path);
    preferences->OnChange([this](const Switches& before) { changes.push_back(before); });
  }
  void LoadFile(const std::string& content) {
    folder.File("Preferences.json", content);
    Load();
  }
  std::string File() const { return ReadWholeFile(path, 1 << 20).value_or("no file"); }
  nlohmann::json Json() const { return nlohmann::json::parse(File()); }
  Texts Problems() { return preferences->TakeProblems(); }

  TempFolder folder;
  std::string path = folder / "Preferences.json";
  std::optional<Preferences> preferences;
  std::vector<Switches> changes;  ///< the switches before each reported change
};

TEST_F(PreferencesTest, WithoutAFileTheStyleIsClassicAndNothingIsWritten) {
  EXPECT_EQ(preferences->style(), Style::kClassic);
  preferences->SetStyle(Style::kClassic);
  EXPECT_EQ(File(), "no file");
  EXPECT_EQ(Problems(), Texts{});
  EXPECT_TRUE(changes.empty());
}

TEST_F(PreferencesTest, AStyleIsStoredByItsName) {
  preferences->SetStyle(Style::kModern);
  EXPECT_EQ(File(),
            "{\n  \"format\": \"Tallow preferences\",\n  \"version\": 1,\n  \"style\": \"modern\"\n"
            "}\n");
  Load();
  EXPECT_EQ(preferences->switches(), kModernStyle);
  preferences->SetStyle(Style::kClassic);
  EXPECT_EQ(Json().at("style"), "classic");
  Load();
  EXPECT_EQ(preferences->switches(), kClassicStyle);
  EXPECT_EQ(Problems(), Texts{});
}

TEST_F(PreferencesTest, EverySwitchIsStoredOfItself) {
  for (const StyleSwitch& one : StyleSwitches()) {
    Switches switches;
    switches.*one.member = true;
    preferences->SetSwitches(switches);
    EXPECT_EQ(Json().at("style"), "custom");
    EXPECT_EQ(Json().at("switches").size(), StyleSwitches().size());
    EXPECT_EQ(Json().at("switches").at(one.name), true);
    Load();
    EXPECT_EQ(preferences->switches(), switches) << one.name;
    EXPECT_EQ(preferences->style(), Style::kCustom);
  }
  // The switches of a style belong to the program, not to the file.
  preferences->SetStyle(Style::kModern);
  EXPECT_FALSE(Json().contains("switches"));
}

TEST(StyleSwitches, AllOnAreTheModernStyle) {
  Switches switches;
  for (const StyleSwitch& one : StyleSwitches()) {
    EXPECT_EQ(StyleOf(switches), &one == StyleSwitches().data() ? Style::kClassic : Style::kCustom);
    EXPECT_FALSE(switches.*one.member) << one.name << " is there twice";
    switches.*one.member = true;
  }
  EXPECT_EQ(StyleOf(switches), Style::kModern);
  // One byte for each switch: the table has them all.
  EXPECT_EQ(StyleSwitches().size(), sizeof(Switches));
}

TEST(StyleSwitches, HaveNamesMnemonicsAndASentenceEach) {
  std::set<std::string> names;
  // Those of the dialog itself: "C&lassic", "&Modern", "&Close", "&Pages".
  std::set<char> mnemonics = {'l', 'm', 'c', 'p'};
  for (const StyleSwitch& one : StyleSwitches()) {
    EXPECT_TRUE(names.insert(one.name).second) << one.name;
    const std::string caption = one.caption;
    ASSERT_EQ(std::count(caption.begin(), caption.end(), '&'), 1) << caption;
    const char letter = caption.at(caption.find('&') + 1);
    EXPECT_TRUE(mnemonics.insert(static_cast<char>(std::tolower(letter))).second) << caption;
    EXPECT_EQ(std::string(one.explanation).back(), '.') << caption;
  }
}

TEST(StyleSwitches, StylesHaveNames) {
  for (const Style style : {Style::kClassic, Style::kModern, Style::kCustom})
    EXPECT_EQ(StyleOfName(NameOfStyle(style)), style);
  EXPECT_EQ(StyleOfName("Modern"), std::nullopt);
  EXPECT_EQ(StyleOfName(""), std::nullopt);
}

TEST_F(PreferencesTest, UnknownMembersAreKeptAtEveryLevel) {
  LoadFile(R"({"later":{"a":[1,{"b":null}]},"style":"custom",
               "switches":{"newerTags":true,"fromLater":7},"player":{"other":"x"}})");
  EXPECT_EQ(preferences->switches(), Switches{.newer_tags = true});
  preferences->SetStyle(Style::kModern);
  preferences->Set("player.volume", std::int64_t{3});
  const nlohmann::json expected = nlohmann::json::parse(
      R"({"format":"Tallow preferences","version":1,"later":{"a":[1,{"b":null}]},"style":"modern",
          "switches":{"fromLater":7},"player":{"other":"x","volume":3}})");
  EXPECT_EQ(Json(), expected);
  Load();
  EXPECT_EQ(Problems(), Texts{});
  preferences->SetSwitches({.albums = true});
  EXPECT_EQ(Json().at("switches").at("fromLater"), 7);
  EXPECT_EQ(Json().at("switches").at("albums"), true);
}

TEST_F(PreferencesTest, ADamagedFileIsRenamedAndTheDefaultsHold) {
  const std::string deep = std::string(101, '[') + std::string(101, ']');
  for (const std::string& content :
       {std::string(), std::string("{"), std::string("[]"), std::string("7"),
        std::string(R"({"style":"retro"})"), std::string(R"({"style":1})"),
        std::string(R"({"switches":[]})"), std::string(R"({"switches":{"albums":1}})"),
        std::string(R"({"version":2})"), std::string(R"({"version":"1"})"),
        std::string(R"({"format":"Tallow jukebox"})"), std::string("{\"style\":\"modern\"}x"),
        std::string("{\"a\":\"\xff\"}"), "{\"style\":\"modern\",\"deep\":" + deep + "}",
        "{\"a\":\"" + std::string(Preferences::kMaxBytes, 'a') + "\"}"}) {
    LoadFile(content);
    const std::string begin = content.substr(0, 60);
    EXPECT_EQ(preferences->switches(), kClassicStyle) << begin;
    EXPECT_EQ(Problems(), Texts{path + " is damaged. It was renamed to end in .bak. Tallow "
                                       "runs in the classic style now. To choose again, open "
                                       "Tools > Preferences."})
        << begin;
    EXPECT_EQ(File(), "no file") << begin;
    EXPECT_EQ(ReadWholeFile(path + ".bak", std::uint64_t{1} << 30U), content) << begin;
  }
  preferences->SetStyle(Style::kModern);
  EXPECT_EQ(Json().at("style"), "modern");
  EXPECT_EQ(Problems(), Texts{});
}

TEST_F(PreferencesTest, ARandomlyChangedFileIsReadOrRenamed) {
  preferences->SetSwitches({.albums = true, .natural_order = true});
  preferences->Set("music.folders", Texts{"/m/a/", "/m/\xff/"});
  const std::string sound = File();
  std::mt19937 random(1);
  int damaged = 0;
  for (int round = 0; round < 200; ++round) {
    std::string content = sound;
    for (std::size_t changes_left = 1 + random() % 3; changes_left > 0; --changes_left)
      content[random() % content.size()] = static_cast<char>(random() % 256);
    LoadFile(content);
    const Texts problems = Problems();
    if (problems.empty()) {
      EXPECT_EQ(File(), content) << round;
    } else {
      ++damaged;
      EXPECT_EQ(problems.size(), 1U) << round;
      EXPECT_EQ(preferences->switches(), kClassicStyle) << round;
      EXPECT_EQ(ReadWholeFile(path + ".bak", 1 << 20), content) << round;
    }
    preferences->Set("round", std::int64_t{round});
    EXPECT_EQ(Json().at("round"), round);
  }
  // Both happened.
  EXPECT_GT(damaged, 0);
  EXPECT_LT(damaged, 200);
}

TEST_F(PreferencesTest, AFileByHandNeedsOnlyWhatDiffers) {
  LoadFile(R"({"style":"modern"})");
  EXPECT_EQ(preferences->switches(), kModernStyle);
  LoadFile("{}");
  EXPECT_EQ(preferences->switches(), kClassicStyle);
  LoadFile(R"({"switches":{"albums":true}})");
  EXPECT_EQ(preferences->switches(), kClassicStyle);
  LoadFile(R"({"style":"custom"})");
  EXPECT_EQ(preferences->switches(), kClassicStyle);
  LoadFile("{\"style\":\"modern\",\"deep\":" + std::string(90, '[') + std::string(90, ']') + "}");
  EXPECT_EQ(preferences->switches(), kModernStyle);
  EXPECT_EQ(Problems(), Texts{});
}

TEST_F(PreferencesTest, AFileThatCannotBeReadIsNeverReplaced) {
  // A folder cannot be read as a file, not even by an administrator.
  folder.Folder("Preferences.json");
  Load();
  Texts problems = Problems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with(path + " cannot be read (")) << problems[0];
  preferences->SetStyle(Style::kModern);
  // The change applies nevertheless.
  EXPECT_EQ(preferences->style(), Style::kModern);
  EXPECT_EQ(changes, std::vector{kClassicStyle});
  const Texts expected = {"The preferences could not be saved, because " + path +
                          " could not be read at the start. They last until Tallow ends."};
  EXPECT_EQ(Problems(), expected);
  // Said once.
  preferences->SetStyle(Style::kClassic);
  preferences->SetStyle(Style::kModern);
  EXPECT_EQ(Problems(), Texts{});
  EXPECT_TRUE(FolderExists(path));
}

TEST_F(PreferencesTest, AFailedSaveIsReportedAndRetriedByTheNextChange) {
  preferences->SetStyle(Style::kModern);
  // A folder in the place of the temporary file makes each save fail.
  folder.File("Preferences.json.new/a");
  preferences->SetSwitches({.albums = true});
  const Texts problems = Problems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_TRUE(problems[0].starts_with("The preferences could not be saved. ")) << problems[0];
  EXPECT_EQ(Json().at("style"), "modern");
  std::filesystem::remove_all(folder / "Preferences.json.new");
  preferences->Set("a", true);
  EXPECT_EQ(Json().at("style"), "custom");
  EXPECT_EQ(Json().at("a"), true);
}

TEST_F(PreferencesTest, BeforeALoadChangesStayInMemory) {
  preferences.emplace();
  preferences->SetStyle(Style::kModern);
  EXPECT_EQ(preferences->style(), Style::kModern);
  EXPECT_EQ(Problems(), Texts{});
  EXPECT_EQ(File(), "no file");
}

TEST_F(PreferencesTest, AnOverrideAppliesButIsNotStored) {
  preferences.emplace();
  preferences->OverrideStyle(Style::kModern);
  preferences->Load(path);
  EXPECT_EQ(preferences->style(), Style::kModern);
  EXPECT_TRUE(preferences->IsOverridden());
  preferences->Set("a", true);
  EXPECT_FALSE(Json().contains("style"));
  EXPECT_FALSE(Json().contains("switches"));
  Load();
  EXPECT_EQ(preferences->style(), Style::kClassic);

  LoadFile(R"({"style":"modern"})");
  preferences->OverrideStyle(Style::kClassic);
  EXPECT_EQ(preferences->style(), Style::kClassic);
  preferences->Set("a", false);
  EXPECT_EQ(Json().at("style"), "modern");
}

TEST_F(PreferencesTest, AChoiceOfTheUserEndsAnOverride) {
  preferences->OverrideStyle(Style::kModern);
  // The choice equals the override, but from now on it is stored.
  preferences->SetStyle(Style::kModern);
  EXPECT_FALSE(preferences->IsOverridden());
  EXPECT_EQ(Json().at("style"), "modern");
  EXPECT_TRUE(changes.empty());

  preferences->OverrideStyle(Style::kClassic);
  preferences->SetStyle(Style::kModern);
  EXPECT_EQ(preferences->style(), Style::kModern);
  EXPECT_EQ(changes, std::vector{kClassicStyle});
}

TEST_F(PreferencesTest, AChangeIsReportedOnceItIsStored) {
  std::string stored;
  preferences->OnChange([&](const Switches& before) {
    changes.push_back(before);
    stored = File();
  });
  preferences->SetSwitches({.albums = true});
  EXPECT_EQ(stored, File());
  preferences->SetStyle(Style::kModern);
  preferences->SetStyle(Style::kModern);
  preferences->Set("a", true);
  preferences->Set("a", true);
  const std::vector<Switches> expected = {kClassicStyle, {.albums = true}, kModernStyle};
  EXPECT_EQ(changes, expected);
  preferences->OnChange({});
  preferences->SetStyle(Style::kClassic);
  EXPECT_EQ(changes, expected);
}

TEST_F(PreferencesTest, OtherSettingsKeepTheirValueAndType) {
  const Texts paths = {"/m/abba/", "/m/\xff\xfe/", "/m/\xD0\xB0/", ""};
  preferences->Set("music.folders", paths);
  preferences->Set("player.gap.seconds", 1.5);
  preferences->Set("player.gap.on", true);
  preferences->Set("player.count", std::int64_t{INT64_MIN});
  preferences->Set("name", std::string("a\"\n\x80"));
  Load();
  EXPECT_EQ(preferences->Get("music.folders", Texts{}), paths);
  EXPECT_EQ(preferences->Get("player.gap.seconds", 0.0), 1.5);
  EXPECT_TRUE(preferences->Get("player.gap.on", false));
  EXPECT_EQ(preferences->Get("player.count", std::int64_t{0}), INT64_MIN);
  EXPECT_EQ(preferences->Get("name", std::string()), "a\"\n\x80");
  EXPECT_EQ(Json().at("player").at("gap").at("on"), true);
}

TEST_F(PreferencesTest, ASettingThatIsMissingOrOfAnotherTypeHasTheGivenValue) {
  LoadFile(R"({"a":{"b":"text"},"c":[1],"d":1e300,"e":18446744073709551615,"f":["x",1]})");
  EXPECT_EQ(preferences->Get("none", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("a", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("a.b", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("a.b.c", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("c.0", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("d", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("e", std::int64_t{5}), 5);
  EXPECT_EQ(preferences->Get("f", Texts{"y"}), Texts{"y"});
  EXPECT_TRUE(preferences->Get("a.b", true));
  // A number without a fraction is one with a fraction, too.
  EXPECT_EQ(preferences->Get("e", 0.0), 18446744073709551615.0);
  preferences->Set("a.b.c", true);
  preferences->Set("c", std::string("text"));
  EXPECT_TRUE(preferences->Get("a.b.c", false));
  EXPECT_EQ(preferences->Get("c", std::string()), "text");
}

}  // namespace
}  // namespace tallow

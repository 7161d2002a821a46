// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <gtest/gtest.h>
#include <windows.h>

#include "app/search/winamp_places.h"
#include "tests/temp_folder.h"
#include "util/text.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

constexpr const wchar_t* kEntry =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Winamp";

/// Writes the user's entry in the list of installed programs.
class WinampPlaces : public testing::Test {
 protected:
  WinampPlaces() { RegDeleteKeyW(HKEY_CURRENT_USER, kEntry); }
  ~WinampPlaces() override { RegDeleteKeyW(HKEY_CURRENT_USER, kEntry); }

  static void SetEntry(const wchar_t* name, const std::string& text) {
    const std::wstring wide = ToWide(text);
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kEntry, name, REG_SZ, wide.c_str(),
                              static_cast<DWORD>((wide.size() + 1) * sizeof wide[0])),
              ERROR_SUCCESS);
  }
  static std::ptrdiff_t Count(const std::string& player) {
    const std::vector<std::string> found = WinampsInUsualPlaces();
    return std::count(found.begin(), found.end(), ToLower(player));
  }

  TempFolder folder;
};

TEST_F(WinampPlaces, AnEntryNamesTheFolder) {
  const std::string player = folder.File("My Winamp/WINAMP.EXE");
  EXPECT_EQ(Count(player), 0);
  SetEntry(L"InstallLocation", folder / "My Winamp");
  EXPECT_EQ(Count(player), 1);
}

TEST_F(WinampPlaces, TheFolderOfTheUninstallerOrTheIconIsTakenToo) {
  const std::string player = folder.File("a, b/winamp.exe");
  SetEntry(L"UninstallString", "\"" + (folder / "a, b/UninstWA.exe") + "\" /S");
  EXPECT_EQ(Count(player), 1);
  SetEntry(L"UninstallString", folder / "a, b/UninstWA.exe");
  EXPECT_EQ(Count(player), 1);
  SetEntry(L"UninstallString", "");
  EXPECT_EQ(Count(player), 0);
  SetEntry(L"DisplayIcon", (folder / "a, b/winamp.exe") + ",0");
  EXPECT_EQ(Count(player), 1);
}

TEST_F(WinampPlaces, AnEntryWithoutAProgramIsIgnored) {
  SetEntry(L"InstallLocation", folder / "gone");
  SetEntry(L"DisplayIcon", "winamp.exe");
  SetEntry(L"UninstallString", "\"");
  for (const std::string& found : WinampsInUsualPlaces())
    EXPECT_EQ(found.find(ToLower(folder.path())), std::string::npos) << found;
}

TEST_F(WinampPlaces, TheFolderOfProgramsIsLookedInWithoutAnEntry) {
  wchar_t programs[MAX_PATH] = {};
  ASSERT_GT(GetEnvironmentVariableW(L"ProgramFiles", programs, MAX_PATH), 0U);
  const std::string winamp = FromWide(programs) + "\\Winamp\\";
  // A real Winamp must stay as it is.
  if (FolderExists(winamp)) GTEST_SKIP() << winamp << " exists";
  CreateFolders(winamp);
  WriteFileAtomically(winamp + "winamp.exe", "x");
  EXPECT_EQ(Count(winamp + "winamp.exe"), 1);
  RemoveFile(winamp + "winamp.exe");
  RemoveDirectoryW(ToWide(winamp).c_str());
}

}  // namespace
}  // namespace tallow

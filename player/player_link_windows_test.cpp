// SPDX-License-Identifier: GPL-3.0-or-later
#include <future>
#include <thread>

#include "player/path_in_code_page_windows.h"
#include "player/player_link.h"
#include "player/player_process_windows.h"
#include "player/player_window_windows.h"
#include "tests/stand_in_player_windows.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

TEST_F(OtherPlayer, StartsMinimizedWithoutTheFocus) {
  ASSERT_TRUE(player.StartWinamp());
  ASSERT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
  EXPECT_EQ(ReceivedMessages(), Texts{"started " + std::to_string(SW_SHOWMINNOACTIVE)});
}

TEST_F(OtherPlayer, AnswersAcrossProcesses) {
  StartSong();
  EXPECT_EQ(player.GetWinampVersion(), "2.081");
  EXPECT_EQ(player.GetWinampStatus(), "PLAYING");
  EXPECT_EQ(player.GetTrackPosition(), 61);
  EXPECT_EQ(player.GetTrackLength(), 60);
}

TEST_F(OtherPlayer, IsNotStartedFromAPathWithoutAProgram) {
  path = folder / "winamp.exe";
  EXPECT_FALSE(player.StartWinamp());
}

TEST_F(OtherPlayer, MayLieInAFolderWithBlanks) {
  const std::string blanks = folder.Folder("Program Files") + "winamp.exe";
  ASSERT_TRUE(CopyFileW(ToWide(path).c_str(), ToWide(blanks).c_str(), TRUE));
  path = blanks;
  ASSERT_TRUE(player.StartWinamp());
  EXPECT_TRUE(WaitUntil([&] { return player.FindWinamp(); }));
  EndPlayer();
  // The file can be deleted only after the process has ended.
  EXPECT_TRUE(WaitUntil([&] { return RemoveFile(blanks); }));
}

/// A window of Winamp's class in this process. It answers a query of the position with the 32 bits
/// of -1, and other messages with 1.
class WindowOfWinampsClass : public testing::Test {
 protected:
  WindowOfWinampsClass() {
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam,
                                  LPARAM lParam) -> LRESULT {
      if (message == WM_USER) return lParam == kTrackTime ? LRESULT{0xFFFFFFFF} : 1;
      return DefWindowProcW(window, message, wParam, lParam);
    };
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = kPlayerWindowClass;
    RegisterClassExW(&window_class);
  }
  ~WindowOfWinampsClass() override {
    UnregisterClassW(kPlayerWindowClass, GetModuleHandleW(nullptr));
  }

  static HWND Create(const wchar_t* class_name, const wchar_t* title) {
    return CreateWindowExW(0, class_name, title, WS_OVERLAPPEDWINDOW, 0, 0, 9, 9, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  }
  std::int64_t Ask(HWND window, PlayerRequest request) const {
    return link->Send(reinterpret_cast<PlayerHandle>(window), kWmUser, 0, request);
  }
  bool IsRunning(HWND window) const {
    return link->IsRunning(reinterpret_cast<PlayerHandle>(window));
  }

  std::unique_ptr<PlayerLink> link = SystemPlayerLink("id");
};

TEST_F(WindowOfWinampsClass, IsAPlayerOnlyWithATitle) {
  const HWND window = Create(kPlayerWindowClass, L"");
  EXPECT_EQ(link->Find(), 0U);
  EXPECT_FALSE(IsRunning(window));
  SetWindowTextW(window, L"Winamp 2.81");
  EXPECT_EQ(link->Find(), reinterpret_cast<PlayerHandle>(window));
  EXPECT_TRUE(IsRunning(window));
  EXPECT_EQ(Ask(window, kTrackTime), -1);
  EXPECT_EQ(Ask(window, kStatus), 1);
  SetWindowTextW(window, L"Tallow player another");
  EXPECT_EQ(link->Find(), 0U);
  EXPECT_FALSE(IsRunning(window));
  EXPECT_EQ(Ask(window, kStatus), 0);
  DestroyWindow(window);
}

TEST_F(WindowOfWinampsClass, AWindowOfAnotherClassIsNoPlayer) {
  const HWND window = Create(L"STATIC", L"Winamp 2.81");
  EXPECT_EQ(link->Find(), 0U);
  EXPECT_FALSE(IsRunning(window));
  EXPECT_FALSE(IsRunning(nullptr));
  DestroyWindow(window);
}

TEST_F(WindowOfWinampsClass, AWinampThatHangsDoesNotBlockQueries) {
  HWND window = nullptr;
  std::promise<void> created;
  std::promise<void> ends;
  std::thread hanging([&] {
    window = Create(kPlayerWindowClass, L"Winamp 2.81");
    created.set_value();
    ends.get_future().wait();
    DestroyWindow(window);
  });
  created.get_future().wait();
  EXPECT_EQ(link->Find(), reinterpret_cast<PlayerHandle>(window));
  for (int k = 0; k < 20; ++k) EXPECT_EQ(Ask(window, kStatus), 0);
  ends.set_value();
  hanging.join();
  EXPECT_FALSE(IsRunning(window));
}

TEST(PlayerProcess, AProgramThatWritesMuchBeforeItEndsDoesNotBlock) {
  wchar_t folder[MAX_PATH];
  GetSystemDirectoryW(folder, MAX_PATH);
  PlayerProcess process;
  // More than the pipe holds.
  ASSERT_TRUE(process.Start(FromWide(folder) + "\\cmd.exe", "/c for /L %i in (1,1,200) do @echo " +
                                                                std::string(100, 'x') + "%i 1>&2"));
  EXPECT_TRUE(process.IsStarting() || process.HasEnded());
  EXPECT_TRUE(WaitUntil([&] {
    process.Read();
    return process.HasEnded();
  }));
  EXPECT_FALSE(process.IsStarting());
  EXPECT_TRUE(process.LastLine().starts_with(std::string(100, 'x') + "200")) << process.LastLine();
}

TEST(PathInCodePage, APathWithinTheCodePageIsConverted) {
  EXPECT_EQ(PathInCodePage("C:\\Musik\\caf\u00E9 \u20AC.mp3", 1252), "C:\\Musik\\caf\xE9 \x80.mp3");
  EXPECT_EQ(PathInCodePage("C:\\\u041C\u0438\u0440.mp3", 1251), "C:\\\xCC\xE8\xF0.mp3");
  EXPECT_EQ(PathInCodePage("C:\\\u66F2.mp3", 65001), "C:\\\u66F2.mp3");
}

TEST(PathInCodePage, AnyOtherPathIsReplacedByItsShortForm) {
  const TempFolder folder;
  // A best-fit replacement (Latin a for the Cyrillic one) would name another file.
  for (const char* const name : {"\u66F2 \u0416.mp3", "\u0430.mp3"}) {
    const std::string file = folder.File(name);
    const std::string text = PathInCodePage(file, 1252);
    for (const char c : text) EXPECT_GT(c, ' ');
    EXPECT_EQ(text.find('?'), std::string::npos) << text;
    // The short path names the same file.
    EXPECT_TRUE(FileExists(text)) << text;
  }
}

TEST(PathInCodePage, WithoutAShortFormItHasQuestionMarks) {
  EXPECT_EQ(PathInCodePage("C:\\gone\\\u66F2.mp3", 1252), "C:\\gone\\?.mp3");
}

TEST_F(OtherPlayer, GetsPathsInTheCodePageOfTheSystem) {
  const std::string plain = "C:\\Music\\a.mp3";
  EXPECT_EQ(link->TextOfPath(plain), plain);
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <optional>
#include <utility>
#include <windows.h>

#include "player/path_in_code_page_windows.h"
#include "player/player_link.h"
#include "player/player_messages.h"
#include "player/player_process_windows.h"
#include "player/player_window_windows.h"
#include "player/tallow_player_requests.h"
#include "util/path_text.h"
#include "util/start_program.h"
#include "util/text.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

static_assert(kWmCopyData == WM_COPYDATA && kWmCommand == WM_COMMAND && kWmUser == WM_USER);

/// How long to wait for an answer of Tallow's own player, in ms.
constexpr UINT kAnswerTimeout = 5000;

HWND WindowOf(PlayerHandle player) { return reinterpret_cast<HWND>(player); }

bool IsOwnProgram(const std::string& program) {
  const std::string_view folder = FolderOfPath(program);
  return EqualsIgnoringCase(std::string_view(program).substr(folder.size()), "tallow-player.exe");
}

/// Sends a message to Tallow's own player. Winamp's are sent without a timeout.
std::int64_t SendToOwnPlayer(HWND player, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR answer = 0;
  // Messages that are sent to this thread are received meanwhile.
  if (SendMessageTimeoutW(player, message, wParam, lParam, SMTO_ABORTIFHUNG, kAnswerTimeout,
                          &answer) == 0)
    return 0;
  return static_cast<std::int64_t>(answer);
}

/// The window that receives the answers to kAsk, see player_window_windows.h.
class AnswerWindow {
 public:
  AnswerWindow() {
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = Procedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = kPlayerLinkClass;
    // Fails when another link has registered the class.
    RegisterClassExW(&window_class);
    window_ = CreateWindowExW(0, kPlayerLinkClass, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              window_class.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  AnswerWindow(const AnswerWindow&) = delete;
  AnswerWindow& operator=(const AnswerWindow&) = delete;
  ~AnswerWindow() {
    if (window_ != nullptr) DestroyWindow(window_);
  }

  WPARAM Handle() const noexcept { return reinterpret_cast<WPARAM>(window_); }

  /// Sends a kAsk.
  std::optional<std::string> Ask(HWND player, const COPYDATASTRUCT& record) {
    asked_ = player;
    answer_.reset();
    const std::int64_t result =
        SendToOwnPlayer(player, WM_COPYDATA, Handle(), reinterpret_cast<LPARAM>(&record));
    asked_ = nullptr;
    std::optional<std::string> answer = std::exchange(answer_, std::nullopt);
    return result == 1 ? std::move(answer) : std::nullopt;
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<AnswerWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != WM_COPYDATA || self == nullptr)
      return DefWindowProcW(window, message, wParam, lParam);
    const auto& record = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    // An answer that comes too late belongs to no request.
    if (record.dwData != kAsk || self->asked_ == nullptr ||
        reinterpret_cast<HWND>(wParam) != self->asked_)
      return 0;
    self->answer_.emplace(static_cast<const char*>(record.lpData), record.cbData);
    return 1;
  }

  HWND window_ = nullptr;
  HWND asked_ = nullptr;  ///< the player that executes a kAsk now
  std::optional<std::string> answer_;
};

/// Takes our own player by class and title, and a Winamp by class without such a title.
class WindowLink : public PlayerLink {
 public:
  explicit WindowLink(const std::string& identifier)
      : identifier_(identifier), own_title_(ToWide(PlayerWindowTitle(identifier))) {}

  void UseProgram(const std::string& program) override {
    uses_own_ = program.empty() ? std::nullopt : std::optional(IsOwnProgram(program));
  }

  PlayerHandle Find() override {
    HWND own = nullptr;
    HWND winamp = nullptr;
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kPlayerWindowClass, nullptr)) != nullptr) {
      if (own == nullptr && IsOwn(window)) own = window;
      if (winamp == nullptr && IsWinamp(window)) winamp = window;
    }
    if (own != nullptr) process_.StopListening();
    const bool takes_own = uses_own_.value_or(own != nullptr);
    return reinterpret_cast<PlayerHandle>(takes_own ? own : winamp);
  }

  bool Start(const std::string& program) override {
    UseProgram(program);
    if (!uses_own_.value_or(false))
      return StartProgram(program, FirstWindow::kMinimizedWithoutFocus);
    if (Find() != 0) return true;
    return process_.Start(program, identifier_.empty() ? "" : "--identifier " + identifier_);
  }

  PlayerStart FollowStart() override {
    if (Find() != 0) return PlayerStart::kAnswers;
    return uses_own_.value_or(false) && process_.HasEnded() ? PlayerStart::kEnded
                                                            : PlayerStart::kNoWindow;
  }

  std::string LastLineWritten() override { return process_.LastLine(); }

  std::int64_t Send(PlayerHandle player, std::uint32_t message, std::int64_t wParam,
                    std::int64_t lParam) override {
    const HWND window = WindowOf(player);
    if (IsOwn(window))
      return SendToOwnPlayer(window, message, static_cast<WPARAM>(wParam),
                             static_cast<LPARAM>(lParam));
    return SendMessageA(window, message, static_cast<WPARAM>(wParam), static_cast<LPARAM>(lParam));
  }

  bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    // Code 100 is for paths in the system's code page, and our own player gets them in UTF-8.
    if (code == kAddFile && KindOf(player) == PlayerKind::kTallowPlayer) {
      constexpr std::int64_t kAt = kAtEnd;
      std::string record(reinterpret_cast<const char*>(&kAt), sizeof kAt);
      record += data;
      return AddFiles(player, record) != kListHasNoRoom;
    }
    COPYDATASTRUCT record = Record(code, data);
    SendMessageA(WindowOf(player), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&record));
    // The player does not report a full list.
    return true;
  }

  PlayerKind KindOf(PlayerHandle player) override {
    return IsOwn(WindowOf(player)) ? PlayerKind::kTallowPlayer : PlayerKind::kWinamp;
  }

  std::int64_t AddFiles(PlayerHandle player, std::string_view data) override {
    const HWND window = WindowOf(player);
    if (data.size() > kMaxPayload || !IsOwn(window)) return 0;
    const COPYDATASTRUCT record = Record(kAddFiles, data);
    return SendToOwnPlayer(window, WM_COPYDATA, answers_.Handle(),
                           reinterpret_cast<LPARAM>(&record));
  }

  std::optional<std::string> Ask(PlayerHandle player, std::string_view request) override {
    const HWND window = WindowOf(player);
    if (request.size() > kMaxPayload || !IsOwn(window)) return std::nullopt;
    return answers_.Ask(window, Record(kAsk, request));
  }

  bool IsRunning(PlayerHandle player) override { return IsWindow(WindowOf(player)) != FALSE; }

  std::string TextOfPath(const std::string& path) const override {
    return uses_own_.value_or(false) ? path : PathInCodePage(path, SystemCodePage());
  }

 private:
  /// The system only reads the data.
  static COPYDATASTRUCT Record(std::uint32_t code, std::string_view data) {
    COPYDATASTRUCT record{};
    record.dwData = code;
    record.cbData = static_cast<DWORD>(data.size());
    record.lpData = const_cast<char*>(data.data());
    return record;
  }

  bool IsOwn(HWND window) const { return WindowTitle(window) == own_title_; }
  static bool IsWinamp(HWND window) {
    return !WindowTitle(window).starts_with(ToWide(kPlayerTitleStart));
  }

  const std::string identifier_;
  const std::wstring own_title_;
  std::optional<bool> uses_own_;  ///< no value when no program was chosen
  PlayerProcess process_;
  AnswerWindow answers_;
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink(const std::string& identifier) {
  return std::make_unique<WindowLink>(identifier);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>
#include <map>
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

/// How long to wait for a Winamp's answer to a query, in ms. The status is queried all the time,
/// and a Winamp that hangs must not block the program.
constexpr UINT kQueryTimeout = 500;
/// The same for the length, which a Winamp may have to read from a slow disk.
constexpr UINT kLengthTimeout = 2000;
/// How long a Winamp that did not answer in time is not asked again.
constexpr std::chrono::seconds kPauseAfterTimeout{2};

/// Whether a message only asks.
bool IsQuery(std::uint32_t message, std::int64_t lParam) {
  if (message != kWmUser) return false;
  switch (lParam) {
    case kVersion:
    case kStatus:
    case kTrackTime:
    case kListLength:
    case kListPlace:
    case kShuffle:
    case kRepeat:
      return true;
    default:
      return false;
  }
}

/// Sends a message to Tallow's own player.
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

/// Takes our own player by class and title, and a Winamp by class without such a title. A window
/// without a title is neither: it is not ready.
class WindowLink : public PlayerLink {
 public:
  explicit WindowLink(const std::string& identifier)
      : identifier_(identifier), own_title_(ToWide(PlayerWindowTitle(identifier))) {}

  void UseProgram(const std::string& program) override {
    uses_own_ = program.empty() ? std::nullopt : std::optional(IsOwnProgram(program));
  }

  PlayerHandle Find() override {
    Windows windows{.link = *this};
    EnumWindows(&WindowLink::Sort, reinterpret_cast<LPARAM>(&windows));
    if (windows.own != nullptr) process_.StopListening();
    finds_own_ = uses_own_.value_or(windows.own != nullptr);
    return reinterpret_cast<PlayerHandle>(finds_own_ ? windows.own : windows.winamp);
  }

  bool Start(const std::string& program) override {
    UseProgram(program);
    if (!uses_own_.value_or(false))
      return StartProgram(program, FirstWindow::kMinimizedWithoutFocus);
    if (Find() != 0 || process_.IsStarting()) return true;
    return process_.Start(program, identifier_.empty() ? "" : "--identifier " + identifier_);
  }

  PlayerStart FollowStart() override {
    if (Find() != 0) return PlayerStart::kAnswers;
    process_.Read();
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
    if (!IsWinamp(window)) return 0;
    if (IsQuery(message, lParam))
      return QueryWinamp(window, static_cast<WPARAM>(wParam), static_cast<LPARAM>(lParam));
    return AnswerOfWinamp(
        SendMessageA(window, message, static_cast<WPARAM>(wParam), static_cast<LPARAM>(lParam)));
  }

  bool SendCopyData(PlayerHandle player, std::uint32_t code, std::string_view data) override {
    // Code 100 is for paths in the system's code page, and our own player gets them in UTF-8.
    if (code == kAddFile && IsOwn(WindowOf(player))) {
      constexpr std::int64_t kAt = kAtEnd;
      std::string record(reinterpret_cast<const char*>(&kAt), sizeof kAt);
      record += data;
      return AddFiles(player, record) != kListHasNoRoom;
    }
    if (!IsWinamp(WindowOf(player))) return true;
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

  bool IsRunning(PlayerHandle player) override {
    return IsOwn(WindowOf(player)) || IsWinamp(WindowOf(player));
  }

  std::string TextOfPath(const std::string& path) const override {
    return finds_own_ ? path : PathInCodePage(path, SystemCodePage());
  }

 private:
  using Clock = std::chrono::steady_clock;

  /// The first windows of each kind.
  struct Windows {
    const WindowLink& link;
    HWND own = nullptr;
    HWND winamp = nullptr;
  };

  static BOOL CALLBACK Sort(HWND window, LPARAM parameter) {
    auto& windows = *reinterpret_cast<Windows*>(parameter);
    if (windows.own == nullptr && windows.link.IsOwn(window)) windows.own = window;
    if (windows.winamp == nullptr && IsWinamp(window)) windows.winamp = window;
    return TRUE;
  }

  /// The system only reads the data.
  static COPYDATASTRUCT Record(std::uint32_t code, std::string_view data) {
    COPYDATASTRUCT record{};
    record.dwData = code;
    record.cbData = static_cast<DWORD>(data.size());
    record.lpData = const_cast<char*>(data.data());
    return record;
  }

  // The system gives the handle of a window that is gone to another one later, so the class is
  // compared each time.

  bool IsOwn(HWND window) const {
    return HasClass(window, kPlayerWindowClass) && WindowTitle(window) == own_title_;
  }
  static bool IsWinamp(HWND window) {
    if (!HasClass(window, kPlayerWindowClass)) return false;
    const std::wstring title = WindowTitle(window);
    return !title.empty() && !title.starts_with(ToWide(kPlayerTitleStart));
  }

  /// A Winamp is a 32-bit program, so -1 may arrive without the upper half.
  static std::int64_t AnswerOfWinamp(LRESULT answer) { return static_cast<std::int32_t>(answer); }

  /// Returns the last answer when the Winamp does not answer in time; 0 when there was none.
  std::int64_t QueryWinamp(HWND window, WPARAM wParam, LPARAM lParam) {
    if (std::exchange(queried_, window) != window) answers_of_winamp_.clear();
    const std::pair query(wParam, lParam);
    if (Clock::now() < asks_again_) return answers_of_winamp_[query];
    const bool asks_length = lParam == kTrackTime && wParam == kAskLength;
    DWORD_PTR answer = 0;
    if (SendMessageTimeoutA(window, WM_USER, wParam, lParam, SMTO_ABORTIFHUNG,
                            asks_length ? kLengthTimeout : kQueryTimeout, &answer) != 0)
      return answers_of_winamp_[query] = AnswerOfWinamp(static_cast<LRESULT>(answer));
    asks_again_ = Clock::now() + kPauseAfterTimeout;
    return answers_of_winamp_[query];
  }

  const std::string identifier_;
  const std::wstring own_title_;
  std::optional<bool> uses_own_;  ///< no value when no program was chosen
  bool finds_own_ = false;        ///< Find looked for our own player last
  Clock::time_point asks_again_;  ///< until then, no Winamp is queried
  HWND queried_ = nullptr;        ///< the Winamp that was queried last
  std::map<std::pair<WPARAM, LPARAM>, std::int64_t> answers_of_winamp_;
  PlayerProcess process_;
  AnswerWindow answers_;
};

}  // namespace

std::unique_ptr<PlayerLink> SystemPlayerLink(const std::string& identifier) {
  return std::make_unique<WindowLink>(identifier);
}

}  // namespace tallow

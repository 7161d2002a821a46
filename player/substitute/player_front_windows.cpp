// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>
#include <cstdio>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <windows.h>

#include "player/path_in_code_page_windows.h"
#include "player/player_messages.h"
#include "player/player_window_windows.h"
#include "player/substitute/media_keys_windows.h"
#include "player/substitute/player_front.h"
#include "player/substitute/player_options.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// How long to wait for the answer to a request, and for a client that receives one.
constexpr std::chrono::seconds kAnswerTimeout{3};

/// The answer to a request, which may arrive after the wait for it has ended.
struct PendingAnswer {
  std::optional<PlayerAnswer> number;
  std::optional<std::string> text;
};

/// Closes a handle of the system.
struct CloseSystemHandle {
  void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using SystemHandle = std::unique_ptr<void, CloseSystemHandle>;

/// Converts a record of kAddFile, which other programs send in the system's code page.
std::string PathRecordInUtf8(const std::string& record) {
  std::string path = record.substr(0, record.find('\0'));
  return PathFromCodePage(path, SystemCodePage()) + record.substr(path.size());
}

/// A hidden top-level window, which clients send the requests to, see player_window_windows.h.
class WindowFront final : public PlayerFront {
 public:
  /// \param running exists while a player of the identifier is running
  WindowFront(SystemHandle running, const std::string& identifier)
      : running_(std::move(running)),
        loop_(NewEventLoop()),
        title_(ToWide(PlayerWindowTitle(identifier))) {}
  WindowFront(const WindowFront&) = delete;
  WindowFront& operator=(const WindowFront&) = delete;
  ~WindowFront() override { Close(); }

  EventLoop& Loop() override { return *loop_; }

  void Open(SongPlayer& player, RequestHandler execute, std::function<void()> close) override {
    execute_ = std::move(execute);
    close_ = std::move(close);
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = Procedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = kPlayerWindowClass;
    if (RegisterClassExW(&window_class) == 0) throw std::runtime_error("the window class");
    window_ = CreateWindowExW(0, kPlayerWindowClass, title_.c_str(), WS_OVERLAPPEDWINDOW,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr,
                              nullptr, window_class.hInstance, nullptr);
    if (window_ == nullptr) throw std::runtime_error("the player's window");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    media_keys_.emplace(window_, player);
  }

  bool HasClients() override {
    std::erase_if(clients_, [](HWND client) { return IsWindow(client) == FALSE; });
    return !clients_.empty();
  }

  void Announce(PlayerChange change) override {
    if (change == PlayerChange::kStatus && media_keys_) media_keys_->FollowStatus();
  }

  void StopAccepting() override { Close(); }

  void Close() override {
    media_keys_.reset();
    running_.reset();
    if (window_ != nullptr) DestroyWindow(std::exchange(window_, nullptr));
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<WindowFront*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && self->window_ == window) {
      if (const auto answer = self->Receive(message, wParam, lParam)) return *answer;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  /// \returns the answer; no value for a message that the system answers
  std::optional<LRESULT> Receive(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
      case WM_COMMAND:
      case WM_USER:
        return Execute({message, 0, static_cast<std::int64_t>(wParam), lParam}, {});
      case WM_COPYDATA:
        return ReceiveRecord(reinterpret_cast<HWND>(wParam),
                             *reinterpret_cast<const COPYDATASTRUCT*>(lParam));
      case WM_HOTKEY:
        if (media_keys_) media_keys_->Press(static_cast<int>(wParam));
        return 0;
      case WM_CLOSE:
        close_();
        return 0;
      case WM_ENDSESSION:
        // The system ends this process when the message was answered.
        if (wParam != FALSE) close_();
        return 0;
      default:
        return std::nullopt;
    }
  }

  LRESULT ReceiveRecord(HWND client, const COPYDATASTRUCT& record) {
    if (record.cbData > kMaxPayload) return 0;
    if (IsPlayerClient(client)) clients_.insert(client);
    std::string payload(static_cast<const char*>(record.lpData), record.cbData);
    const auto code = static_cast<std::uint32_t>(record.dwData);
    if (code == kAddFile) payload = PathRecordInUtf8(payload);
    const PlayerRequestHead head{kWmCopyData, static_cast<std::uint32_t>(payload.size()), 0, code};
    return code == kAsk ? ExecuteAsk(client, head, payload) : Execute(head, payload);
  }

  LRESULT Execute(const PlayerRequestHead& head, const std::string& payload) {
    return WaitForAnswer(head, payload)->number.value_or(0);
  }

  /// Sends the answer to the client before this request is answered.
  LRESULT ExecuteAsk(HWND client, const PlayerRequestHead& head, const std::string& payload) {
    const std::shared_ptr<PendingAnswer> answer = WaitForAnswer(head, payload);
    if (!answer->text) return 0;
    COPYDATASTRUCT record{};
    record.dwData = kAsk;
    record.cbData = static_cast<DWORD>(answer->text->size());
    record.lpData = answer->text->data();
    DWORD_PTR ignored = 0;
    const auto timeout = std::chrono::milliseconds(kAnswerTimeout).count();
    return SendMessageTimeoutW(client, WM_COPYDATA, reinterpret_cast<WPARAM>(window_),
                               reinterpret_cast<LPARAM>(&record), SMTO_ABORTIFHUNG,
                               static_cast<UINT>(timeout), &ignored) == 0
               ? 0
               : 1;
  }

  /// Executes a request. While its answer is not known yet, runs the event loop, so that other
  /// requests are executed and the sound goes on.
  std::shared_ptr<PendingAnswer> WaitForAnswer(const PlayerRequestHead& head,
                                               const std::string& payload) {
    auto pending = std::make_shared<PendingAnswer>();
    if (!execute_(
            head, payload, [pending](PlayerAnswer number) { pending->number = number; },
            [pending](std::string text) { pending->text = std::move(text); }))
      return pending;
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + kAnswerTimeout;
    while (!pending->number && !pending->text && window_ != nullptr && Clock::now() < deadline)
      loop_->RunOnce(
          std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now()));
    return pending;
  }

  SystemHandle running_;
  std::unique_ptr<EventLoop> loop_;
  std::wstring title_;
  RequestHandler execute_;
  std::function<void()> close_;
  HWND window_ = nullptr;
  std::optional<MediaKeys> media_keys_;
  std::set<HWND> clients_;  ///< those that may have ended are removed by HasClients
};

}  // namespace

std::unique_ptr<PlayerFront> NewPlayerFront(const PlayerOptions& options) {
  if (options.handed_socket) {
    std::fputs("tallow-player: --listen is only known on Linux.\n", stderr);
    return nullptr;
  }
  const std::wstring name = L"Local\\" + ToWide(PlayerWindowTitle(options.identifier));
  SystemHandle running(CreateMutexW(nullptr, FALSE, name.c_str()));
  if (!running || GetLastError() == ERROR_ALREADY_EXISTS) {
    std::fputs("tallow-player: another player is already running.\n", stderr);
    return nullptr;
  }
  return std::make_unique<WindowFront>(std::move(running), options.identifier);
}

}  // namespace tallow

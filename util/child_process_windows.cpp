// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <ratio>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

#include "util/child_process.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// A handle of which 0 means that there is none, as most functions return it.
class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) noexcept : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }
  HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

struct Pipe {
  Handle reading = Handle();
  Handle writing = Handle();
};

/// A pipe of which neither end is inherited yet. \returns no handles on failure
Pipe MakePipe() {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  if (!CreatePipe(&reading, &writing, nullptr, 0)) return {};
  return {Handle(reading), Handle(writing)};
}

/// The handle that a function returned that has INVALID_HANDLE_VALUE for failures.
Handle ValidHandle(HANDLE handle) noexcept {
  return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// Like MakePipe, but with an end for overlapped reads, which only pipes with a name have.
Pipe MakeOverlappedPipe() {
  constexpr DWORD kBufferBytes = 65'536;
  LARGE_INTEGER time{};
  QueryPerformanceCounter(&time);
  // No other pipe has this name, because a thread makes one at a time.
  const std::wstring name = L"\\\\.\\pipe\\tallow-" + std::to_wstring(GetCurrentProcessId()) +
                            L"-" + std::to_wstring(GetCurrentThreadId()) + L"-" +
                            std::to_wstring(time.QuadPart);
  Pipe pipe;
  // Fails when another program has made a pipe of this name.
  pipe.reading = ValidHandle(CreateNamedPipeW(
      name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
      PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, 0, kBufferBytes, 0, nullptr));
  if (pipe.reading.get() == nullptr) return {};
  pipe.writing =
      ValidHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  return pipe;
}

bool MakeInheritable(HANDLE handle) noexcept {
  return SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) != 0;
}

/// A job that limits the memory of its processes, and ends them when its handle is closed, which
/// happens at the latest when this process ends.
Handle MakeJob() {
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_PROCESS_MEMORY;
  limits.ProcessMemoryLimit = kMaxChildMemory;
  if (!SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                               sizeof limits))
    return Handle();
  return job;
}

/// Reads one end of MakeOverlappedPipe, with a timeout.
class OverlappedReader {
 public:
  explicit OverlappedReader(Handle pipe)
      : pipe_(std::move(pipe)), event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    read_.hEvent = event_.get();
  }
  OverlappedReader(const OverlappedReader&) = delete;
  OverlappedReader& operator=(const OverlappedReader&) = delete;
  ~OverlappedReader() {
    if (!is_reading_) return;
    // The system writes to the buffer until the read has ended.
    CancelIoEx(pipe_.get(), &read_);
    DWORD got = 0;
    GetOverlappedResult(pipe_.get(), &read_, &got, TRUE);
  }

  /// \param writer the process at the other end
  /// \returns as ChildProcess::Read
  std::optional<std::string> Read(std::chrono::milliseconds timeout, HANDLE writer) {
    if (!is_reading_) {
      is_reading_ = ReadFile(pipe_.get(), buffer_.data(), static_cast<DWORD>(buffer_.size()),
                             nullptr, &read_) != 0 ||
                    GetLastError() == ERROR_IO_PENDING;
      if (!is_reading_) return std::nullopt;
    }
    const HANDLE awaited[] = {event_.get(), writer};
    const DWORD wait =
        WaitForMultipleObjects(2, awaited, FALSE, static_cast<DWORD>(timeout.count()));
    if (wait == WAIT_TIMEOUT) return std::string();
    DWORD got = 0;
    // Another program may have inherited the ended writer's end of the pipe, so that the read stays
    // incomplete. What the writer has sent completes it before the writer ends.
    if (!GetOverlappedResult(pipe_.get(), &read_, &got, FALSE)) {
      is_reading_ = GetLastError() == ERROR_IO_INCOMPLETE;
      return std::nullopt;
    }
    is_reading_ = false;
    return std::string(buffer_.data(), got);
  }

 private:
  Handle pipe_;
  Handle event_;
  std::array<char, 16'384> buffer_{};
  OVERLAPPED read_{};
  bool is_reading_ = false;  ///< whether the system may write to the buffer
};

class WindowsChildProcess final : public ChildProcess {
 public:
  WindowsChildProcess(Handle process, Handle job, Handle to_child, Handle from_child)
      : process_(std::move(process)),
        job_(std::move(job)),
        to_child_(std::move(to_child)),
        from_child_(std::move(from_child)) {}
  ~WindowsChildProcess() override { TerminateProcess(process_.get(), 1); }

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      DWORD sent = 0;
      if (!WriteFile(to_child_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &sent,
                     nullptr))
        return false;
      bytes.remove_prefix(sent);
    }
    return true;
  }

  std::optional<std::string> Read(std::chrono::milliseconds timeout) override {
    return from_child_.Read(timeout, process_.get());
  }

  std::chrono::milliseconds ProcessorTime() const override {
    FILETIME created{};
    FILETIME ended{};
    FILETIME in_kernel{};
    FILETIME in_process{};
    if (!GetProcessTimes(process_.get(), &created, &ended, &in_kernel, &in_process)) return {};
    using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
    const auto ticks_of = [](const FILETIME& time) {
      return Ticks((std::uint64_t{time.dwHighDateTime} << 32U) | time.dwLowDateTime);
    };
    return std::chrono::floor<std::chrono::milliseconds>(ticks_of(in_kernel) +
                                                         ticks_of(in_process));
  }

 private:
  Handle process_;
  Handle job_;
  Handle to_child_;
  OverlappedReader from_child_;
};

/// The list of handles that a new process inherits.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T bytes = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &bytes);
    memory_.resize(bytes);
    is_made_ =
        InitializeProcThreadAttributeList(get(), 1, 0, &bytes) &&
        UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                  handles_.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;
  ~InheritedHandles() {
    if (is_made_) DeleteProcThreadAttributeList(get());
  }
  explicit operator bool() const noexcept { return is_made_; }
  LPPROC_THREAD_ATTRIBUTE_LIST get() noexcept {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
  }

 private:
  std::vector<HANDLE> handles_;
  std::vector<char> memory_;
  bool is_made_ = false;
};

/// A command line; the words contain no quotes.
std::wstring CommandLine(const std::string& program, std::span<const std::string> arguments) {
  std::wstring line = L"\"" + ToWide(program) + L"\"";
  for (const std::string& argument : arguments) line += L" \"" + ToWide(argument) + L"\"";
  return line;
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::Start(const std::string& program,
                                                  std::span<const std::string> arguments) {
  Pipe requests = MakePipe();
  Pipe answers = MakeOverlappedPipe();
  Handle job = MakeJob();
  if (job.get() == nullptr || requests.reading.get() == nullptr ||
      answers.writing.get() == nullptr || !MakeInheritable(requests.reading.get()) ||
      !MakeInheritable(answers.writing.get()))
    return nullptr;
  InheritedHandles inherited({requests.reading.get(), answers.writing.get()});
  if (!inherited) return nullptr;
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  // Without a busy cursor, which would stay until the child has a window.
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES | STARTF_FORCEOFFFEEDBACK;
  start.StartupInfo.hStdInput = requests.reading.get();
  start.StartupInfo.hStdOutput = answers.writing.get();
  start.lpAttributeList = inherited.get();
  std::wstring line = CommandLine(program, arguments);
  PROCESS_INFORMATION process{};
  // Suspended until it is in the job.
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE,
                      CREATE_NO_WINDOW | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                      nullptr, &start.StartupInfo, &process))
    return nullptr;
  Handle child(process.hProcess);
  const Handle thread(process.hThread);
  if (!AssignProcessToJobObject(job.get(), child.get()) ||
      ResumeThread(thread.get()) == static_cast<DWORD>(-1)) {
    TerminateProcess(child.get(), 1);
    return nullptr;
  }
  return std::make_unique<WindowsChildProcess>(
      std::move(child), std::move(job), std::move(requests.writing), std::move(answers.reading));
}

bool ParentChannel::Read(std::span<char> bytes) {
  while (!bytes.empty()) {
    DWORD got = 0;
    if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
                  &got, nullptr) ||
        got == 0)
      return false;
    bytes = bytes.subspan(got);
  }
  return true;
}

bool ParentChannel::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD sent = 0;
    if (!WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
                   &sent, nullptr))
      return false;
    bytes.remove_prefix(sent);
  }
  return true;
}

void LimitMemoryOfThisProcess() {}

void EndThisProcessAfter(std::chrono::seconds /*time*/) {}

}  // namespace tallow

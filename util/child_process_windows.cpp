// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
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

bool MakeInheritable(HANDLE handle) noexcept {
  return SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) != 0;
}

/// A job that ends its processes when its handle is closed, which happens at the latest when this
/// process ends.
Handle MakeJob() {
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (!SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                               sizeof limits))
    return Handle();
  return job;
}

class WindowsChildProcess final : public ChildProcess {
 public:
  WindowsChildProcess(Handle process, Handle job, Handle to_child, Handle from_child) noexcept
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
    // A pipe cannot be waited for with a timeout. The first checks do not wait, because most answers
    // arrive at once.
    constexpr int kChecksWithoutWait = 200;
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(timeout.count());
    for (int check = 0;; ++check) {
      // Checked first, so that what an ended child has sent is still read.
      const bool has_ended = WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
      DWORD available = 0;
      if (!PeekNamedPipe(from_child_.get(), nullptr, 0, nullptr, &available, nullptr))
        return std::nullopt;
      if (available > 0) return ReadAvailable(available);
      if (has_ended) return std::nullopt;
      if (GetTickCount64() >= end) return std::string();
      Sleep(check < kChecksWithoutWait ? 0 : 1);
    }
  }

 private:
  std::optional<std::string> ReadAvailable(DWORD available) {
    std::string bytes(std::min<DWORD>(available, 16'384), '\0');
    DWORD got = 0;
    if (!ReadFile(from_child_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr))
      return std::nullopt;
    bytes.resize(got);
    return bytes;
  }

  Handle process_;
  Handle job_;
  Handle to_child_;
  Handle from_child_;
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
  Pipe answers = MakePipe();
  Handle job = MakeJob();
  if (job.get() == nullptr || requests.reading.get() == nullptr ||
      answers.writing.get() == nullptr || !MakeInheritable(requests.reading.get()) ||
      !MakeInheritable(answers.writing.get()))
    return nullptr;
  InheritedHandles inherited({requests.reading.get(), answers.writing.get()});
  if (!inherited) return nullptr;
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
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

void EndThisProcessAfter(std::chrono::seconds /*time*/) {}

}  // namespace tallow

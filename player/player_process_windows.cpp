// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_process_windows.h"

#include <vector>

#include "util/path_text.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

/// The attribute of a new process that limits the handles that it inherits to one. Without it the
/// process would inherit every handle that another thread makes inheritable at this moment.
class InheritedHandle {
 public:
  explicit InheritedHandle(HANDLE handle) : handle_(handle) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    if (InitializeProcThreadAttributeList(List(), 1, 0, &size) == FALSE) memory_.clear();
    if (!memory_.empty())
      UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &handle_,
                                sizeof handle_, nullptr, nullptr);
  }
  InheritedHandle(const InheritedHandle&) = delete;
  InheritedHandle& operator=(const InheritedHandle&) = delete;
  ~InheritedHandle() {
    if (!memory_.empty()) DeleteProcThreadAttributeList(List());
  }

  LPPROC_THREAD_ATTRIBUTE_LIST List() noexcept {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
  }

 private:
  HANDLE handle_;
  std::vector<char> memory_;
};

}  // namespace

bool PlayerProcess::Start(const std::string& program, const std::string& arguments) {
  written_.clear();
  process_.reset();
  errors_.reset();
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read_end = nullptr;
  HANDLE write_end = nullptr;
  if (CreatePipe(&read_end, &write_end, &inherited, 0) == FALSE) return false;
  errors_.reset(read_end);
  const SystemHandle writer(write_end);
  SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);

  InheritedHandle only_writer(write_end);
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  start.StartupInfo.hStdError = write_end;
  start.lpAttributeList = only_writer.List();
  // The quotes keep a path with blanks in one piece; a Windows path cannot contain a quote.
  std::wstring command_line = L"\"" + ToWide(program) + L"\" " + ToWide(arguments);
  const std::wstring folder = ToWide(FolderOfPath(program));
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE,
                     EXTENDED_STARTUPINFO_PRESENT, nullptr,
                     folder.empty() ? nullptr : folder.c_str(), &start.StartupInfo,
                     &process) == FALSE)
    return false;
  CloseHandle(process.hThread);
  process_.reset(process.hProcess);
  return true;
}

bool PlayerProcess::HasEnded() const noexcept {
  return process_ && WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
}

void PlayerProcess::Read() {
  constexpr std::size_t kMaxKept = 4096;
  DWORD waiting = 0;
  while (errors_ && PeekNamedPipe(errors_.get(), nullptr, 0, nullptr, &waiting, nullptr) != FALSE &&
         waiting > 0) {
    std::string bytes(waiting, '\0');
    DWORD got = 0;
    if (ReadFile(errors_.get(), bytes.data(), waiting, &got, nullptr) == FALSE) break;
    written_.append(bytes, 0, got);
    if (written_.size() > kMaxKept) written_.erase(0, written_.size() - kMaxKept);
  }
}

std::string PlayerProcess::LastLine() {
  Read();
  constexpr const char* kLineEnd = "\r\n";
  const std::size_t end = written_.find_last_not_of(kLineEnd);
  if (end == std::string::npos) return {};
  const std::size_t before = written_.find_last_of(kLineEnd, end);
  const std::size_t begin = before == std::string::npos ? 0 : before + 1;
  return written_.substr(begin, end + 1 - begin);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <iterator>
#include <windows.h>

#include "util/open_file_windows.h"
#include "util/process_name.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

const std::string kRun = "windows";

std::string HostName() {
  wchar_t name[256];
  DWORD length = static_cast<DWORD>(std::size(name));
  if (!GetComputerNameExW(ComputerNameDnsHostname, name, &length)) return {};
  return FromWide({name, length});
}

std::string MachineGuid() {
  wchar_t text[64] = {};
  DWORD size = sizeof text - sizeof text[0];
  if (RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Cryptography", L"MachineGuid",
                   RRF_RT_REG_SZ | RRF_SUBKEY_WOW6464KEY, nullptr, text, &size) != ERROR_SUCCESS)
    return {};
  return FromWide(text);
}

/// The creation time of a process, in 100 ns since 1601; 0 when it cannot be read.
std::uint64_t StartOf(HANDLE process) {
  FILETIME made;
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  if (!GetProcessTimes(process, &made, &ended, &kernel, &user)) return 0;
  return (std::uint64_t{made.dwHighDateTime} << 32) | made.dwLowDateTime;
}

}  // namespace

ProcessName ThisProcess() {
  ProcessName name;
  name.host = HostName();
  name.machine = MachineGuid();
  name.run = kRun;
  name.process = GetCurrentProcessId();
  name.started = StartOf(GetCurrentProcess());
  return name;
}

ProcessState StateOf(const ProcessName& process) {
  const ProcessName self = ThisProcess();
  if (process.host != self.host || process.machine != self.machine || process.run != kRun ||
      process.process == 0 || process.process > MAXDWORD || process.started == 0)
    return ProcessState::kUnknown;
  const HANDLE opened = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE,
                                    static_cast<DWORD>(process.process));
  if (opened == nullptr)
    return GetLastError() == ERROR_INVALID_PARAMETER ? ProcessState::kGone : ProcessState::kUnknown;
  const OpenHandle handle(opened);
  // An ended process can still be opened while a process holds a handle to it.
  if (WaitForSingleObject(opened, 0) == WAIT_OBJECT_0) return ProcessState::kGone;
  const std::uint64_t started = StartOf(opened);
  if (started == 0) return ProcessState::kUnknown;
  return started == process.started ? ProcessState::kRuns : ProcessState::kGone;
}

}  // namespace tallow

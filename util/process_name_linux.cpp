// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <unistd.h>

#include "util/open_file_linux.h"
#include "util/process_name.h"

namespace tallow {
namespace {

/// Reads the start of a small system file, without the line break at its end; empty when it cannot
/// be read.
std::string SystemText(const std::string& path) {
  const OpenFile file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::array<char, 4096> bytes;
  const ssize_t got = file ? read(file.descriptor(), bytes.data(), bytes.size()) : 0;
  std::string text(bytes.data(), static_cast<std::size_t>(got > 0 ? got : 0));
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string ProcessSet() {
  std::array<char, 64> text;
  const ssize_t length = readlink("/proc/self/ns/pid", text.data(), text.size());
  return {text.data(), static_cast<std::size_t>(length > 0 ? length : 0)};
}

struct Status {
  char state = '?';           ///< 'Z' and 'X': the process has ended
  std::uint64_t started = 0;  ///< clock ticks since boot
};

/// Parses /proc/PID/stat; no value when it cannot be read.
std::optional<Status> StatusOf(const std::string& process) {
  const std::string text = SystemText("/proc/" + process + "/stat");
  // The program's name is in parentheses and may contain any character, parentheses included.
  const std::size_t name_end = text.rfind(')');
  if (name_end == std::string::npos || name_end + 2 >= text.size()) return std::nullopt;
  std::string_view rest = std::string_view(text).substr(name_end + 2);
  Status status;
  status.state = rest.front();
  // The state is field 3, the start time field 22.
  constexpr int kStart = 22 - 3;
  for (int k = 0; k < kStart; ++k) {
    const std::size_t blank = rest.find(' ');
    if (blank == std::string_view::npos) return std::nullopt;
    rest.remove_prefix(blank + 1);
  }
  if (std::from_chars(rest.data(), rest.data() + rest.size(), status.started).ec != std::errc())
    return std::nullopt;
  return status;
}

}  // namespace

ProcessName ThisProcess() {
  ProcessName name;
  name.host = HostName();
  name.machine = SystemText("/etc/machine-id");
  name.run = SystemText("/proc/sys/kernel/random/boot_id");
  name.process_set = ProcessSet();
  name.process = static_cast<std::uint64_t>(getpid());
  if (const auto status = StatusOf("self")) name.started = status->started;
  return name;
}

ProcessState StateOf(const ProcessName& process) {
  const ProcessName self = ThisProcess();
  // A cloned system has the same machine id, and two computers may have the same name, but hardly
  // both.
  if (process.host != self.host || process.machine != self.machine) return ProcessState::kUnknown;
  if (process.run.empty() || self.run.empty() || process.run == "windows")
    return ProcessState::kUnknown;
  if (process.run != self.run) return ProcessState::kGone;
  if (process.process_set != self.process_set) return ProcessState::kUnknown;
  if (process.process == 0 || process.process > INT_MAX) return ProcessState::kUnknown;
  if (kill(static_cast<pid_t>(process.process), 0) != 0 && errno == ESRCH)
    return ProcessState::kGone;
  const auto status = StatusOf(std::to_string(process.process));
  if (!status || process.started == 0) return ProcessState::kUnknown;
  if (status->started != process.started || status->state == 'Z' || status->state == 'X')
    return ProcessState::kGone;
  return ProcessState::kRuns;
}

}  // namespace tallow

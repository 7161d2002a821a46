// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/owner_file.h"

#include <charconv>
#include <chrono>
#include <thread>

#include "util/file_system.h"
#include "util/owner_file_platform.h"

namespace tallow {
namespace {

constexpr std::string_view kFirstLine = "Tallow 1";

/// Limit for reading an owner file; larger than the longest possible content.
constexpr std::size_t kMaxBytes = 4096;

/// How often to retry when the file disappears between two calls or is still being written, and the
/// pause between two tries.
constexpr int kMaxTries = 10;
constexpr std::chrono::milliseconds kPause{10};

/// Maximum nesting of claim files. Each level is left by a process that was killed while it
/// replaced a file.
constexpr int kMaxClaims = 4;

/// Formats one line "name value"; a line feed in the value becomes a blank.
std::string Line(std::string_view name, std::string_view value) {
  std::string line = std::string(name) + " ";
  for (const char c : value) line += c == '\n' ? ' ' : c;
  return line + "\n";
}

/// Parses the next line and removes it. \returns no value when the line has another name or no LF
/// at its end
std::optional<std::string> ParseLine(std::string_view& text, std::string_view name) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos || !text.starts_with(name) || end <= name.size() ||
      text[name.size()] != ' ')
    return std::nullopt;
  std::string value(text.substr(name.size() + 1, end - name.size() - 1));
  text.remove_prefix(end + 1);
  return value;
}

std::optional<std::uint64_t> TakeNumber(std::string_view& text, std::string_view name) {
  const std::optional<std::string> value = ParseLine(text, name);
  std::uint64_t number = 0;
  if (!value) return std::nullopt;
  const auto [end, error] = std::from_chars(value->data(), value->data() + value->size(), number);
  if (error != std::errc() || end != value->data() + value->size()) return std::nullopt;
  return number;
}

ProcessState StateOfOwner(const std::optional<std::string>& content) {
  const std::optional<ProcessName> owner = content ? OwnerOf(*content) : std::nullopt;
  return owner ? StateOf(*owner) : ProcessState::kUnknown;
}

}  // namespace

std::string OwnerText(const ProcessName& process) {
  return std::string(kFirstLine) + "\n" + Line("host", process.host) +
         Line("machine", process.machine) + Line("run", process.run) +
         Line("set", process.process_set) + Line("process", std::to_string(process.process)) +
         Line("started", std::to_string(process.started));
}

std::optional<ProcessName> OwnerOf(std::string_view content) {
  const std::string first = std::string(kFirstLine) + "\n";
  if (!content.starts_with(first)) return std::nullopt;
  content.remove_prefix(first.size());
  const auto host = ParseLine(content, "host");
  const auto machine = ParseLine(content, "machine");
  const auto run = ParseLine(content, "run");
  const auto set = ParseLine(content, "set");
  const auto process = TakeNumber(content, "process");
  const auto started = TakeNumber(content, "started");
  if (!host || !machine || !run || !set || !process || !started || !content.empty())
    return std::nullopt;
  return ProcessName{*host, *machine, *run, *set, *process, *started};
}

std::optional<ProcessName> ReadOwner(const std::string& path) {
  const std::optional<std::string> content = ReadSmallFile(path, kMaxBytes);
  return content ? OwnerOf(*content) : std::nullopt;
}

OwnerFile::~OwnerFile() {
  if (path_.empty() || ReadSmallFile(path_, kMaxBytes) != content_) return;
  RemoveFile(path_);
}

OwnerFile::Answer OwnerFile::Acquire(const std::string& path, Unknown unknown) {
  content_ = OwnerText(ThisProcess());
  unknown_ = unknown;
  const Answer answer = AcquireAt(path, 0);
  if (answer == Answer::kHeld) path_ = path;
  return answer;
}

OwnerFile::Answer OwnerFile::AcquireAt(const std::string& path, int claims) {
  for (int tried = 0; tried < kMaxTries; ++tried) {
    const CreateResult made = MakeExclusiveFile(path, content_);
    if (made == CreateResult::kMade) return Answer::kHeld;
    if (made == CreateResult::kImpossible) return Answer::kImpossible;
    const std::optional<std::string> seen = ReadSmallFile(path, kMaxBytes);
    // The owning process has ended and removed the file meanwhile.
    if (!seen && !NameExists(path)) continue;
    if (seen && !OwnerOf(*seen) && tried + 1 < kMaxTries) {
      std::this_thread::sleep_for(kPause);
      continue;
    }
    const ProcessState state = StateOfOwner(seen);
    if (state == ProcessState::kRuns) return Answer::kInUse;
    return Replace(path, seen, state, claims);
  }
  return Answer::kInUse;
}

OwnerFile::Answer OwnerFile::Replace(const std::string& path,
                                     const std::optional<std::string>& seen, ProcessState state,
                                     int claims) {
  if (claims == kMaxClaims) return Answer::kUnknown;
  const std::string claim = path + ".claim";
  // If the claim file cannot be created, the owner file cannot be replaced either.
  const Answer claimed = AcquireAt(claim, claims + 1);
  if (claimed != Answer::kHeld) return claimed;
  Answer answer = Answer::kInUse;
  if (state == ProcessState::kUnknown && unknown_ == Unknown::kStays) {
    answer = Answer::kUnknown;
  } else if (ReadSmallFile(path, kMaxBytes) == seen) {
    const std::string beside = path + ".new";
    RemoveFile(beside);
    const bool replaced =
        MakeExclusiveFile(beside, content_) == CreateResult::kMade && RenameOver(beside, path);
    if (!replaced) RemoveFile(beside);
    answer = replaced ? Answer::kHeld : Answer::kImpossible;
  }
  RemoveFile(claim);
  return answer;
}

}  // namespace tallow

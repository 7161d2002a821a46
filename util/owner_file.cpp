// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/owner_file.h"

#include <charconv>
#include <chrono>
#include <thread>

#include "util/exclusive_file.h"
#include "util/file_system.h"

namespace tallow {
namespace {

constexpr std::string_view kFirstLine = "Tallow 1";

/// More than the longest names need.
constexpr std::size_t kMaxBytes = 4096;

/// How often to look again at a file that was gone by the time it was looked at, or that somebody is just
/// writing, and how long to wait between two looks.
constexpr int kMaxTries = 10;
constexpr std::chrono::milliseconds kPause{10};

/// How many claims may lie on claims; each is left by a process that was killed while it replaced a file.
constexpr int kMaxClaims = 4;

/// A line's value may hold anything but a line break.
std::string Line(std::string_view name, std::string_view value) {
  std::string line = std::string(name) + " ";
  for (const char c : value) line += c == '\n' ? ' ' : c;
  return line + "\n";
}

/// Takes the next line off a text. \returns no value when it does not begin with the name, or has no end
std::optional<std::string> TakeLine(std::string_view& text, std::string_view name) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos || !text.starts_with(name) || end <= name.size() ||
      text[name.size()] != ' ')
    return std::nullopt;
  std::string value(text.substr(name.size() + 1, end - name.size() - 1));
  text.remove_prefix(end + 1);
  return value;
}

std::optional<std::uint64_t> TakeNumber(std::string_view& text, std::string_view name) {
  const std::optional<std::string> value = TakeLine(text, name);
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
  const auto host = TakeLine(content, "host");
  const auto machine = TakeLine(content, "machine");
  const auto run = TakeLine(content, "run");
  const auto set = TakeLine(content, "set");
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

OwnerFile::Answer OwnerFile::Take(const std::string& path, Unknown unknown) {
  content_ = OwnerText(ThisProcess());
  unknown_ = unknown;
  const Answer answer = TakeAt(path, 0);
  if (answer == Answer::kHeld) path_ = path;
  return answer;
}

OwnerFile::Answer OwnerFile::TakeAt(const std::string& path, int claims) {
  for (int tried = 0; tried < kMaxTries; ++tried) {
    const MadeFile made = MakeExclusiveFile(path, content_);
    if (made == MadeFile::kMade) return Answer::kHeld;
    if (made == MadeFile::kImpossible) return Answer::kImpossible;
    const std::optional<std::string> seen = ReadSmallFile(path, kMaxBytes);
    // Its process has ended in between.
    if (!seen && !NameIsTaken(path)) continue;
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
  // Where no claim can be made, no other file could be either.
  const Answer claimed = TakeAt(claim, claims + 1);
  if (claimed != Answer::kHeld) return claimed;
  Answer answer = Answer::kInUse;
  if (state == ProcessState::kUnknown && unknown_ == Unknown::kStays) {
    answer = Answer::kUnknown;
  } else if (ReadSmallFile(path, kMaxBytes) == seen) {
    const std::string beside = path + ".new";
    RemoveFile(beside);
    const bool replaced =
        MakeExclusiveFile(beside, content_) == MadeFile::kMade && RenameOver(beside, path);
    if (!replaced) RemoveFile(beside);
    answer = replaced ? Answer::kHeld : Answer::kImpossible;
  }
  RemoveFile(claim);
  return answer;
}

}  // namespace tallow

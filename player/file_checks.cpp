// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/file_checks.h"

#include "library/folder_scan.h"
#include "util/read_ahead.h"

namespace tallow {
namespace {

/// Number of files that a thread checks in one batch, see ReadAhead.
constexpr std::size_t kFilesAtOnce = 64;

/// Maximum number of unreadable songs that the message names.
constexpr std::size_t kMaxNamed = 5;

}  // namespace

void CheckFiles(
    std::span<const std::int32_t> songs, clsMain& library, const GoOn& go_on,
    const std::function<void(std::int32_t, const std::string&, const FileAnswer&)>& callback) {
  const auto path_of = [&](std::size_t k) { return library.Song(songs[k]).Path(); };
  ReadAhead(
      songs.size(), kFilesAtOnce, path_of,
      [unanswered = library.Unanswered()](const std::string& path) -> FileAnswer {
        if (unanswered->Covers(path)) return {false, std::nullopt};
        return {true, path.empty() ? std::nullopt : ProblemOfFileDate(path)};
      },
      [&](std::size_t k, const FileAnswer& answer) { callback(songs[k], path_of(k), answer); },
      go_on ? library.WaitingFor(path_of, go_on) : WhileWaiting(),
      [](std::size_t) {
        return FileAnswer{false, std::nullopt};
      });
}

bool FileChecks::IsPlayable(const std::string& path, const FileAnswer& answer) {
  if (path.empty()) return false;
  if (!answer.answered) {
    if (unanswered_++ == 0) first_unanswered_ = path;
    return false;
  }
  const std::optional<FileProblem>& problem = answer.problem;
  if (!problem) return true;
  if (problem->absent) return false;
  if (count_++ < kMaxNamed) problems_.emplace_back(path, *problem);
  return true;
}

void FileChecks::ShowProblems(const ShowMessage& show) const {
  if (count_ == 0) return;
  const FileProblem& first = problems_.front().second;
  std::string text = "Error Number: " + std::to_string(first.number) + "\n" + first.text;
  if (count_ > 1) {
    text = std::to_string(count_) + " songs cannot be read:\n";
    for (const auto& [path, problem] : problems_)
      text += "\n" + path + ": " + problem.text + " (" + std::to_string(problem.number) + ")";
    if (count_ > kMaxNamed) text += "\nand " + std::to_string(count_ - kMaxNamed) + " more";
  }
  show({.text = std::move(text), .title = "Error"});
}

}  // namespace tallow

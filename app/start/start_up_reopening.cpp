// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_reopening.h"

#include <algorithm>
#include <utility>

#include "app/start/start_up_filing.h"
#include "app/start/start_up_notices.h"
#include "app/start/start_up_wait.h"
#include "app/start/start_up_windows.h"
#include "app/tallow.h"
#include "jukebox/jukebox.h"
#include "jukebox/open_jukebox.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {

bool StartUpReopening::Open() {
  std::vector<std::string> problems;
  for (OpenJukebox& before : tallow_.open_jukeboxes.Load(problems)) {
    Jukebox* jukebox = OpenedFrom(before.file);
    const bool is_recovered = jukebox != nullptr;
    if (std::ranges::any_of(reopened_, [&](const Reopened& other) {
          return jukebox != nullptr && other.jukebox == jukebox;
        }))
      continue;
    if (jukebox == nullptr && MayOpen(before)) jukebox = Load(before);
    if (jukebox != nullptr) reopened_.push_back({std::move(before), jukebox, is_recovered});
  }
  if (spare_ != nullptr) windows_.DiscardJukebox(*std::exchange(spare_, nullptr));
  notices_.Add(problems);
  return !reopened_.empty();
}

bool StartUpReopening::HasNamed(const std::string& file) const {
  return std::ranges::any_of(named_,
                             [&](const std::string& other) { return IsSamePathText(other, file); });
}

Jukebox* StartUpReopening::OpenedFrom(const std::string& file) {
  for (Jukebox* const jukebox : windows_.OpenJukeboxes())
    if (IsSamePathText(jukebox->FilePath(), file)) return jukebox;
  return nullptr;
}

bool StartUpReopening::MayOpen(const OpenJukebox& before) {
  const std::string& file = before.file;
  if (const std::string root = wait_.AwayRootOf(file); !root.empty()) {
    notices_.Add(file + " is on a drive that is away: " + root + ". It was not opened.");
    tallow_.open_jukeboxes.KeepAway(before);
  } else if (IsGone(file)) {
    notices_.Add(file + " is missing, so it was not opened.");
  } else {
    return true;
  }
  named_.push_back(file);
  return false;
}

Jukebox* StartUpReopening::Load(const OpenJukebox& before) {
  const std::string& file = before.file;
  Jukebox& jukebox = spare_ != nullptr ? *std::exchange(spare_, nullptr) : windows_.NewJukebox();
  try {
    if (!OpenJukeboxFile(
            file, ToUpper(FileTitleWithoutExtension(file)), jukebox, tallow_.library,
            windows_.OpenJukeboxes(),
            [&](const std::string& path, const ResolveConfusedSongs& ask) {
              return windows_.LoadJukebox(jukebox, path, tallow_.library, ask);
            },
            [this](const std::string& text) { return windows_.AskDismissable(text); },
            &tallow_.found_tags, filing_.Progress(), tallow_.details.TagReader())) {
      windows_.ShowError(jukebox.FileProblem() +
                         "\n\nTallow opens the other jukeboxes. The file is unchanged.");
      named_.push_back(file);
      spare_ = &jukebox;
      return nullptr;
    }
  } catch (const FilingError& error) {
    notices_.Add(error.problems());
  }
  filing_.End();
  jukebox.Tag(std::to_string(windows_.OpenJukeboxes().size()));
  ExpandAsBefore(before, jukebox);
  return &jukebox;
}

void StartUpReopening::Show(Jukebox* front) {
  std::vector<PlacedJukebox> placed;
  for (const auto& [before, jukebox, is_recovered] : reopened_) {
    if (!is_recovered) windows_.ShowJukebox(*jukebox);
    if (Folder* const folder = FindFolder(jukebox->Nodes(), before.shown))
      windows_.SelectFolder(*jukebox, *folder);
    placed.push_back({jukebox, before.place});
    if (before.is_active && front == nullptr) front = jukebox;
  }
  windows_.PlaceJukeboxes(placed, front != nullptr ? *front : *placed.back().jukebox);
}

}  // namespace tallow

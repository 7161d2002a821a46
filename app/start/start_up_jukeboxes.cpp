// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/start_up_jukeboxes.h"

#include <algorithm>
#include <optional>

#include "app/start/start_up_notices.h"
#include "app/start/start_up_wait.h"
#include "app/system.h"
#include "app/tallow.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/jukebox.h"
#include "jukebox/open_jukebox.h"
#include "jukebox/sorting.h"
#include "util/file_system.h"
#include "util/path_text.h"
#include "util/text.h"

namespace tallow {
namespace {

bool Contains(const std::vector<std::string>& paths, const std::string& path) {
  return std::any_of(paths.begin(), paths.end(), [&](const std::string& other) {
    return !other.empty() && IsSamePath(other, path);
  });
}

/// A copy of an unsaved jukebox without its file, because another jukebox has that file: it is
/// saved under a new name.
UnsavedJukebox WithoutFile(UnsavedJukebox unsaved) {
  unsaved.caption += " (recovered)";
  unsaved.location.clear();
  unsaved.file.clear();
  return unsaved;
}

}  // namespace

void StartUpJukeboxes::Open() {
  tallow_.found_tags.Seal();
  // Checks the drive of the background picture, which each jukebox window shows.
  if (tallow_.settings.IsThereAPicture()) wait_.CheckPath(tallow_.settings.PictureLocation());
  Jukebox* last_recovered = nullptr;
  const std::vector<std::string> recovered = RecoverUnsaved(last_recovered);
  const std::string& last = tallow_.settings.LocOfLastSavedJukeBox();
  // With a recovered jukebox open, neither the sample nor a second window of the same file is
  // needed.
  if (!last.empty()) wait_.CheckPath(last);
  const bool is_unanswered = wait_.IsUnresponsive(last);
  const bool is_open = !recovered.empty() &&
                       (last.empty() || Contains(recovered, last) || is_unanswered || IsGone(last));
  if (is_open && is_unanswered && !Contains(recovered, last))
    notices_.Add(last + " is on a drive that does not answer, so it is not open.");
  if (!is_open) {
    Jukebox& jukebox = windows_.NewJukebox();
    try {
      if (!OpenLast(jukebox))
        BuildInitialJukebox(
            tallow_.library, jukebox, windows_.OpenJukeboxes(),
            [&] { windows_.ShowJukebox(jukebox); }, &tallow_.found_tags, filing_.Progress(),
            tallow_.details.TagReader());
    } catch (const FilingError& error) {
      notices_.Add(error.problems());
    }
  }
  filing_.End();
  // The recovered jukebox goes in front, because the user has just asked for it.
  if (last_recovered != nullptr && !is_open) windows_.ShowJukebox(*last_recovered);
  tallow_.found_tags.Clear();
}

std::vector<std::string> StartUpJukeboxes::RecoverUnsaved(Jukebox*& last) {
  const AskQuestion ask = [this](const std::string& text) { return windows_.AskDismissable(text); };
  std::vector<std::string> problems;
  std::vector<std::string> recovered;
  // The windows are shown later: they process events while a jukebox is filed, and the user must
  // not use them yet.
  std::vector<Jukebox*> to_show;
  for (const UnsavedJukebox& unsaved : tallow_.unsaved.Find(problems)) {
    if (!unsaved.file.empty()) wait_.CheckPath(unsaved.file);
    // The program ended after saving the jukebox and before removing this file.
    if (!wait_.IsUnresponsive(unsaved.file) &&
        UnsavedJukeboxes::IsSaved(unsaved, tallow_.library)) {
      RemoveFile(unsaved.path);
      continue;
    }
    const std::optional<bool> wanted = windows_.AskDismissable(
        "Tallow was not closed properly. Recover the unsaved changes of " + unsaved.caption + "?");
    // Without an answer the file stays for the next start.
    if (!wanted) continue;
    if (!*wanted) {
      UnsavedJukeboxes::Decline(unsaved);
      continue;
    }
    // Validates the file before a window is created, because the window could not be removed here.
    Jukebox probe;
    if (!probe.LoadUnsaved(unsaved.bytes, unsaved.path, tallow_.library)) {
      windows_.ShowError(UnreadableChanges(unsaved.path, probe.FileProblem()));
      UnsavedJukeboxes::Decline(unsaved);
      continue;
    }
    Jukebox& jukebox = windows_.NewJukebox();
    tallow_.unsaved.Recover(Contains(recovered, unsaved.file) ? WithoutFile(unsaved) : unsaved,
                            jukebox, tallow_.library,
                            AskAboutConfusedSongs(unsaved.path, tallow_.library, ask));
    jukebox.Tag(std::to_string(windows_.OpenJukeboxes().size()));
    try {
      FillAutomaticFolders(kFillNewToo, false, jukebox.Caption(), tallow_.library,
                           windows_.OpenJukeboxes(), &tallow_.found_tags, filing_.Progress(),
                           tallow_.details.TagReader());
    } catch (const FilingError& error) {
      notices_.Add(error.problems());
    }
    filing_.End();
    last = &jukebox;
    to_show.push_back(last);
    recovered.push_back(unsaved.file);
  }
  for (Jukebox* const jukebox : to_show) windows_.ShowJukebox(*jukebox);
  notices_.Add(problems);
  return recovered;
}

bool StartUpJukeboxes::OpenLast(Jukebox& jukebox) {
  const std::string& path = tallow_.settings.LocOfLastSavedJukeBox();
  if (path.empty()) return false;
  wait_.CheckPath(path);
  std::string root = tallow_.library.Unanswered()->RootOf(path);
  if (root.empty() && IsGone(path)) root = tallow_.library.AwayRootOf(path);
  if (!root.empty()) {
    notices_.Add(path + " is on a drive that is away: " + root +
                 ". The sample jukebox was opened instead.");
    return false;
  }
  if (IsGone(path)) {
    notices_.Add(path +
                 " is missing. The sample jukebox was opened instead. Other jukeboxes are "
                 "in the File menu.");
    return false;
  }
  std::optional<FilingError> unfiled;
  try {
    if (!OpenJukeboxFile(
            path, ToUpper(FileTitleWithoutExtension(path)), jukebox, tallow_.library,
            windows_.OpenJukeboxes(),
            [&](const std::string& file, const ResolveConfusedSongs& ask) {
              return windows_.LoadJukebox(jukebox, file, tallow_.library, ask);
            },
            [this](const std::string& text) { return windows_.AskDismissable(text); },
            &tallow_.found_tags, filing_.Progress(), tallow_.details.TagReader())) {
      windows_.ShowError(jukebox.FileProblem() +
                         "\n\nTallow opens the sample jukebox instead. The file is unchanged.");
      return false;
    }
  } catch (const FilingError& error) {
    unfiled = error;
  }
  jukebox.Tag("1");
  windows_.ShowJukebox(jukebox);
  if (unfiled) throw FilingError(*unfiled);
  return true;
}

}  // namespace tallow

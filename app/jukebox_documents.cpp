// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/jukebox_documents.h"

#include <cstddef>
#include <exception>
#include <vector>

#include "app/data_paths.h"
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

// Lengths of shortened menu captions, in characters.
constexpr std::size_t kMaxShown = 45;
constexpr std::size_t kShownFirst = 20;
constexpr std::size_t kShownLast = 25;

/// The byte offset of each character of a text, and the length of the text at the end.
std::vector<std::size_t> CharacterPositions(std::string_view text) {
  std::vector<std::size_t> positions;
  for (std::size_t position = 0; position < text.size();) {
    positions.push_back(position);
    NextCharacter(text, position);
  }
  positions.push_back(text.size());
  return positions;
}

}  // namespace

bool DocumentWindows::SaveJukebox(Jukebox& jukebox, const std::string& path,
                                  const clsMain& library) {
  return jukebox.Save(path, library);
}

std::string CaptionOfFile(std::string_view path) {
  const std::string_view name = NameOfPath(path);
  const std::string_view title = Trim(name.substr(0, name.rfind('.')));
  // Without a caption, the window could not be distinguished from others.
  return ToUpper(title.empty() ? Trim(name) : title);
}

std::string PathForChoice(std::string_view chosen) {
  const std::string_view trimmed = Trim(chosen);
  std::string name = ToLower(NameOfPath(trimmed));
  if (!name.ends_with(kJukeboxExtension)) name += kJukeboxExtension;
  const std::string twice = std::string(kJukeboxExtension) + std::string(kJukeboxExtension);
  while (name.find(twice) != std::string::npos) name.resize(name.size() - kJukeboxExtension.size());
  return std::string(FolderOfPath(trimmed)) + name;
}

std::string ExistingPath(const std::string& path) {
  if (FileExists(path)) return path;
  const std::string folder(FolderOfPath(path));
  for (const FileEntry& file : ListFolder(folder, {}).files)
    if (EqualsIgnoringCase(file.name, NameOfPath(path))) return folder + file.name;
  return path;
}

std::string ShortenedCaption(std::string_view text) {
  const std::vector<std::size_t> positions = CharacterPositions(text);
  const std::size_t count = positions.size() - 1;
  if (count <= kMaxShown) return std::string(text);
  return std::string(text.substr(0, positions[kShownFirst])) + " .... " +
         std::string(text.substr(positions[count - kShownLast]));
}

void JukeboxDocuments::Remember(const std::string& path) {
  // The settings file holds one path per line.
  if (HasLineBreak(path))
    return windows_.Notice(
        {path + " cannot be among the recent files: its path has a line break."});
  tallow_.settings.LocOfLastSavedJukeBox(path);
  tallow_.SaveSettings();
  if (const auto problems = tallow_.TakeProblems(); !problems.empty()) windows_.Notice(problems);
}

void JukeboxDocuments::Open() {
  const auto chosen = windows_.AskForFileToOpen(GroupingFolder(tallow_.application_folder));
  if (chosen) OpenUnlessOpen(*chosen);
}

void JukeboxDocuments::OpenRecent(int element) {
  const clsINI& settings = tallow_.settings;
  // Copies the path, because opening changes the settings.
  const std::string path = element == 1   ? settings.LocOfLastSavedJukeBox()
                           : element == 2 ? settings.LocSecToLastSavedJukeBox()
                           : element == 3 ? settings.LocOfThirdToLastSaveJukeBox()
                                          : std::string();
  if (!path.empty()) OpenUnlessOpen(path);
}

void JukeboxDocuments::OpenUnlessOpen(const std::string& path) {
  const std::string trimmed(Trim(path));
  if (windows_.IsOpen(CaptionOfFile(path)) || OpenedFrom(trimmed) != nullptr)
    windows_.Show({.text = "This file is already open"});
  else
    OpenFile(trimmed);
}

const Jukebox* JukeboxDocuments::OpenedFrom(const std::string& path) {
  for (const Jukebox* const jukebox : windows_.OpenJukeboxes())
    if (!jukebox->FilePath().empty() && IsSamePath(jukebox->FilePath(), path)) return jukebox;
  return nullptr;
}

void JukeboxDocuments::OpenFile(const std::string& path) {
  Jukebox& jukebox = windows_.NewJukebox();
  std::unique_ptr<LongWork> work = windows_.BeginWork(kFilingSongs);
  bool is_filed = true;
  FilingProgress progress;
  if (work)
    progress = [&](std::size_t filed, std::size_t songs) {
      is_filed = work->GoOn([=] { return FilingLine(filed, songs); });
      return is_filed;
    };
  try {
    const bool is_open = OpenJukeboxFile(
        path, CaptionOfFile(path), jukebox, tallow_.library, windows_.OpenJukeboxes(),
        [&](const std::string& file, const ResolveConfusedSongs& ask) {
          return windows_.LoadJukebox(jukebox, file, tallow_.library, ask);
        },
        [this](const std::string& text) { return windows_.AskDismissable(text); }, nullptr,
        progress, tallow_.details.TagReader());
    work.reset();
    if (!is_open) {
      windows_.Show({.text = jukebox.FileProblem(), .icon = MessageIcon::kCritical});
      windows_.DiscardJukebox(jukebox);
      return;
    }
  } catch (const FilingError& error) {
    windows_.Notice(error.problems());
  } catch (const std::exception& error) {
    windows_.Notice({std::string("The new songs could not be filed. ") + error.what()});
  }
  work.reset();
  if (!is_filed) {
    tallow_.filing_is_pending = true;
    windows_.Notice({FilingCancelledLine() + "."});
  }
  Remember(path);
  windows_.ShowJukebox(jukebox);
}

bool JukeboxDocuments::SaveTo(Jukebox& jukebox, const std::string& path) {
  if (!windows_.SaveJukebox(jukebox, path, tallow_.library)) {
    windows_.Show({.text = jukebox.FileProblem(), .icon = MessageIcon::kCritical});
    return false;
  }
  Remember(path);
  jukebox.IsFormDirty(false);
  tallow_.unsaved.Forget(jukebox);
  return true;
}

bool JukeboxDocuments::SaveDatForm() {
  Jukebox* const jukebox = windows_.ActiveJukebox();
  return jukebox != nullptr && Save(*jukebox);
}

bool JukeboxDocuments::Save(Jukebox& jukebox) {
  if (jukebox.Caption() == kSampleCaption || jukebox.FileLocation().empty()) return SaveAs(jukebox);
  // Prefers the path that the jukebox was opened from. The caption does not give it: it is in upper
  // case and lacks blanks and extension.
  const std::string& own = jukebox.FilePath();
  if (!own.empty() && FolderOfPath(own) == jukebox.FileLocation()) return SaveTo(jukebox, own);
  return SaveTo(jukebox, ExistingPath(jukebox.FileLocation() + ToLower(jukebox.Caption()) +
                                      std::string(kJukeboxExtension)));
}

bool JukeboxDocuments::SaveAs() {
  Jukebox* const jukebox = windows_.ActiveJukebox();
  return jukebox != nullptr && SaveAs(*jukebox);
}

bool JukeboxDocuments::SaveAs(Jukebox& jukebox) {
  const auto chosen = windows_.AskForFileToSave(GroupingFolder(tallow_.application_folder));
  if (!chosen || Trim(*chosen).empty()) return false;
  const std::string path = ExistingPath(PathForChoice(*chosen));
  const auto refuse = [this](const std::string& name) {
    windows_.Show({.text = name +
                           " is already open.  Close the file then you can save this Juke box with "
                           "that file name."});
    return false;
  };
  // Checks two names: the chosen name may end in several extensions, the final path ends in one.
  for (const std::string& name : {CaptionOfFile(*chosen), CaptionOfFile(path)})
    if (!EqualsIgnoringCase(jukebox.Caption(), name) && windows_.IsOpen(name)) return refuse(name);
  // A file may be open under another caption: through a link, or after a recovery.
  const Jukebox* const other = OpenedFrom(path);
  if (other != nullptr && other != &jukebox) return refuse(other->Caption());
  if (FileExists(path) &&
      windows_.Show({.text = "File already exists, do you wish to replace this file?",
                     .icon = MessageIcon::kQuestion,
                     .buttons = MessageButtons::kYesNoCancel}) != MessageAnswer::kYes)
    return false;
  if (!SaveTo(jukebox, path)) return false;
  jukebox.Caption(CaptionOfFile(path));
  jukebox.FileLocation(FolderOfPath(path));
  return true;
}

}  // namespace tallow

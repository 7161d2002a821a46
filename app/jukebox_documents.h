// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/long_work.h"
#include "jukebox/jukebox_file.h"
#include "util/message.h"

namespace tallow {

class Jukebox;
class Tallow;
class clsMain;

/// What the commands on jukebox files need of windows.
class DocumentWindows {
 public:
  virtual ~DocumentWindows() = default;

  /// The jukebox of the active window, once a player panel that is active is out of the way; null when
  /// there is none.
  virtual Jukebox* ActiveJukebox() = 0;
  /// The open jukeboxes, in the order they were opened.
  virtual std::span<Jukebox* const> OpenJukeboxes() = 0;
  /// Whether a visible window has this caption, in any letter case.
  virtual bool IsOpen(std::string_view caption) = 0;

  /// Makes a jukebox window, not shown yet.
  virtual Jukebox& NewJukebox() = 0;
  virtual void ShowJukebox(Jukebox& jukebox) = 0;
  /// Saves or loads a jukebox; a window that has a control for it lets that do it. See Jukebox.
  virtual bool SaveJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library);
  virtual bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                           const AskWhichSongs& ask);
  /// Takes away a window that was made and not shown.
  virtual void DropJukebox(Jukebox& jukebox) = 0;

  /// Asks for a file to open; no value when the user cancels.
  virtual std::optional<std::string> AskForFileToOpen(const std::string& folder) = 0;
  /// Asks for a file to save to, without asking whether one that exists may be replaced.
  virtual std::optional<std::string> AskForFileToSave(const std::string& folder) = 0;

  /// Begins work that may take long, see LongWork; null where nobody is to see it.
  virtual std::unique_ptr<LongWork> BeginWork(std::string_view /*text*/) { return nullptr; }
  virtual MessageAnswer Show(const Message& message) = 0;
  /// Says something that does not stop anything, where it does not get in the way.
  virtual void Notice(const std::vector<std::string>& lines) = 0;
};

/// What the file dialogs offer, as the settings of a file dialog have it: text, bar, pattern.
inline constexpr std::string_view kJukeboxFilter = "Juke Box Files (*.juk) |*.juk";

/// The extension of a jukebox file.
inline constexpr std::string_view kJukeboxExtension = ".juk";

/// Opening and saving jukeboxes.
///
/// Every successful one moves its file to the top of the recent files in the settings.
class JukeboxDocuments {
 public:
  /// \param tallow, windows have to outlive the object
  JukeboxDocuments(Tallow& tallow, DocumentWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// Asks for a file and opens it in a new window.
  void Open();
  /// Opens a file in a new window, unless it is open.
  void OpenUnlessOpen(const std::string& path);
  /// Opens a recent file.
  /// \param element 1 last, 2 second to last, 3 third to last; others do nothing
  void OpenRecent(int element);
  /// Saves the active jukebox to its file; the sample, and one that has none, under a new name.
  /// \returns whether it is saved now
  bool SaveDatForm();
  /// SaveDatForm for a jukebox whose window need not be the active one.
  bool Save(Jukebox& jukebox);
  /// Asks for a name and saves the active jukebox under it.
  /// \returns whether it is saved now
  bool SaveAs();

 private:
  bool SaveAs(Jukebox& jukebox);
  /// The jukebox whose file a path leads to; null for none.
  const Jukebox* OpenedFrom(const std::string& path);
  void OpenFile(const std::string& path);
  std::optional<bool> AskUnlessLeft(const std::string& text);
  bool SaveTo(Jukebox& jukebox, const std::string& path);
  void Remember(const std::string& path);

  Tallow& tallow_;
  DocumentWindows& windows_;
};

/// The name of a jukebox's file as a caption: without folder and extension, trimmed, in upper case. A name
/// that is nothing but an extension stays whole.
std::string CaptionOfFile(std::string_view path);

/// The path that a jukebox is saved under when this one was chosen: trimmed, the file's own name in lower
/// case and ending in one ".juk".
std::string PathForChoice(std::string_view chosen);

/// A path, or that of the file of the same name in another letter case that lies there in its place.
std::string ExistingPath(const std::string& path);

/// A text as a menu shows it: at most 45 characters as they are; of a longer one the first 20 and the last
/// 25 with " .... " between.
std::string ShortenedCaption(std::string_view text);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/window_interfaces.h"

namespace tallow {

class Jukebox;
class Tallow;
class clsMain;

/// The windows that the commands on jukebox files use.
class DocumentWindows : public OpeningWindows {
 public:
  /// The jukebox of the active window; null for none. If the player panel is active, minimizes it
  /// and returns the jukebox that was active before it.
  virtual Jukebox* ActiveJukebox() = 0;
  /// Whether a visible window has this caption, in any letter case.
  virtual bool IsOpen(std::string_view caption) = 0;

  /// Saves a jukebox to a file; a window with a control for the jukebox may delegate to the
  /// control. See Jukebox::Save.
  virtual bool SaveJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library);
  /// Discards a window that was made but not shown.
  virtual void DiscardJukebox(Jukebox& jukebox) = 0;

  /// Asks for a file to open; no value when the user cancels.
  virtual std::optional<std::string> AskForFileToOpen(const std::string& folder) = 0;
  /// Asks for a file to save to, without asking whether an existing file may be replaced.
  virtual std::optional<std::string> AskForFileToSave(const std::string& folder) = 0;
};

/// The filter of the file dialogs, in the format of a file dialog's setting: text, bar, pattern.
inline constexpr std::string_view kJukeboxFilter = "Juke Box Files (*.juk) |*.juk";

/// The extension of a jukebox file.
inline constexpr std::string_view kJukeboxExtension = ".juk";

/// Opening and saving jukeboxes.
///
/// Every successful open or save moves its file to the top of the recent files in the settings.
class JukeboxDocuments {
 public:
  /// \param tallow, windows must outlive the object
  JukeboxDocuments(Tallow& tallow, DocumentWindows& windows) : tallow_(tallow), windows_(windows) {}

  /// Asks for a file and opens it in a new window.
  void Open();
  /// Opens a file in a new window, unless the file is open already.
  void OpenUnlessOpen(const std::string& path);
  /// Opens a recent file.
  /// \param element 1 last, 2 second to last, 3 third to last; other values do nothing
  void OpenRecent(int element);
  /// Saves the active jukebox to its file. The sample, and a jukebox without a file, are saved
  /// under a new name.
  /// \returns whether the jukebox is saved now
  bool SaveDatForm();
  /// SaveDatForm for a jukebox whose window need not be the active one.
  bool Save(Jukebox& jukebox);
  /// Asks for a name and saves the active jukebox under it.
  /// \returns whether the jukebox is saved now
  bool SaveAs();

 private:
  bool SaveAs(Jukebox& jukebox);
  /// The open jukebox whose file is the file at `path`; null for none.
  const Jukebox* OpenedFrom(const std::string& path);
  void OpenFile(const std::string& path);
  bool SaveTo(Jukebox& jukebox, const std::string& path);
  void Remember(const std::string& path);

  Tallow& tallow_;
  DocumentWindows& windows_;
};

/// The caption for a jukebox file: the file name without folder and extension, trimmed, in upper
/// case. A name that consists of an extension only is kept whole.
std::string CaptionOfFile(std::string_view path);

/// The path to save a jukebox under when the user chose `chosen`: trimmed, with the file name in
/// lower case and ending in exactly one ".juk".
std::string PathForChoice(std::string_view chosen);

/// The path itself; when there is no such file, but one whose name differs only in letter case,
/// that file's path.
std::string ExistingPath(const std::string& path);

/// Shortens a text for a menu: a text of at most 45 characters stays as it is; a longer text
/// becomes its first 20 and its last 25 characters with " .... " between.
std::string ShortenedCaption(std::string_view text);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/long_work.h"
#include "jukebox/song_links.h"
#include "util/message.h"

namespace tallow {

class Jukebox;
class clsMain;

/// The operations on windows that start-up and all commands use. Operations that only one of them
/// uses are in an interface derived from this one. The program implements the interfaces with Qt;
/// tests use test doubles.
class JukeboxWindows {
 public:
  virtual ~JukeboxWindows() = default;

  /// Shows a message box.
  virtual MessageAnswer Show(const Message& message) = 0;
  /// Asks with Yes and No buttons; no value when the user dismisses the question, or no user can
  /// answer.
  std::optional<bool> AskDismissable(const std::string& text);
  /// Shows information without blocking, in an unobtrusive place.
  virtual void Notice(const std::vector<std::string>& lines) = 0;
  /// The open jukeboxes, in the order they were opened.
  virtual std::span<Jukebox* const> OpenJukeboxes() = 0;
  /// Begins work that may take long, see LongWork; null where the work is not to be shown.
  virtual std::unique_ptr<LongWork> BeginWork(std::string_view /*text*/) { return nullptr; }
};

/// The operations on windows that start-up and the commands that open jukeboxes use.
class OpeningWindows : public JukeboxWindows {
 public:
  /// Makes a jukebox window, not shown yet.
  virtual Jukebox& NewJukebox() = 0;
  virtual void ShowJukebox(Jukebox& jukebox) = 0;
  /// Loads a jukebox from its file; a window with a control for the jukebox may delegate to the
  /// control. See Jukebox::Load.
  virtual bool LoadJukebox(Jukebox& jukebox, const std::string& path, const clsMain& library,
                           const ResolveConfusedSongs& ask);
};

}  // namespace tallow

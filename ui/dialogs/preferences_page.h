// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "player/tallow_player.h"

class QDialog;
class QWidget;

namespace tallow {

class Tallow;

/// What the page Player works on.
struct PlayerPageContext {
  /// Finds Tallow's own player without searching a disk; empty when it is not there.
  std::function<std::string()> find_own;
  /// Finds Winamp without searching a disk: full paths.
  std::function<std::vector<std::string>()> find_winamps;
  /// Searches the disks for a player and shows the progress: the full path; empty when there is
  /// none; no value when the user has cancelled the search.
  std::function<std::optional<std::string>()> search;
  /// The sound devices of Tallow's own player; empty while it does not run.
  std::function<std::vector<SoundDevice>()> devices;
  /// Tell Tallow's own player, if it runs.
  std::function<void(ReplayGain)> set_gain;
  std::function<void(const std::string&)> set_device;
  /// Asks for the program of a player; no value when the user cancels. Empty: the system's dialog.
  std::function<std::optional<std::string>(QWidget* parent)> ask_for_program = {};
};

/// What the pages of the preferences dialog work on.
struct PreferencesContext {
  Tallow& tallow;  ///< must outlive the dialog
  /// Called after each change of the user, for example to show problems.
  std::function<void()> changed;
  /// Called before `changed` when the user has chosen a whole style.
  std::function<void()> style_chosen;
  /// Opens the dialog "Where My Music Is".
  std::function<void()> show_places;
  /// Called when the user has closed the dialog to file songs again by their tags.
  std::function<void()> file_again;
  PlayerPageContext player = {};
};

/// A page of the preferences dialog.
struct PreferencesPage {
  const char* name;     ///< object name of its widget
  const char* caption;  ///< in the list of pages
  const char* help;     ///< its page of the manual, see HelpPageOf
  /// Makes its widget, without a parent.
  QWidget* (*make)(const PreferencesContext& context, QDialog& dialog);
};

}  // namespace tallow

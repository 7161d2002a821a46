// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QDialog;
class QWidget;

namespace tallow {

class Tallow;

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

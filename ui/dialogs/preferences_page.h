// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

class QWidget;

namespace tallow {

class Tallow;

/// What the pages of the preferences dialog work on.
struct PreferencesContext {
  Tallow& tallow;  ///< must outlive the dialog
  /// Called after each change of the user, for example to show problems.
  std::function<void()> changed;
};

/// A page of the preferences dialog.
struct PreferencesPage {
  const char* name;     ///< object name of its widget
  const char* caption;  ///< in the list of pages
  const char* help;     ///< its page of the manual, see HelpPageOf
  /// Makes its widget; null for a page that has no function yet, which is not shown.
  QWidget* (*make)(const PreferencesContext& context, QWidget* parent);
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include "ui/dialogs/preferences_page.h"

class QListWidget;
class QStackedWidget;

namespace tallow {

/// The preferences dialog: a list of pages, and the page that is selected in it. What the user
/// changes acts at once, so there is nothing to apply or to cancel.
class frmPreferences : public QDialog {
  Q_OBJECT

 public:
  explicit frmPreferences(const PreferencesContext& context, QWidget* parent = nullptr);

 private:
  void AddPage(const PreferencesPage& page, const PreferencesContext& context);
  /// The height at which no page scrolls, in pixels.
  /// \param width of the pages, in pixels
  int HeightOfPages(int width) const;

  QListWidget* list_;
  QStackedWidget* pages_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <QWidget>

#include "app/style_switches.h"
#include "ui/dialogs/preferences_page.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QRadioButton;
class QVBoxLayout;

namespace tallow {

class Preferences;

/// The page of the preferences dialog on which the user chooses the style, or single switches.
/// Every choice acts, and is stored, at once.
class StylePage : public QWidget {
  Q_OBJECT

 public:
  explicit StylePage(PreferencesContext context, QWidget* parent = nullptr);

 private:
  void AddStyle(QVBoxLayout& layout, Style style, const QString& caption, const QString& sentence);
  void AddSwitch(QVBoxLayout& layout, const StyleSwitch& one);
  void StoreSwitches();
  void ShowSwitches();

  PreferencesContext context_;
  Preferences& preferences_;
  QButtonGroup* styles_;              ///< the id of a button is its Style
  QLabel* state_;                     ///< what the two choices do not say
  std::vector<QCheckBox*> switches_;  ///< in the order of StyleSwitches()
};

}  // namespace tallow

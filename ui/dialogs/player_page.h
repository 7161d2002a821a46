// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QWidget>

#include "app/playing/playing_preferences.h"
#include "ui/dialogs/preferences_page.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace tallow {

/// The page of the preferences dialog on which the user chooses the player, and what it does when
/// it begins. Every choice acts, and is stored, at once.
class PlayerPage : public QWidget {
  Q_OBJECT

 public:
  explicit PlayerPage(PreferencesContext context, QWidget* parent = nullptr);
  PlayerPage(const PlayerPage&) = delete;
  PlayerPage& operator=(const PlayerPage&) = delete;
  ~PlayerPage() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void AddPlayer(QVBoxLayout& layout);
  void AddSound(QVBoxLayout& layout);
  QCheckBox* AddBox(QVBoxLayout& layout, const char* name, const QString& caption,
                    const QString& sentence, void (PlayingPreferences::*set)(bool));
  /// Adds a list of choices with its label. It can be narrower than its longest choice.
  QComboBox* AddList(QFormLayout& form, const char* name, const QString& caption,
                     const QString& description);
  /// The full path of Tallow's own player; empty when it is not there.
  std::string OwnPlayer() const;
  QString NameOfPlayer(const std::string& program) const;

  QLabel* AddText(QVBoxLayout& layout, const char* name);
  /// Own player and Winamps that are found without a search of the disks.
  std::vector<std::string> PlayersNearby() const;

  void Choose(const std::string& program);
  /// Chooses the program that was typed, if the text was changed.
  void ChooseTyped();
  void Browse();
  void Search();
  /// \param text a result or problem; empty for none
  void ShowState(const QString& text);

  void ShowAll();
  void ShowPlayers();
  void ShowDevices();
  /// Enables what the chosen player can do.
  void ShowAbilities();

  PreferencesContext context_;
  PlayingPreferences preferences_;
  std::vector<std::string> found_;     ///< by searches, while the dialog is open
  std::vector<std::string> programs_;  ///< in the order of `players_`
  std::vector<std::string> devices_;   ///< names, in the order of `device_`
  bool are_devices_known_ = false;     ///< Tallow's own player runs
  QComboBox* players_;
  QLineEdit* program_;
  QPushButton* browse_;
  QPushButton* search_;
  QLabel* state_;
  QCheckBox* keeps_volume_;
  QCheckBox* restores_queue_;
  QCheckBox* marks_;
  QComboBox* gain_;
  QComboBox* device_;
  QLabel* why_not_;
};

}  // namespace tallow

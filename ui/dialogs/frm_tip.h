// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include <QDialog>

#include "app/tip_list.h"

class QCheckBox;
class QLabel;

namespace tallow {

/// The tip window: shows a short hint, and another one for each press of "Next Tip".
///
/// Whether it comes up at start is an option of the user's own: "Options/Show Tips at Startup", 1 or 0, in
/// the registry on Windows, in the user's configuration on Linux.
class frmTip : public QDialog {
  Q_OBJECT

 public:
  /// \param tips the file of tips
  explicit frmTip(std::string tips, QWidget* parent = nullptr);

  /// Whether the user has asked for the window; else the option decides.
  bool ShowFlag() const noexcept { return show_flag_; }
  void ShowFlag(bool show) noexcept { show_flag_ = show; }

  /// Makes the window ready, and clears the flag.
  /// \returns whether it is to be shown
  bool Load();

 private:
  void DisplayCurrentTip();
  static int StartUpOption();

  std::string path_;
  bool show_flag_ = false;
  std::unique_ptr<TipList> tips_;
  QLabel* tip_;
  QCheckBox* at_startup_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include <QDialog>

#include "app/tip_list.h"

class QCheckBox;
class QLabel;

namespace tallow {

/// The tip window: shows a short hint, and another hint on each click on "Next Tip".
///
/// Whether the window opens at start-up is a per-user option: "Options/Show Tips at Startup", 1 or
/// 0, stored in the registry on Windows and in the user's configuration file on Linux.
class frmTip : public QDialog {
  Q_OBJECT

 public:
  /// \param tips path of the file of tips
  explicit frmTip(std::string tips, QWidget* parent = nullptr);

  /// Whether the user has asked for the window; if false, the option decides whether it opens.
  bool ShowFlag() const noexcept { return show_flag_; }
  void ShowFlag(bool show) noexcept { show_flag_ = show; }

  /// Prepares the window and clears the flag.
  /// \returns whether the window must be shown
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

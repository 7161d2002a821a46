// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <QDialog>

#include "util/message.h"

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tallow {

class clsMain;

/// The list of what a start or a search did not take: the drives and folders that are away, which can be
/// forgotten, and the files that were left out, each with the song that stands for it.
class frmFindings : public QDialog {
  Q_OBJECT

 public:
  /// \param library has to outlive the dialog
  /// \param forgotten is called after songs were made missing
  frmFindings(clsMain& library, ShowMessage show, std::function<void()> forgotten,
              QWidget* parent = nullptr);

 private:
  void Fill();
  void Forget();
  /// The selected place that is away; empty for none.
  QString SelectedPlace() const;

  clsMain& library_;
  ShowMessage show_;
  std::function<void()> forgotten_;
  QTreeWidget* list_;
  QPushButton* forget_;
};

}  // namespace tallow

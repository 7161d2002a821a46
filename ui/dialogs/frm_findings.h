// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QDialog>

#include "util/message.h"

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tallow {

class clsMain;

/// The list of what the last start or search did not read or add: drives and folders that are away,
/// whose songs the user can forget; folders that could not be read; files that were left out, each
/// with the song that was kept instead; and songs whose details could not be read.
class frmFindings : public QDialog {
  Q_OBJECT

 public:
  /// \param library   must outlive the dialog
  /// \param forgotten called after songs were made missing
  /// \param unreadable record numbers of the songs that could not be read completely
  frmFindings(clsMain& library, ShowMessage show, std::function<void()> forgotten,
              QWidget* parent = nullptr, std::vector<std::int32_t> unreadable = {});

 private:
  void Fill();
  void Forget();
  /// The selected place that is away; null when none is selected.
  QString SelectedPlace() const;

  clsMain& library_;
  ShowMessage show_;
  std::function<void()> forgotten_;
  std::vector<std::int32_t> unreadable_;
  QTreeWidget* list_;
  QPushButton* forget_;
};

}  // namespace tallow

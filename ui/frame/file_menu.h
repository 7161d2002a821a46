// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMenu>

namespace tallow {

class clsINI;

/// The frame window's File menu. Its items carry their names as object names; the recent files are
/// "mnuTheFiles1" to "mnuTheFiles3", below the separator "mnuTheFiles0".
class FileMenu : public QMenu {
  Q_OBJECT

 public:
  explicit FileMenu(QWidget* parent);

  /// Updates the recent files from the settings. An item is created when there is a file for it and
  /// is never removed.
  void UpdateTheMenuControlArray(const clsINI& settings);

 signals:
  void New();
  void Open();
  void CloseChild();
  void Save();
  void SaveAs();
  void Exit();
  /// \param element 1 to 3
  void OpenRecent(int element);

 private:
  QAction* Add(const char* name, const QString& caption, void (FileMenu::*signal)());

  QAction* recent_separator_;
  QList<QAction*> recent_;  ///< the items created so far, from element 1
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/file_menu.h"

#include <string>

#include <QAction>
#include <QKeySequence>

#include "app/cls_ini.h"
#include "app/jukebox_documents.h"
#include "ui/support/display_text.h"
#include "ui/support/frame_pictures.h"

namespace tallow {

FileMenu::FileMenu(QWidget* parent) : QMenu(tr("&File"), parent) {
  setObjectName(QStringLiteral("mnuFile"));
  QAction* const new_jukebox = Add("mnuNew", tr("&New Jukebox"), &FileMenu::New);
  new_jukebox->setShortcut(QKeySequence(tr("Ctrl+N")));
  new_jukebox->setIcon(FramePicture("new"));
  QAction* const open = Add("mnuOpen", tr("&Open..."), &FileMenu::Open);
  open->setShortcut(QKeySequence(tr("Ctrl+O")));
  open->setIcon(FramePicture("open"));
  Add("mnuClose", tr("&Close"), &FileMenu::CloseChild);
  addSeparator();
  QAction* const save = Add("mnuSave", tr("&Save"), &FileMenu::Save);
  save->setShortcut(QKeySequence(tr("Ctrl+S")));
  save->setIcon(FramePicture("save"));
  Add("mnuSaveAs", tr("Save &As..."), &FileMenu::SaveAs);
  Add("mnuExit", tr("E&xit"), &FileMenu::Exit);
  recent_separator_ = addSeparator();
  recent_separator_->setObjectName(QStringLiteral("mnuTheFiles0"));
  recent_separator_->setVisible(false);
}

QAction* FileMenu::Add(const char* name, const QString& caption, void (FileMenu::*signal)()) {
  QAction* const action = addAction(caption);
  action->setObjectName(QLatin1String(name));
  connect(action, &QAction::triggered, this, signal);
  return action;
}

void FileMenu::UpdateTheMenuControlArray(const clsINI& settings) {
  const std::string* const files[] = {&settings.LocOfLastSavedJukeBox(),
                                      &settings.LocSecToLastSavedJukeBox(),
                                      &settings.LocOfThirdToLastSaveJukeBox()};
  for (int element = 1; element <= 3; ++element) {
    const std::string& path = *files[element - 1];
    if (path.empty()) continue;
    while (recent_.size() < element) {
      const int made = static_cast<int>(recent_.size()) + 1;
      QAction* const action = addAction(QString());
      action->setObjectName(QStringLiteral("mnuTheFiles%1").arg(made));
      action->setVisible(false);
      connect(action, &QAction::triggered, this, [this, made] { emit OpenRecent(made); });
      recent_.append(action);
    }
    recent_separator_->setVisible(true);
    QAction* const action = recent_[element - 1];
    const std::string caption = ShortenedCaption("&" + std::to_string(element) + ".  " + path);
    // Only the first "&" marks a shortcut key; those in the path are literal characters.
    QString text = DisplayText(caption);
    text = text.left(1) + text.mid(1).replace(QLatin1Char('&'), QLatin1String("&&"));
    action->setText(text);
    action->setVisible(true);
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/frm_main.h"

#include <exception>
#include <utility>

#include <QMenu>
#include <QVBoxLayout>

#include "app/tallow.h"
#include "jukebox/play_commands.h"
#include "jukebox/pv_explorer.h"
#include "ui/display_text.h"

namespace tallow {

frmMain::frmMain(Tallow& tallow, QWidget* parent)
    : QWidget(parent), tallow_(tallow), explorer_(new PVExplorer(jukebox_, tallow.library, this)) {
  setObjectName(QStringLiteral("frmMain"));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(explorer_);
  connect(explorer_, &PVExplorer::NodeClick, this, [this](Folder* folder) { ShowFolder(*folder); });
  connect(explorer_, &PVExplorer::ColumnClick, this, &frmMain::SortList);
  connect(explorer_, qOverload<const QString&>(&PVExplorer::CaptionChanged), this,
          &QWidget::setWindowTitle);
  connect(explorer_, &PVExplorer::ItemOpened, this, &frmMain::PlaySong);
  connect(explorer_, &PVExplorer::ListPopUp, this, &frmMain::ShowListMenu);
}

frmMain::~frmMain() {
  // The control shows the jukebox, which goes before the widgets do.
  delete explorer_;
}

void frmMain::ShowJukebox() {
  if (jukebox_.Expanded())
    explorer_->ExpandAll();
  else
    explorer_->ExpandMarked();
  if (jukebox_.selectednode() == nullptr && jukebox_.Nodes().Children() > 0)
    explorer_->Select(jukebox_.Nodes().ChildAt(0));
}

void frmMain::ShowFolder(Folder& folder) {
  jukebox_.ShowFolder(folder, tallow_.library, tallow_.folder_changes);
}

void frmMain::SortList() {
  try {
    jukebox_.ColumnClick(tallow_.library);
  } catch (const std::exception& error) {
    emit Problem(tr("The list could not be sorted: a rank is not a number (%1).")
                     .arg(DisplayMessage(error.what())));
  }
}

void frmMain::ActOnPopUpClick(int item, int pane, Folder& node) {
  if (pane != kListPane) return;
  // Every command of the list has its songs from here. Only songs on show can be selected.
  tallow_.SongsToPlay.clear();
  if (&node == jukebox_.selectednode())
    tallow_.SongsToPlay = SongsOf(node, explorer_->SelectedRows());
  switch (item) {
    case kPlayAllSongsInFolder:
      emit PlaySongs(SongsOf(node));
      return;
    case kPlaySelectedSongs:
      emit PlaySongs(tallow_.SongsToPlay);
      return;
    default:
      return;
  }
}

void frmMain::PlaySong(int row) {
  if (const Folder* const folder = jukebox_.selectednode()) emit PlaySongs(SongsOf(*folder, {row}));
}

void frmMain::ShowListMenu(const QPoint& position) {
  if (jukebox_.selectednode() == nullptr) return;
  auto* const menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("ListMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const std::pair<const char*, ListCommand> commands[] = {
      {"Play All Songs in Folder", kPlayAllSongsInFolder},
      {"Play Selected Songs", kPlaySelectedSongs},
  };
  for (const auto& [caption, command] : commands)
    menu->addAction(tr(caption), this, [this, item = command] {
      if (Folder* const folder = jukebox_.selectednode()) ActOnPopUpClick(item, kListPane, *folder);
    });
  menu->popup(position);
}

}  // namespace tallow

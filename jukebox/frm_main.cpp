// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/frm_main.h"

#include <exception>

#include <QVBoxLayout>

#include "app/tallow.h"
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
}

frmMain::~frmMain() {
  // The control shows the jukebox, which goes before the widgets do.
  delete explorer_;
}

void frmMain::ShowJukebox() {
  if (jukebox_.Expanded()) explorer_->ExpandAll();
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

}  // namespace tallow

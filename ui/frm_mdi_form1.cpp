// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frm_mdi_form1.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>
#include <QStringList>

#include "jukebox/frm_main.h"
#include "ui/display_text.h"

namespace tallow {
namespace {

constexpr QSize kFirstSize(1000, 680);
constexpr QSize kLeastSize(480, 320);

/// Of a jukebox window that no longer fills the frame.
constexpr QSize kJukeboxSize(760, 480);

/// Lines of a tool tip; more do not fit a screen.
constexpr std::size_t kMostTipLines = 20;

}  // namespace

frmMDIForm1::frmMDIForm1(Tallow& tallow, QWidget* parent)
    : QMainWindow(parent), tallow_(tallow), area_(new QMdiArea(this)) {
  setObjectName(QStringLiteral("frmMDIForm1"));
  setWindowTitle(tr("Tallow"));
  area_->setObjectName(QStringLiteral("MDIArea"));
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setCentralWidget(area_);
  setMinimumSize(kLeastSize);
  resize(kFirstSize);
}

frmMain& frmMDIForm1::NewJukeboxWindow() {
  auto* const window = new frmMain(tallow_);
  QMdiSubWindow* const sub = area_->addSubWindow(window);
  sub->resize(kJukeboxSize);
  sub->hide();
  connect(window, &frmMain::Problem, this,
          [this](const QString& text) { Notice({text.toStdString()}); });
  return *window;
}

void frmMDIForm1::ShowJukeboxWindow(frmMain& window) {
  window.ShowJukebox();
  window.show();
  window.parentWidget()->showMaximized();
  window.setFocus();
}

std::vector<Jukebox*> frmMDIForm1::OpenJukeboxes() const {
  std::vector<Jukebox*> jukeboxes;
  for (const QMdiSubWindow* const sub : area_->subWindowList(QMdiArea::CreationOrder))
    if (auto* const window = qobject_cast<frmMain*>(sub->widget()))
      jukeboxes.push_back(&window->Jukebox());
  return jukeboxes;
}

frmMain* frmMDIForm1::WindowOf(const Jukebox& jukebox) const {
  for (const QMdiSubWindow* const sub : area_->subWindowList())
    if (auto* const window = qobject_cast<frmMain*>(sub->widget()))
      if (&window->Jukebox() == &jukebox) return window;
  return nullptr;
}

void frmMDIForm1::Notice(const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  QString text = DisplayText(lines.front());
  if (lines.size() > 1) text += tr("  (and %n more)", nullptr, static_cast<int>(lines.size() - 1));
  QStringList tip;
  for (std::size_t k = 0; k < lines.size() && k < kMostTipLines; ++k)
    tip.append(DisplayText(lines[k]));
  if (lines.size() > kMostTipLines) tip.append(QStringLiteral(". . ."));
  statusBar()->showMessage(text);
  statusBar()->setToolTip(tip.join(QLatin1Char('\n')));
}

}  // namespace tallow

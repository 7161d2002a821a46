// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frm_mdi_form1.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>
#include <QStringList>

#include "app/tallow.h"
#include "jukebox/frm_main.h"
#include "player/frm_main_winamp.h"
#include "ui/display_text.h"
#include "ui/message_box.h"
#include "util/start_program.h"

namespace tallow {
namespace {

constexpr QSize kFirstSize(1000, 680);
constexpr QSize kLeastSize(480, 320);

/// Of a jukebox window that no longer fills the frame.
constexpr QSize kJukeboxSize(760, 480);

/// Lines of a tool tip; more do not fit a screen.
constexpr std::size_t kMostTipLines = 20;

}  // namespace

frmMDIForm1::frmMDIForm1(Tallow& tallow, PlayerLink& link, ShowMessage show, QWidget* parent)
    : QMainWindow(parent),
      tallow_(tallow),
      show_(
          show
              ? std::move(show)
              : [this](
                    const Message&
                        message) { return ShowMessageBox(message, isVisible() ? this : nullptr); }),
      player_(
          link, [this] { return tallow_.settings.LocOfWinAmpExe(); }, show_),
      play_commands_(tallow, *this),
      area_(new QMdiArea(this)) {
  setObjectName(QStringLiteral("frmMDIForm1"));
  setWindowTitle(tr("Tallow"));
  area_->setObjectName(QStringLiteral("MDIArea"));
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  // Or a panel that is shown beside a jukebox that fills the frame would fill it too.
  area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
  area_->viewport()->installEventFilter(this);
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
  connect(window, &frmMain::PlaySongs, this,
          [this](std::vector<std::int32_t> songs) { play_commands_.Play(std::move(songs)); });
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

frmMainWinamp* frmMDIForm1::PlayerPanel() const {
  return panel_ ? qobject_cast<frmMainWinamp*>(panel_->widget()) : nullptr;
}

MessageAnswer frmMDIForm1::Show(const Message& message) { return show_(message); }

void frmMDIForm1::ShowStatus(const std::string& text) {
  statusBar()->showMessage(DisplayText(text));
}

void frmMDIForm1::EnableFrame(bool enabled) { setEnabled(enabled); }

bool frmMDIForm1::Start(const std::string& program) {
  return StartProgram(program, FirstWindow::kNormal);
}

void frmMDIForm1::PlayOnPanel() {
  if (PlayerPanel() == nullptr) OpenPanel();
  panel_->showNormal();
  // The next command is for the jukebox again.
  ActivateJukebox();
  // A panel without a player would only be in the way.
  if (!PlayerPanel()->Play()) delete panel_;
}

void frmMDIForm1::ActivateJukebox() {
  QMdiSubWindow* jukebox = nullptr;
  for (QMdiSubWindow* const sub : area_->subWindowList(QMdiArea::ActivationHistoryOrder))
    if (qobject_cast<frmMain*>(sub->widget()) != nullptr) jukebox = sub;
  if (jukebox != nullptr) area_->setActiveSubWindow(jukebox);
}

void frmMDIForm1::OpenPanel() {
  auto* const panel = new frmMainWinamp(tallow_, player_, show_);
  panel_ = area_->addSubWindow(panel);
  panel_->setAttribute(Qt::WA_DeleteOnClose);
  // Jukeboxes fill the frame; the panel would be lost behind them.
  panel_->setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                         Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
  connect(panel_, &QMdiSubWindow::windowStateChanged, this,
          [this](Qt::WindowStates, Qt::WindowStates now) {
            if (now.testFlag(Qt::WindowMinimized)) ActivateJukebox();
          });
  panel_->show();
  panel_->resize(panel_->sizeHint());
  const QRect area = area_->viewport()->rect();
  panel_->move(area.bottomRight() - panel_->rect().bottomRight());
}

void frmMDIForm1::KeepPanelInside(QSize before) {
  if (!panel_ || panel_->isMinimized()) return;
  const auto place = [](int at, int length, int old_space, int space) {
    // What touched the far side goes on touching it.
    if (at + length >= old_space) at = space - length;
    return std::max(0, std::min(at, space - length));
  };
  const QSize now = area_->viewport()->size();
  panel_->move(place(panel_->x(), panel_->width(), before.width(), now.width()),
               place(panel_->y(), panel_->height(), before.height(), now.height()));
}

bool frmMDIForm1::eventFilter(QObject* watched, QEvent* event) {
  if (watched == area_->viewport() && event->type() == QEvent::Resize)
    KeepPanelInside(static_cast<QResizeEvent*>(event)->oldSize());
  return QMainWindow::eventFilter(watched, event);
}

void frmMDIForm1::closeEvent(QCloseEvent* event) {
  ClosePlayerPanel();
  event->accept();
}

void frmMDIForm1::ClosePlayerPanel() {
  if (panel_) panel_->close();
}

}  // namespace tallow

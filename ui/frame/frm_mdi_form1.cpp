// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frm_mdi_form1.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QStringList>
#include <QTimer>
#include <QToolBar>

#include "app/help_file.h"
#include "app/jukebox_documents.h"
#include "app/tallow.h"
#include "ui/dialogs/frm_help.h"
#include "ui/dialogs/frm_picture.h"
#include "ui/dialogs/frm_searching.h"
#include "ui/frame/file_menu.h"
#include "ui/frame/frame_findings.h"
#include "ui/frame/frame_menus.h"
#include "ui/frame/frame_toolbar.h"
#include "ui/frame/frame_work.h"
#include "ui/frame/frm_mdi_form1_documents.h"
#include "ui/frame/window_arrangement.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/player/frm_main_winamp.h"
#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "ui/support/message_box.h"
#include "util/start_program.h"

namespace tallow {
namespace {

constexpr QSize kFirstSize(1000, 680);
constexpr QSize kMinSize(480, 320);

/// The user's options that hold the geometry of the window and the state of its toolbar.
const QString kGeometryOption = QStringLiteral("Window/Geometry");
const QString kStateOption = QStringLiteral("Window/State");

/// How often unsaved changes are saved for recovery, in ms.
constexpr int kKeepUnsavedEvery = 60 * 1000;

/// Maximum lines of a tool tip; more do not fit a screen.
constexpr std::size_t kMaxTipLines = 20;

/// The widget that gets key events: an open menu, else the focus widget, else the active window.
QWidget* KeyReceiver() {
  if (QWidget* const popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* const focus = QApplication::focusWidget()) return focus;
  return QApplication::activeWindow();
}

void CloseMenus() {
  while (QWidget* const popup = QApplication::activePopupWidget())
    if (!popup->close()) break;
}

}  // namespace

frmMDIForm1::frmMDIForm1(Tallow& tallow, PlayerLink& link, DriveSearches& searches,
                         ShowMessage show, QWidget* parent)
    : QMainWindow(parent),
      tallow_(tallow),
      searches_(searches),
      show_(
          show
              ? std::move(show)
              : [this](const Message& message) {
                  // The parent is the modal dialog that the message comes from, if there is one.
                  QWidget* const modal = QApplication::activeModalWidget();
                  if (modal != nullptr) return ShowMessageBox(message, modal);
                  return ShowMessageBox(message, isVisible() ? this : nullptr);
                }),
      player_(
          link, [this] { return tallow_.player_path; }, show_),
      play_commands_(tallow, *this),
      open_help_(OpenHelpFile),
      area_(new QMdiArea(this)),
      document_windows_(std::make_unique<Documents>(*this)),
      documents_(std::make_unique<JukeboxDocuments>(tallow, *document_windows_)) {
  setObjectName(QStringLiteral("frmMDIForm1"));
  setWindowTitle(tr("Tallow"));
  area_->setObjectName(QStringLiteral("MDIArea"));
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  // Otherwise the panel would be maximized when shown beside a maximized jukebox.
  area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
  area_->viewport()->installEventFilter(this);
  setCentralWidget(area_);
  findings_ = new FrameFindings(*statusBar(), tallow_, show_, [this] { return OpenJukeboxes(); });
  findings_->setParent(this);
  connect(findings_, &FrameFindings::DriveForgotten, this, &frmMDIForm1::ShowProblems);
  // Visible from the start, so that the first message does not change the layout.
  statusBar()->show();
  setMinimumSize(kMinSize);
  // With a large scale factor a screen is small in logical pixels.
  resize(kFirstSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
  SetUpMenus();
  setProperty(kHelpPage, QStringLiteral("windows"));
  qApp->installEventFilter(this);
  const QSettings options;
  restoreGeometry(options.value(kGeometryOption).toByteArray());
  restoreState(options.value(kStateOption).toByteArray());
  toolbar_->show();
  auto* const keep = new QTimer(this);
  keep->setObjectName(QStringLiteral("KeepUnsavedTimer"));
  connect(keep, &QTimer::timeout, this, [this] {
    // While songs are being filed, the trees are incomplete.
    if (isEnabled()) KeepUnsavedChanges();
  });
  keep->start(kKeepUnsavedEvery);
}

frmMDIForm1::~frmMDIForm1() {
  qApp->removeEventFilter(this);
  delete help_;
  // Subwindows emit state changes while they are destroyed, which is after this destructor.
  for (QMdiSubWindow* const sub : area_->subWindowList()) sub->disconnect(this);
  tallow_.settings.SetMenuUpdate({});
}

void frmMDIForm1::SetUpMenus() {
  file_menu_ = AddFrameMenus(*menuBar(), [this](FrameCommand command) {
    Run(command);
    // A menu may have left the focus on no widget.
    FocusJukebox();
  });
  connect(file_menu_, &FileMenu::OpenRecent, this,
          [this](int element) { documents_->OpenRecent(element); });
  KeepWindowList(*menuBar()->findChild<QMenu*>(QStringLiteral("mnuWindowList")), *area_);
  toolbar_ = AddFrameToolbar(*this, [this](FrameCommand command, bool checks) {
    if (!checks || CheckPlayer()) Run(command);
    FocusJukebox();
  });
  tallow_.settings.SetMenuUpdate([this] { UpdateTheMenuControlArray(); });
  UpdateTheMenuControlArray();
}

QMenu* frmMDIForm1::createPopupMenu() {
  // The default menu could only hide the toolbar, and nothing could show it again.
  return nullptr;
}

void frmMDIForm1::SaveDatForm() { documents_->SaveDatForm(); }

void frmMDIForm1::UpdateTheMenuControlArray() {
  file_menu_->UpdateTheMenuControlArray(tallow_.settings);
}

void frmMDIForm1::ChangeBackgroundPicture() {
  picture_problem_.clear();
  frmPicture dialog(
      tallow_,
      [this](const QString& address, bool tiled) {
        std::string problem;
        const std::vector<Jukebox*> open = OpenJukeboxes();
        for (auto jukebox = open.rbegin(); jukebox != open.rend(); ++jukebox)
          problem = WindowOf(**jukebox)->PVExplorer1().SetBackgroundImage(address, tiled);
        return problem;
      },
      {}, show_, this);
  dialog.setProperty(kHelpPage, QStringLiteral("picture"));
  dialog.exec();
  ShowProblems();
}

void frmMDIForm1::ShowProblems() { Notice(tallow_.TakeProblems()); }

void frmMDIForm1::Notice(const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  QString text = DisplayText(lines.front());
  if (lines.size() > 1) text += tr("  (and %n more)", nullptr, static_cast<int>(lines.size() - 1));
  QStringList tip;
  for (std::size_t k = 0; k < lines.size() && k < kMaxTipLines; ++k)
    tip.append(DisplayText(lines[k]));
  if (lines.size() > kMaxTipLines) tip.append(QStringLiteral(". . ."));
  statusBar()->showMessage(text);
  statusBar()->setToolTip(tip.join(QLatin1Char('\n')));
}

void frmMDIForm1::NoticeScan(const std::vector<std::string>& lines) {
  std::vector<std::string> all = lines;
  // The first jukebox window is made before the start reports its result.
  if (!picture_problem_.empty()) all.insert(all.begin(), std::exchange(picture_problem_, {}));
  Notice(all);
  findings_->Changed();
}

frmMainWinamp* frmMDIForm1::PlayerPanel() const {
  return panel_ ? qobject_cast<frmMainWinamp*>(panel_->widget()) : nullptr;
}

MessageAnswer frmMDIForm1::Show(const Message& message) { return show_(message); }

void frmMDIForm1::ShowStatus(const std::string& text) {
  statusBar()->showMessage(DisplayText(text));
  statusBar()->setToolTip({});
}

void frmMDIForm1::EnableFrame(bool enabled) {
  // Unsaved changes are not saved while the frame is disabled, and a search may take long.
  if (!enabled) KeepUnsavedChanges();
  SetFrameEnabled(enabled);
}

void frmMDIForm1::SetFrameEnabled(bool enabled) {
  // A disabled window loses its focus widget.
  if (!enabled) saved_focus_ = focusWidget();
  setEnabled(enabled);
  if (!enabled) return;
  if (saved_focus_ != nullptr && saved_focus_->isVisible()) saved_focus_->setFocus();
  FocusJukebox();
}

std::unique_ptr<LongWork> frmMDIForm1::BeginWork(std::string_view text) {
  return std::make_unique<FrameWork>(tallow_, DisplayText(text),
                                     [this](bool enabled) { SetFrameEnabled(enabled); });
}

bool frmMDIForm1::Start(const std::string& program) {
  return StartProgram(program, FirstWindow::kNormal);
}

void frmMDIForm1::PlayOnPanel() {
  if (PlayerPanel() == nullptr) OpenPanel();
  panel_->showNormal();
  // Commands and keys go to the jukebox again.
  ActivateJukebox();
  if (frmMain* const window = ActiveJukeboxWindow()) window->TakeFocus();
  // A panel without a player is useless, so it is closed.
  is_handing_over_ = true;
  const bool is_open = PlayerPanel()->Play();
  is_handing_over_ = false;
  if (!is_open) delete panel_;
  if (std::exchange(panel_is_to_close_, false)) ClosePlayerPanel();
}

void frmMDIForm1::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // Queued, so that all other handlers of the event run first.
  if (event->type() == QEvent::ActivationChange && isActiveWindow())
    QMetaObject::invokeMethod(this, &frmMDIForm1::FocusJukebox, Qt::QueuedConnection);
}

void frmMDIForm1::FocusJukebox() {
  // After a dialog the focus may be on the area or on a window's frame, where keys do nothing.
  frmMain* const window = ActiveJukeboxWindow();
  const QWidget* const focus = QApplication::focusWidget();
  if (window == nullptr || !IsActive(*window) || !isActiveWindow()) return;
  if (focus == nullptr || focus == this || focus == area_ || focus == window->parentWidget())
    window->TakeFocus();
}

void frmMDIForm1::OpenPanel() {
  auto* const panel = new frmMainWinamp(tallow_, player_, show_);
  panel_ = area_->addSubWindow(panel);
  panel_->setAttribute(Qt::WA_DeleteOnClose);
  panel->setProperty(kHelpPage, QStringLiteral("playing"));
  panel->OnLongWork([this](std::string_view text) { return BeginWork(text); });
  connect(panel, &frmMainWinamp::Said, this,
          [this](const QString& text) { ShowStatus(text.toStdString()); });
  // Jukebox windows are maximized; the panel would be hidden behind them.
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

void frmMDIForm1::ClampPanelPosition(QSize before) {
  if (!panel_ || panel_->isMinimized()) return;
  const auto place = [](int at, int length, int old_space, int space) {
    // A panel that touched the far edge keeps touching it.
    if (at + length >= old_space) at = space - length;
    return std::max(0, std::min(at, space - length));
  };
  const QSize now = area_->viewport()->size();
  panel_->move(place(panel_->x(), panel_->width(), before.width(), now.width()),
               place(panel_->y(), panel_->height(), before.height(), now.height()));
}

bool frmMDIForm1::eventFilter(QObject* watched, QEvent* event) {
  // F1 works in whatever window has the focus, including dialogs.
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
      static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier && watched == KeyReceiver()) {
    auto* const menu = qobject_cast<QMenu*>(watched);
    const QWidget* const asked = menu != nullptr ? nullptr : static_cast<QWidget*>(watched);
    if (menu != nullptr) CloseMenus();
    // In the help window itself, F1 does nothing.
    if (asked == nullptr || help_ == nullptr || asked->window() != help_)
      ShowHelp(asked != nullptr ? HelpPageOf(asked) : QStringLiteral("menus"));
    return true;
  }
  if (watched == area_->viewport() && event->type() == QEvent::Resize)
    ClampPanelPosition(static_cast<QResizeEvent*>(event)->oldSize());
  return QMainWindow::eventFilter(watched, event);
}

void frmMDIForm1::closeEvent(QCloseEvent* event) {
  // A disabled frame has work in progress, which is cancelled and ends as soon as it can.
  if (!isEnabled()) {
    tallow_.SearchCancelled = true;
    return event->ignore();
  }
  // If one jukebox must stay open, so do the program, its music and the other jukeboxes: no window
  // closes before every question has been answered.
  const QList<QMdiSubWindow*> windows = area_->subWindowList();
  for (QMdiSubWindow* const sub : windows) {
    auto* const window = qobject_cast<frmMain*>(sub->widget());
    if (window == nullptr) continue;
    // The question is about the window in front.
    if (window->WillAsk()) {
      ComeToFront();
      BringToFront(*area_, *sub);
    }
    if (window->AskBeforeClosing()) continue;
    for (const Jukebox* const jukebox : OpenJukeboxes()) WindowOf(*jukebox)->KeepOpen();
    return event->ignore();
  }
  for (QMdiSubWindow* const sub : windows)
    if (qobject_cast<frmMain*>(sub->widget()) != nullptr) sub->close();
  // Another start has handed over a jukebox file in the meantime, so this program stays open.
  if (!waiting_files_.empty()) return event->ignore();
  ClosePlayerPanel();
  // The program ends with its last window, so the help window is deleted too.
  delete help_;
  QSettings options;
  options.setValue(kGeometryOption, saveGeometry());
  options.setValue(kStateOption, saveState());
  event->accept();
}

void frmMDIForm1::ClosePlayerPanel() {
  panel_is_to_close_ = is_handing_over_;
  if (panel_ && !is_handing_over_) panel_->close();
}

}  // namespace tallow

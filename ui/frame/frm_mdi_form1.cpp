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

/// Where the window stood and how its toolbar lay, among the user's options.
const QString kGeometryOption = QStringLiteral("Window/Geometry");
const QString kStateOption = QStringLiteral("Window/State");

/// How often unsaved changes are kept, in ms.
constexpr int kKeepUnsavedEvery = 60 * 1000;

/// Lines of a tool tip; more do not fit a screen.
constexpr std::size_t kMaxTipLines = 20;

/// Who gets the keys: an open menu, or who has the keyboard, or else the window in front.
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

frmMDIForm1::frmMDIForm1(Tallow& tallow, PlayerLink& link, ShowMessage show, QWidget* parent)
    : QMainWindow(parent),
      tallow_(tallow),
      show_(
          show
              ? std::move(show)
              : [this](const Message& message) {
                  // Over the dialog that it comes from, if there is one.
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
  // Or a panel that is shown beside a jukebox that fills the frame would fill it too.
  area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
  area_->viewport()->installEventFilter(this);
  setCentralWidget(area_);
  findings_ = new FrameFindings(*statusBar(), tallow_, show_, [this] { return OpenJukeboxes(); });
  findings_->setParent(this);
  // There from the start, so that the first message moves nothing.
  statusBar()->show();
  setMinimumSize(kMinSize);
  // A large scale makes a screen small.
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
    // While songs are filed, the trees are not yet what they are to be.
    if (isEnabled()) KeepUnsavedChanges();
  });
  keep->start(kKeepUnsavedEvery);
}

frmMDIForm1::~frmMDIForm1() {
  qApp->removeEventFilter(this);
  delete help_;
  // They change their states once more as they go, when this is no frame any longer.
  for (QMdiSubWindow* const sub : area_->subWindowList()) sub->disconnect(this);
  tallow_.settings.SetMenuUpdate({});
}

void frmMDIForm1::SetUpMenus() {
  file_menu_ = AddFrameMenus(*menuBar(), [this](FrameCommand command) {
    Run(command);
    // A menu may have left the keyboard with nobody.
    FocusJukebox();
  });
  connect(file_menu_, &FileMenu::OpenRecent, this,
          [this](int element) { documents_->OpenRecent(element); });
  KeepWindowList(*menuBar()->findChild<QMenu*>(QStringLiteral("mnuWindowList")), *area_);
  toolbar_ = AddFrameToolbar(*this, [this](FrameCommand command, bool checks) {
    if (!checks || play_commands_.CheckPlayer()) Run(command);
    FocusJukebox();
  });
  tallow_.settings.SetMenuUpdate([this] { UpdateTheMenuControlArray(); });
  UpdateTheMenuControlArray();
}

QMenu* frmMDIForm1::createPopupMenu() {
  // It could only hide the toolbar, and nothing would bring that back.
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
}

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
  // The first jukebox is there before a start tells what it came to.
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
  // Nothing is kept until it is enabled again, and a search may take long.
  if (!enabled) KeepUnsavedChanges();
  SetFrameEnabled(enabled);
}

void frmMDIForm1::SetFrameEnabled(bool enabled) {
  // A window that is disabled loses the keyboard.
  if (!enabled) focus_before_ = focusWidget();
  setEnabled(enabled);
  if (!enabled) return;
  if (focus_before_ != nullptr && focus_before_->isVisible()) focus_before_->setFocus();
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
  // The next command is for the jukebox again, and so are the keys.
  ActivateJukebox();
  if (frmMain* const window = ActiveJukeboxWindow()) window->TakeFocus();
  // A panel without a player would only be in the way.
  hands_over_ = true;
  const bool is_open = PlayerPanel()->Play();
  hands_over_ = false;
  if (!is_open) delete panel_;
  if (std::exchange(panel_is_to_close_, false)) ClosePlayerPanel();
}

void frmMDIForm1::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // Once everybody else has seen it.
  if (event->type() == QEvent::ActivationChange && isActiveWindow())
    QMetaObject::invokeMethod(this, &frmMDIForm1::FocusJukebox, Qt::QueuedConnection);
}

void frmMDIForm1::FocusJukebox() {
  // After a dialog the keyboard may be with the area or a window's frame, where it does nothing.
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
  // F1 is asked for in whatever window has the keyboard, dialogs too.
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
      static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier && watched == KeyReceiver()) {
    auto* const menu = qobject_cast<QMenu*>(watched);
    const QWidget* const asked = menu != nullptr ? nullptr : static_cast<QWidget*>(watched);
    if (menu != nullptr) CloseMenus();
    // Who reads the help has it.
    if (asked == nullptr || help_ == nullptr || asked->window() != help_)
      ShowHelp(asked != nullptr ? HelpPageOf(asked) : QStringLiteral("menus"));
    return true;
  }
  if (watched == area_->viewport() && event->type() == QEvent::Resize)
    KeepPanelInside(static_cast<QResizeEvent*>(event)->oldSize());
  return QMainWindow::eventFilter(watched, event);
}

void frmMDIForm1::closeEvent(QCloseEvent* event) {
  // A disabled frame is in the middle of something, which ends as soon as it can.
  if (!isEnabled()) {
    tallow_.SearchCancelled = true;
    return event->ignore();
  }
  // One that is not to be closed keeps the program open, music and all, and so the others as well: none is
  // closed before all have been asked.
  const QList<QMdiSubWindow*> windows = area_->subWindowList();
  for (QMdiSubWindow* const sub : windows) {
    auto* const window = qobject_cast<frmMain*>(sub->widget());
    if (window == nullptr) continue;
    // The question is about what is in front.
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
  // Somebody has asked for a jukebox meanwhile, of this program since it was still there.
  if (!waiting_files_.empty()) return event->ignore();
  ClosePlayerPanel();
  // The program ends with its last window.
  delete help_;
  QSettings options;
  options.setValue(kGeometryOption, saveGeometry());
  options.setValue(kStateOption, saveState());
  event->accept();
}

void frmMDIForm1::ClosePlayerPanel() {
  panel_is_to_close_ = hands_over_;
  if (panel_ && !hands_over_) panel_->close();
}

}  // namespace tallow

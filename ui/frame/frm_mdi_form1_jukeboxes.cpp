// SPDX-License-Identifier: GPL-3.0-or-later
// The jukebox windows of the frame window.
#include <algorithm>
#include <exception>
#include <utility>

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStatusBar>

#include "app/jukebox_documents.h"
#include "app/tallow.h"
#include "jukebox/initial_jukebox.h"
#include "jukebox/sorting.h"
#include "ui/frame/frm_mdi_form1.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "util/errors.h"

namespace tallow {
namespace {

/// Size of a jukebox window that is no longer maximized, and its offset from the previous window,
/// in pixels.
constexpr QSize kJukeboxSize(760, 480);
constexpr int kCascadeStep = 28;

}  // namespace

void frmMDIForm1::NewJukebox() {
  if (OpenJukeboxes().empty()) {
    frmMain& window = NewJukeboxWindow();
    const std::vector<Jukebox*> open = OpenJukeboxes();
    std::unique_ptr<LongWork> work = BeginWork(kFilingSongs);
    bool is_filed = true;
    const auto show = [&] {
      work.reset();
      ShowJukeboxWindow(window);
      if (!is_filed) Notice({FilingCancelledLine() + "."});
    };
    try {
      BuildInitialJukebox(tallow_.library, window.Jukebox(), open, show, nullptr,
                          [&](std::size_t filed, std::size_t songs) {
                            is_filed = work->GoOn([=] { return FilingLine(filed, songs); });
                            tallow_.filing_is_pending = tallow_.filing_is_pending || !is_filed;
                            return is_filed;
                          });
    } catch (const FilingError& error) {
      Notice(error.problems());
    } catch (const std::exception& error) {
      Notice({std::string("The songs could not be filed. ") + error.what()});
      if (!window.isVisible()) delete window.parentWidget();
    }
    return;
  }
  frmMain& window = NewJukeboxWindow();
  Jukebox& jukebox = window.Jukebox();
  // A recovered jukebox may already have the caption with this number, from an earlier run.
  do {
    jukebox.Caption("JukeBox" + std::to_string(jukebox_windows_));
  } while (IsOpenTwice(jukebox) && ++jukebox_windows_ > 0);
  jukebox.AddColumnHeader(kNameHeader);
  jukebox.AddColumnHeader(kKeyHeader);
  jukebox.Nodes().AddChild(nullptr, "All Songs");
  jukebox.RememberContent();
  ShowJukeboxWindow(window);
}

bool frmMDIForm1::IsOpenTwice(const Jukebox& jukebox) const {
  const std::vector<Jukebox*> open = OpenJukeboxes();
  return std::count_if(open.begin(), open.end(), [&](const Jukebox* other) {
           return other->Caption() == jukebox.Caption();
         }) > 1;
}

frmMain& frmMDIForm1::NewJukeboxWindow() {
  ++jukebox_windows_;
  auto* const window = new frmMain(tallow_, show_);
  QMdiSubWindow* const sub = area_->addSubWindow(window);
  sub->resize(kJukeboxSize);
  sub->hide();
  connect(sub, &QMdiSubWindow::windowStateChanged, this,
          [this, window, pane = 0](Qt::WindowStates before, Qt::WindowStates now) mutable {
            if (now.testFlag(Qt::WindowMinimized)) {
              if (!before.testFlag(Qt::WindowMinimized)) pane = window->CurrentPaneWFocus();
              return ActivateUnminimizedJukebox();
            }
            // A restored window gives the focus to its frame, or to its tree.
            if (before.testFlag(Qt::WindowMinimized))
              QMetaObject::invokeMethod(
                  window,
                  [this, window, pane] {
                    if (IsActive(*window)) window->PVExplorer1().TakeFocus(pane == kListPane);
                  },
                  Qt::QueuedConnection);
            if (before.testFlag(Qt::WindowMaximized) && !now.testFlag(Qt::WindowMaximized))
              RestoreJukeboxes();
          });
  window->setProperty(kHelpPage, QStringLiteral("jukebox"));
  connect(window, &frmMain::Problem, this, [this](const QStringList& lines) {
    std::vector<std::string> texts;
    for (const QString& line : lines) texts.push_back(line.toStdString());
    Notice(texts);
  });
  window->OnLongWork([this](std::string_view text) { return BeginWork(text); });
  window->OnSaveBeforeClosing([this, sub, window] {
    // The subwindow does not become active if it, or the frame, is minimized.
    area_->setActiveSubWindow(sub);
    return documents_->Save(window->Jukebox());
  });
  connect(window, &frmMain::LinkedStepDone, this,
          [this, window](EditHistory::MoveLink link, bool back) {
            UndoOtherHalf(*window, link, back);
          });
  connect(window, &frmMain::SongsReturned, this, &frmMDIForm1::FollowSongs);
  connect(window, &frmMain::ChangeBackgroundPicture, this, &frmMDIForm1::ChangeBackgroundPicture);
  connect(window, &frmMain::PlaySongs, this, &frmMDIForm1::PlaySongs);
  return *window;
}

void frmMDIForm1::UndoOtherHalf(frmMain& window, EditHistory::MoveLink link, bool back) {
  using State = EditHistory::LinkedStepState;
  State other_half = State::kNone;
  statusBar()->clearMessage();
  for (Jukebox* const jukebox : OpenJukeboxes()) {
    frmMain* const other = WindowOf(*jukebox);
    if (other == &window) continue;
    if (other->PVExplorer1().StepHalf(link.move, back)) return;
    const State state = jukebox->History().StateOfLinkedStep(link.move);
    if (state != State::kNone) other_half = state;
  }
  if (other_half == (back ? State::kUndone : State::kDone)) return;
  const std::string step = back ? "undone" : "done again";
  // A step that removes content here is reverted, because the content would be in neither jukebox.
  // But a step whose other half is forgotten must not block the undo of earlier steps.
  const bool takes_away = link.is_source != back;
  const bool bars = other_half == State::kNone && back;
  const auto tell = [this](const std::string& text) {
    // The message is about this step only, and the next step may follow at once.
    constexpr int kShown = 20 * 1000;
    statusBar()->showMessage(DisplayText(text), kShown);
    statusBar()->setToolTip({});
  };
  if (!takes_away || bars)
    return tell("Only the half of this move that is in " + window.Jukebox().Caption() + " was " +
                step + ": the other jukebox has changed since, or was closed.");
  window.PVExplorer1().StepHalf(link.move, !back);
  tell("The move between two jukeboxes was not " + step +
       (other_half == State::kNone
            ? ": the other jukebox has changed since, or was closed."
            : ": the other jukebox has changed since. Go back there first."));
}

void frmMDIForm1::FitInsideArea(QMdiSubWindow& sub, int number) const {
  const QRect space = area_->viewport()->rect();
  if (space.contains(sub.geometry())) return;
  const QSize size = kJukeboxSize.boundedTo(space.size() * 4 / 5);
  const int steps = std::max(1, std::min((space.width() - size.width()) / kCascadeStep,
                                         (space.height() - size.height()) / kCascadeStep));
  const int step = number % steps * kCascadeStep;
  sub.setGeometry(QRect(QPoint(step, step), size));
}

void frmMDIForm1::RestoreJukeboxes() {
  // Either all jukebox windows are maximized or none: a maximized window behind the others would
  // put its title and buttons into the frame.
  QMdiSubWindow* const active = area_->currentSubWindow();
  int number = 0;
  for (QMdiSubWindow* const sub : area_->subWindowList()) {
    if (qobject_cast<frmMain*>(sub->widget()) == nullptr || sub->isMinimized()) continue;
    if (sub->isMaximized()) sub->showNormal();
    FitInsideArea(*sub, number++);
  }
  if (active != nullptr) area_->setActiveSubWindow(active);
}

void frmMDIForm1::ActivateUnminimizedJukebox() {
  // Otherwise commands would change a minimized jukebox, which the user does not see.
  const QList<QMdiSubWindow*> windows = area_->subWindowList(QMdiArea::ActivationHistoryOrder);
  for (auto sub = windows.rbegin(); sub != windows.rend(); ++sub) {
    if (!(*sub)->isVisible() || (*sub)->isMinimized()) continue;
    if (qobject_cast<frmMain*>((*sub)->widget()) == nullptr) continue;
    area_->setActiveSubWindow(*sub);
    return;
  }
}

void frmMDIForm1::ShowJukeboxWindow(frmMain& window) {
  window.ShowJukebox();
  // All windows have the same picture, so only the first reports a problem.
  if (OpenJukeboxes().size() == 1 && !window.PictureProblem().empty()) {
    picture_problem_ = window.PictureProblem();
    Notice({picture_problem_});
  }
  window.show();
  window.parentWidget()->showMaximized();
  window.TakeFocus();
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

QMdiSubWindow* frmMDIForm1::LastActiveJukebox() const {
  const QList<QMdiSubWindow*> windows = area_->subWindowList(QMdiArea::ActivationHistoryOrder);
  QMdiSubWindow* minimized = nullptr;
  for (auto sub = windows.rbegin(); sub != windows.rend(); ++sub) {
    // Skips windows that are being made, or are closed and waiting for deletion.
    if (qobject_cast<frmMain*>((*sub)->widget()) == nullptr || (*sub)->isHidden()) continue;
    if (!(*sub)->isMinimized()) return *sub;
    if (minimized == nullptr) minimized = *sub;
  }
  return minimized;
}

bool frmMDIForm1::IsActive(const frmMain& window) const {
  return area_->currentSubWindow() != nullptr && area_->currentSubWindow() == window.parentWidget();
}

void frmMDIForm1::ActivateJukebox() {
  if (QMdiSubWindow* const jukebox = LastActiveJukebox()) area_->setActiveSubWindow(jukebox);
}

void frmMDIForm1::KeepUnsavedChanges() {
  for (const Jukebox* const jukebox : OpenJukeboxes()) {
    try {
      tallow_.unsaved.Keep(*jukebox, tallow_.library);
    } catch (const FileError& error) {
      Notice({"The unsaved changes of " + jukebox->Caption() +
              " could not be kept for the case of a crash. " + error.what() +
              ". Save the jukebox."});
    }
  }
}

}  // namespace tallow

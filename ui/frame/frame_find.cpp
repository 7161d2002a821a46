// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_find.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QToolBar>
#include <QToolButton>

#include "app/find/song_finder.h"
#include "app/tallow.h"
#include "ui/frame/bring_to_front.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"
#include "ui/jukebox/frm_main.h"
#include "ui/jukebox/pv_explorer.h"
#include "ui/support/frame_pictures.h"
#include "ui/support/help_page.h"
#include "ui/support/readable_placeholder.h"
#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Width of the field, in average characters: at least, and at most.
constexpr int kMinCharacters = 16;
constexpr int kMaxCharacters = 40;

/// A search waits for the details of all songs for this time. What comes later is searched by
/// Renew.
constexpr std::chrono::milliseconds kMaxWait{100};
/// After a search that took longer, in ms, the keys that wait come first.
constexpr std::int64_t kQuick = 16;
/// Renew runs after this time, in ms, and after this multiple of the time that a search takes.
constexpr int kRenewEvery = 500;
constexpr int kRenewalFactor = 20;

/// "1,234 songs found in 4 ms".
std::string FoundText(std::size_t count, std::int64_t milliseconds) {
  const std::string songs = count == 0   ? "No songs"
                            : count == 1 ? "1 song"
                                         : GroupedNumber(std::int64_t(count)) + " songs";
  return songs + " found in " +
         (milliseconds > 0 ? GroupedNumber(milliseconds) : std::string("under 1")) + " ms";
}

}  // namespace

FrameFind::FrameFind(QToolBar& toolbar, Tallow& tallow, JukeboxArea& jukeboxes,
                     FrameMessages& messages)
    : toolbar_(toolbar),
      tallow_(tallow),
      jukeboxes_(jukeboxes),
      messages_(messages),
      field_(new QLineEdit(&toolbar)),
      renewal_(new QTimer(field_)) {
  auto* const space = new QWidget(&toolbar);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  space_ = toolbar.addWidget(space);
  field_place_ = toolbar.addWidget(field_);
  field_->setObjectName(QStringLiteral("FindField"));
  field_->setPlaceholderText(tr("Find songs"));
  field_->setAccessibleName(tr("Find songs"));
  MakePlaceholderReadable(*field_);
  const QString help =
      tr("The list shows the songs found. Down goes to them, Enter plays them, Esc shows the "
         "folder again.");
  field_->setAccessibleDescription(help);
  field_->setToolTip(tr("Find songs while you type (Ctrl+E). ") + help);
  field_->setClearButtonEnabled(true);
  field_->setProperty(kHelpPage, QStringLiteral("find"));
  const QAction* const picture =
      field_->addAction(FramePicture("find"), QLineEdit::LeadingPosition);
  for (QToolButton* const button : field_->findChildren<QToolButton*>())
    button->setAccessibleName(button->defaultAction() == picture ? tr("Find songs")
                                                                 : tr("Clear the field"));
  const int character = field_->fontMetrics().averageCharWidth();
  field_->setMinimumWidth(kMinCharacters * character);
  field_->setMaximumWidth(kMaxCharacters * character);
  field_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  field_->installEventFilter(this);
  toolbar.installEventFilter(this);
  connect(field_, &QLineEdit::textChanged, this, &FrameFind::TextChanged);
  later_.setSingleShot(true);
  connect(&later_, &QTimer::timeout, this, &FrameFind::Find);
  renewal_->setObjectName(QStringLiteral("RenewalTimer"));
  connect(renewal_, &QTimer::timeout, this, &FrameFind::Renew);
  connect(&jukeboxes.Area(), &QMdiArea::subWindowActivated, this, &FrameFind::EndIfOtherWindow);
  FollowPreferences();
}

FrameFind::~FrameFind() = default;

void FrameFind::FollowPreferences() {
  const bool is_on = tallow_.preferences.switches().find_field;
  if (!is_on) End();
  space_->setVisible(is_on);
  field_place_->setVisible(is_on);
  if (item_ != nullptr) item_->setVisible(is_on);
}

void FrameFind::SetItem(QAction& item) {
  item_ = &item;
  FollowPreferences();
}

void FrameFind::Focus() {
  if (!field_->isVisible()) ShowRest(true);
  field_->setFocus(Qt::ShortcutFocusReason);
  field_->selectAll();
}

void FrameFind::ShowRest(bool show) {
  auto* const button = toolbar_.findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
  if (button == nullptr || button->isChecked() == show || (show && !button->isVisible())) return;
  // With an animation, the field could not have the focus before its end.
  auto* const frame = qobject_cast<QMainWindow*>(toolbar_.parentWidget());
  const bool animates = frame != nullptr && frame->isAnimated();
  if (animates) frame->setAnimated(false);
  button->click();
  if (animates) frame->setAnimated(true);
}

bool FrameFind::eventFilter(QObject* watched, QEvent* event) {
  // When the pointer leaves it, the toolbar hides the part that a narrow window has no place for.
  if (watched == &toolbar_) return event->type() == QEvent::Leave && field_->hasFocus();
  if (event->type() == QEvent::FocusOut) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool comes_back = reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
                            reason == Qt::ActiveWindowFocusReason;
    if (!comes_back) ShowRest(false);
  }
  if (event->type() == QEvent::ShortcutOverride) {
    // On some systems Ctrl+E moves in the text; here it selects the text, as everywhere else.
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() == Qt::Key_E && key.modifiers() == Qt::ControlModifier) {
      event->ignore();
      return true;
    }
  }
  if (event->type() == QEvent::FocusIn) {
    // The user will probably type. The start of the program gives no focus for these reasons.
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason)
      tallow_.details.BeginLoading();
  }
  if (event->type() == QEvent::KeyPress) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool plays = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (plays && key.isAutoRepeat()) return true;
    if ((key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && KeyPressed(key.key()))
      return true;
  }
  return QObject::eventFilter(watched, event);
}

bool FrameFind::KeyPressed(int key) {
  frmMain* const window = window_ != nullptr ? window_.data() : jukeboxes_.ActiveWindow();
  switch (key) {
    case Qt::Key_Escape:
      End();
      if (window != nullptr) window->GrabFocus();
      return true;
    case Qt::Key_Down:
      FindNow();
      // An empty list would only take the keyboard from the words.
      if (window == nullptr || (window_ != nullptr && hits_.empty())) return true;
      window->PVExplorer1().GrabFocus(true);
      if (window_ != nullptr) window->PVExplorer1().SelectFirstSong();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      FindNow();
      if (window_ != nullptr && !window_->Jukebox().ListFolder()->Items().empty())
        window_->OpenSong(0);
      return true;
    default:
      return false;
  }
}

void FrameFind::TextChanged() {
  if (is_clearing_) return;
  if (duration_ > kQuick && !Trim(field_->text().toStdString()).empty()) return later_.start();
  later_.stop();
  Find();
}

void FrameFind::FindNow() {
  if (!later_.isActive()) return;
  later_.stop();
  Find();
}

void FrameFind::Find() {
  const std::string text = field_->text().toStdString();
  if (Trim(text).empty()) {
    if (window_ == nullptr) return;
    // The user goes on typing, perhaps a blank before the next word.
    window_->PVExplorer1().HideHits();
    return;
  }
  frmMain* const window = jukeboxes_.ActiveWindow();
  if (window == nullptr)
    return messages_.ShowStatus("No jukebox is open. Open one, or make a new one, and try again.");
  Follow(*window);
  auto* const sub = qobject_cast<QMdiSubWindow*>(window->parentWidget());
  if (sub != nullptr && sub->isMinimized()) {
    BringToFront(jukeboxes_.Area(), *sub);
    // The window takes the focus when it is shown.
    QMetaObject::invokeMethod(
        field_, [this] { field_->setFocus(); }, Qt::QueuedConnection);
  }
  ShowHits(*window, text);
}

const std::vector<std::int32_t>& FrameFind::Search(const std::string& text) {
  if (finder_ == nullptr) finder_ = std::make_unique<SongFinder>(tallow_.library, tallow_.details);
  hits_ = finder_->Find(text, kMaxWait);
  names_version_ = tallow_.library.NamesVersion();
  details_version_ = tallow_.details.Table().Version();
  return hits_;
}

void FrameFind::ShowHits(frmMain& window, const std::string& text) {
  QElapsedTimer timer;
  timer.start();
  window.PVExplorer1().ShowHits(Search(text));
  duration_ = timer.elapsed();
  ShowFound(duration_);
  renewal_->start(std::max(kRenewEvery, int(kRenewalFactor * duration_)));
}

bool FrameFind::AreHitsOutdated() const {
  return names_version_ != tallow_.library.NamesVersion() ||
         details_version_ != tallow_.details.Table().Version() || tallow_.details.IsLoading();
}

void FrameFind::Renew() {
  if (window_ == nullptr) return renewal_->stop();
  // A disabled frame has work in progress, which changes the library. Neither must songs move under
  // the mouse.
  if (!toolbar_.window()->isEnabled() || !AreHitsOutdated() || later_.isActive() ||
      QApplication::activePopupWidget() != nullptr || QApplication::mouseButtons() != Qt::NoButton)
    return;
  const auto& shown = window_->Jukebox().ListFolder()->Items();
  const bool is_in_order =
      std::ranges::equal(shown, hits_, {}, [](const SongEntry& entry) { return entry.SubItem(); });
  if (!is_in_order) return renewal_->stop();
  const std::vector<std::int32_t> before = hits_;
  const std::string text = field_->text().toStdString();
  QElapsedTimer timer;
  timer.start();
  if (Search(text) == before) return;
  PVExplorer& explorer = window_->PVExplorer1();
  const PVExplorer::Place place = explorer.CurrentPlace();
  explorer.ShowHits(hits_);
  explorer.GoTo(place);
  // A later message stays.
  if (messages_.Status() == found_) ShowFound(timer.elapsed());
}

void FrameFind::ShowFound(std::int64_t milliseconds) {
  found_ = FoundText(hits_.size(), milliseconds);
  messages_.ShowStatus(found_);
}

void FrameFind::Follow(frmMain& window) {
  if (window_ == &window) return;
  window_ = &window;
  PVExplorer& explorer = window.PVExplorer1();
  connect(&explorer, &PVExplorer::ListRefilled, this, &FrameFind::EndIfFolderIsBack);
  connect(&explorer, &PVExplorer::Escaped, this, &FrameFind::End);
  connect(&window, &QObject::destroyed, this, &FrameFind::End);
}

void FrameFind::End() {
  later_.stop();
  if (window_ != nullptr) window_->PVExplorer1().HideHits();
  // What was said about the search.
  if (!field_->text().isEmpty()) messages_.ClearStatus();
  is_clearing_ = true;
  field_->clear();
  is_clearing_ = false;
}

void FrameFind::EndIfFolderIsBack() {
  if (window_ == nullptr || window_->Jukebox().ShowsHits()) return;
  disconnect(&window_->PVExplorer1(), nullptr, this, nullptr);
  disconnect(window_, nullptr, this, nullptr);
  window_ = nullptr;
  messages_.ClearStatus();
  if (field_->hasFocus() && Trim(field_->text().toStdString()).empty()) return;
  is_clearing_ = true;
  field_->clear();
  is_clearing_ = false;
}

void FrameFind::EndIfOtherWindow() {
  const frmMain* const active = jukeboxes_.ActiveWindow();
  if (active != window_ && (window_ != nullptr || !field_->text().isEmpty())) End();
}

}  // namespace tallow

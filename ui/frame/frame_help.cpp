// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_help.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

#include "app/help_file.h"
#include "app/tallow.h"
#include "app/tip_list.h"
#include "ui/dialogs/frm_help.h"
#include "ui/dialogs/frm_splash.h"
#include "ui/dialogs/frm_tip.h"
#include "ui/support/help_page.h"
#include "util/path_text.h"
#include "util/user_folders.h"

namespace tallow {
namespace {

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

/// Whether an event is a key without modifiers.
bool IsKey(const QEvent& event, Qt::Key which) {
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  return key.key() == which && key.modifiers() == Qt::NoModifier;
}

bool IsHelpKey(const QEvent& event) { return IsKey(event, Qt::Key_F1); }

}  // namespace

FrameHelp::FrameHelp(QWidget& frame, Tallow& tallow)
    : frame_(frame), tallow_(tallow), open_help_(OpenHelpFile) {
  // The help key works in whatever window has the focus, including dialogs.
  qApp->installEventFilter(this);
}

FrameHelp::~FrameHelp() { Close(); }

void FrameHelp::ShowHelp(const QString& page) {
  if (!open_help_(tallow_.help_file)) ShowManual(page);
}

void FrameHelp::ShowManual(const QString& page) {
  // A modal dialog blocks all other windows, so the manual becomes a child of the dialog.
  QWidget* const modal = QApplication::activeModalWidget();
  const bool is_usable =
      manual_ != nullptr && (modal == nullptr || modal == manual_->parentWidget());
  if (!is_usable) {
    if (manual_ != nullptr) manual_->deleteLater();
    manual_ = new frmHelp(modal);
    manual_->setAttribute(Qt::WA_DeleteOnClose);
  }
  manual_->ShowPage(page);
  manual_->show();
  manual_->raise();
  manual_->activateWindow();
}

void FrameHelp::Close() {
  delete manual_;
  delete tip_;
}

std::unique_ptr<frmTip> FrameHelp::MakeTip(bool asked_for) {
  auto tip = std::make_unique<frmTip>(
      TipFilePath(tallow_.application_folder, std::string(FolderOfPath(ExecutablePath()))),
      frame_.isVisible() ? &frame_ : nullptr);
  tip->setProperty(kHelpPage, QStringLiteral("windows"));
  tip->ShowFlag(asked_for);
  if (!tip->Load()) return nullptr;
  // Centered on the screen, because the frame may not have its final position yet.
  tip->adjustSize();
  tip->move(QGuiApplication::primaryScreen()->availableGeometry().center() - tip->rect().center());
  return tip;
}

void FrameHelp::ShowTip() {
  if (const std::unique_ptr<frmTip> tip = MakeTip(true)) tip->exec();
}

void FrameHelp::ShowTipOfStart() {
  std::unique_ptr<frmTip> made = MakeTip(false);
  if (made == nullptr) return;
  const bool was_active = frame_.isActiveWindow();
  tip_ = made.release();
  tip_->setAttribute(Qt::WA_DeleteOnClose);
  tip_->setAttribute(Qt::WA_ShowWithoutActivating);
  tip_->show();
  // Some systems activate each new window.
  if (was_active) frame_.activateWindow();
}

void FrameHelp::ShowAbout() {
  frmSplash about({}, &frame_);
  about.setProperty(kHelpPage, QStringLiteral("menus"));
  about.ShowOKButton(true);
  about.Load();
  about.exec();
}

bool FrameHelp::eventFilter(QObject* watched, QEvent* event) {
  // The tip of the start does not have the keyboard. It must not be touched by other events, which
  // come while it is being destroyed, too.
  if (IsKey(*event, Qt::Key_Escape) && tip_ != nullptr && watched == QApplication::focusWidget() &&
      QApplication::activeWindow() == &frame_)
    tip_->close();
  if (!IsHelpKey(*event) || watched != KeyReceiver()) return QObject::eventFilter(watched, event);
  auto* const menu = qobject_cast<QMenu*>(watched);
  const QWidget* const asked = menu != nullptr ? nullptr : static_cast<QWidget*>(watched);
  if (menu != nullptr) CloseMenus();
  // In the manual itself, the key does nothing.
  if (asked == nullptr || manual_ == nullptr || asked->window() != manual_)
    ShowHelp(asked != nullptr ? HelpPageOf(asked) : QStringLiteral("menus"));
  return true;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/rank_action.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QMenu>

#include "ui/jukebox/rank_picture.h"

namespace tallow {
namespace {

/// Accessibility interface of a rank item; Qt's own interface provides only the text.
class AccessibleRank : public QAccessibleInterface {
 public:
  explicit AccessibleRank(RankAction* action) : action_(action) {}

  bool isValid() const override { return Menu() != nullptr; }
  QObject* object() const override { return action_; }
  QWindow* window() const override {
    const QMenu* const menu = Menu();
    return menu != nullptr ? menu->windowHandle() : nullptr;
  }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(Menu());
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text text) const override {
    const QString caption = action_->text();
    const QString rank = action_->toolTip();
    if (text != QAccessible::Name) return {};
    return caption.isEmpty() ? rank : caption + QStringLiteral(", ") + rank;
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    const QMenu* const menu = Menu();
    if (menu == nullptr || !menu->isVisible()) return {};
    const QRect place = menu->actionGeometry(action_);
    return QRect(menu->mapToGlobal(place.topLeft()), place.size());
  }
  QAccessible::Role role() const override { return QAccessible::MenuItem; }
  QAccessible::State state() const override {
    QAccessible::State state;
    const QMenu* const menu = Menu();
    state.invisible = menu == nullptr || !menu->isVisible();
    state.disabled = !action_->isEnabled();
    state.focusable = true;
    state.focused = menu != nullptr && menu->activeAction() == action_;
    return state;
  }

 private:
  QMenu* Menu() const { return qobject_cast<QMenu*>(action_->parent()); }

  RankAction* action_;
};

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* const action = qobject_cast<RankAction*>(object);
  return action != nullptr ? new AccessibleRank(action) : nullptr;
}

}  // namespace

RankAction::RankAction(const QString& caption, int picture, int rank, QObject* parent)
    : QAction(caption, parent) {
  QAccessible::installFactory(&MakeAccessible);
  setIcon(RankPicture(picture));
  setIconVisibleInMenu(true);
  setToolTip(RankPictureText(rank));
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/repeat_button.h"

#include <cstddef>
#include <utility>

#include <QAction>
#include <QActionGroup>
#include <QMenu>

namespace tallow {

RepeatButton::RepeatButton(PlayerModel& model, QWidget* parent)
    : BarButton("cmdRepeat", parent), model_(model) {
  setCheckable(true);
  setPopupMode(QToolButton::InstantPopup);
  auto* const menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("mnuRepeat"));
  menu->setToolTipsVisible(true);
  setMenu(menu);
  new QActionGroup(menu);
  AddMode(RepeatMode::kOff, QStringLiteral("mnuRepeatOff"), tr("Repeat &Nothing"));
  AddMode(RepeatMode::kAll, QStringLiteral("mnuRepeatAll"), tr("Repeat &All Songs"));
  AddMode(RepeatMode::kOne, QStringLiteral("mnuRepeatOne"), tr("Repeat &This Song"));
  connect(menu, &QMenu::aboutToShow, this, &RepeatButton::UpdateMenu);
  ShowMode(RepeatMode::kOff);
}

void RepeatButton::AddMode(RepeatMode mode, const QString& name, const QString& caption) {
  QAction* const action = menu()->addAction(caption);
  action->setObjectName(name);
  action->setCheckable(true);
  menu()->findChild<QActionGroup*>()->addAction(action);
  connect(action, &QAction::triggered, this, [this, mode] {
    model_.SetRepeat(mode);
    ShowMode(model_.Now().repeat);
  });
  modes_[static_cast<std::size_t>(mode)] = action;
}

void RepeatButton::ShowMode(RepeatMode mode) {
  const std::pair<const char*, QString> looks[] = {{"repeat-off", tr("Repeat: nothing")},
                                                   {"repeat", tr("Repeat: all songs")},
                                                   {"repeat-one", tr("Repeat: this song")}};
  const auto& [picture, text] = looks[static_cast<std::size_t>(mode)];
  Show(picture, text);
  setChecked(mode != RepeatMode::kOff);
  modes_[static_cast<std::size_t>(mode)]->setChecked(true);
}

void RepeatButton::UpdateMenu() {
  QAction& one = *modes_[static_cast<std::size_t>(RepeatMode::kOne)];
  one.setEnabled(model_.Can(PlayerFeature::kRepeatOne));
  one.setToolTip(QString::fromStdString(model_.WhyNot(PlayerFeature::kRepeatOne)));
  ShowMode(model_.Now().repeat);
}

}  // namespace tallow

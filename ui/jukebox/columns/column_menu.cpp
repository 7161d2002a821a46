// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/jukebox/columns/column_menu.h"

#include <algorithm>

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

#include "ui/support/display_text.h"

namespace tallow {
namespace {

QString Tr(const char* text) { return QCoreApplication::translate("ColumnMenu", text); }

}  // namespace

QMenu* MakeColumnMenu(QWidget* parent, const std::function<void(ListColumn, bool shown)>& show,
                      const std::function<void()>& reset) {
  auto* const menu = new QMenu(Tr("Colu&mns"), parent);
  menu->setObjectName(QStringLiteral("HeaderMenu"));
  for (int number = 0; number < kListColumns; ++number) {
    const auto column = ListColumn(number);
    QAction* const item = menu->addAction(DisplayText(TitleOf(column)));
    item->setCheckable(true);
    item->setData(DisplayText(IdOf(column)));
    QObject::connect(item, &QAction::triggered, item,
                     [show, column](bool checked) { show(column, checked); });
  }
  menu->addSeparator();
  QAction* const first = menu->addAction(Tr("&Reset Columns"));
  first->setObjectName(QStringLiteral("ResetColumns"));
  QObject::connect(first, &QAction::triggered, first, reset);
  return menu;
}

void CheckColumns(QMenu& menu, const std::vector<ChosenColumn>& columns) {
  for (QAction* const item : menu.actions()) {
    if (!item->isCheckable()) continue;
    const bool is_shown = std::ranges::any_of(columns, [item](const ChosenColumn& one) {
      return item->data().toString() == DisplayText(IdOf(one.column));
    });
    item->setChecked(is_shown);
    item->setEnabled(!is_shown || columns.size() > 1);
  }
}

}  // namespace tallow

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

const QLatin1String kSortMenu("SortMenu");
const QLatin1String kMoveLeftMenu("MoveLeftMenu");
const QLatin1String kMoveRightMenu("MoveRightMenu");
const QLatin1String kResetItem("ResetColumns");

QAction* AddColumn(QMenu& menu, ListColumn column) {
  QAction* const item = menu.addAction(DisplayText(TitleOf(column)));
  item->setData(DisplayText(IdOf(column)));
  return item;
}

/// Adds a menu that UpdateColumnMenu fills with items of columns.
void AddMenu(QMenu& menu, const QString& title, QLatin1String name,
             const std::function<void(ListColumn)>& act) {
  QMenu* const added = menu.addMenu(title);
  added->setObjectName(name);
  QObject::connect(added, &QMenu::triggered, added, [act](const QAction* item) {
    if (const auto column = ColumnOfId(item->data().toString().toStdString())) act(*column);
  });
}

/// Fills a menu of AddMenu.
/// \param columns from the left; those that the menu has an item for
void Fill(QMenu& menu, const std::vector<ListColumn>& columns) {
  menu.clear();
  for (const ListColumn column : columns) AddColumn(menu, column);
  menu.menuAction()->setEnabled(!columns.empty());
}

}  // namespace

QMenu* MakeColumnMenu(QWidget* parent, const ColumnActions& actions) {
  auto* const menu = new QMenu(Tr("Colu&mns"), parent);
  menu->setObjectName(QStringLiteral("HeaderMenu"));
  for (int number = 0; number < kListColumns; ++number) {
    const auto column = ListColumn(number);
    QAction* const item = AddColumn(*menu, column);
    item->setCheckable(true);
    QObject::connect(item, &QAction::triggered, item,
                     [show = actions.show, column](bool checked) { show(column, checked); });
  }
  menu->addSeparator();
  AddMenu(*menu, Tr("&Sort By"), kSortMenu, actions.sort);
  AddMenu(*menu, Tr("Move &Left"), kMoveLeftMenu,
          [move = actions.move](ListColumn column) { move(column, true); });
  AddMenu(*menu, Tr("Move Ri&ght"), kMoveRightMenu,
          [move = actions.move](ListColumn column) { move(column, false); });
  menu->addSeparator();
  QAction* const first = menu->addAction(Tr("&Reset Columns"));
  first->setObjectName(kResetItem);
  QObject::connect(first, &QAction::triggered, first, actions.reset);
  return menu;
}

void UpdateColumnMenu(QMenu& menu, const std::vector<ChosenColumn>& columns,
                      const std::vector<ChosenColumn>& first, std::optional<ListColumn> sorted_by) {
  menu.findChild<QAction*>(kResetItem)->setEnabled(columns != first);
  std::vector<ListColumn> shown;
  shown.reserve(columns.size());
  for (const ChosenColumn& column : columns) shown.push_back(column.column);
  for (QAction* const item : menu.actions()) {
    if (!item->isCheckable()) continue;
    const auto column = ColumnOfId(item->data().toString().toStdString());
    const bool is_shown = column && std::ranges::find(shown, *column) != shown.end();
    item->setChecked(is_shown);
    item->setEnabled(!is_shown || shown.size() > 1);
  }
  Fill(*menu.findChild<QMenu*>(kMoveLeftMenu),
       {shown.begin() + (shown.empty() ? 0 : 1), shown.end()});
  Fill(*menu.findChild<QMenu*>(kMoveRightMenu),
       {shown.begin(), shown.end() - (shown.empty() ? 0 : 1)});
  std::erase_if(shown, [](ListColumn column) { return !CanSort(column); });
  QMenu& sort = *menu.findChild<QMenu*>(kSortMenu);
  Fill(sort, shown);
  for (QAction* const item : sort.actions()) {
    const auto column = ColumnOfId(item->data().toString().toStdString());
    item->setCheckable(column == sorted_by);
    item->setChecked(column == sorted_by);
  }
}

}  // namespace tallow

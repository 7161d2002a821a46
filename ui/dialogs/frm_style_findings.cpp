// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_style_findings.h"

#include <utility>

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/support/display_text.h"
#include "ui/support/help_page.h"

namespace tallow {
namespace {

/// Minimum size of the list, in average characters and lines.
constexpr int kListCharacters = 110;
constexpr int kListLines = 18;

/// The headings, with their rows as children. A row's text is made when it is shown, because there
/// may be a hundred thousand.
class FindingsModel : public QAbstractItemModel {
 public:
  FindingsModel(std::vector<StyleFindings> findings, QObject* parent)
      : QAbstractItemModel(parent), findings_(std::move(findings)) {}

  // The internal number of a heading is 0, that of a row the number of its heading, from 1.
  QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
  }
  QModelIndex parent(const QModelIndex& child) const override {
    if (!child.isValid() || child.internalId() == 0) return {};
    return createIndex(static_cast<int>(child.internalId()) - 1, 0, quintptr{0});
  }
  int rowCount(const QModelIndex& parent) const override {
    if (!parent.isValid()) return static_cast<int>(findings_.size());
    if (parent.internalId() != 0 || parent.column() != 0) return 0;
    return static_cast<int>(PartOf(parent).rows);
  }
  int columnCount(const QModelIndex& /*parent*/) const override { return 2; }
  bool HasNotes(const QModelIndex& heading) const { return PartOf(heading).has_notes; }

  QVariant data(const QModelIndex& index, int role) const override {
    if (index.internalId() == 0) return OfHeading(index, role);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
    const StyleFindings::Row row =
        PartOf(index.parent()).row(static_cast<std::size_t>(index.row()));
    return DisplayText(index.column() == 0 ? row.path : row.note);
  }

 private:
  const StyleFindings& PartOf(const QModelIndex& heading) const {
    return findings_[static_cast<std::size_t>(heading.row())];
  }
  QVariant OfHeading(const QModelIndex& index, int role) const {
    if (role == Qt::FontRole) {
      QFont font;
      font.setBold(true);
      return font;
    }
    if (role != Qt::DisplayRole || index.column() != 0) return {};
    return DisplayText(PartOf(index).heading);
  }

  std::vector<StyleFindings> findings_;
};

}  // namespace

frmStyleFindings::frmStyleFindings(std::vector<StyleFindings> findings, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("frmStyleFindings"));
  setWindowTitle(tr("What the Classic Style Leaves Out"));
  setProperty(kHelpPage, QStringLiteral("styles"));
  auto* const list = new QTreeView(this);
  auto* const model = new FindingsModel(std::move(findings), list);
  list->setObjectName(QStringLiteral("lstStyleFindings"));
  list->setAccessibleName(tr("Songs and files that the classic style leaves out"));
  list->setModel(model);
  list->setUniformRowHeights(true);
  list->setTextElideMode(Qt::ElideMiddle);
  list->header()->hide();
  list->setMinimumSize(kListCharacters * fontMetrics().averageCharWidth(),
                       kListLines * fontMetrics().lineSpacing());
  list->header()->setSectionResizeMode(QHeaderView::Stretch);
  // Closed headings of long lists show how many there are of each kind.
  int rows = 0;
  for (int row = 0; row < model->rowCount({}); ++row) {
    list->setFirstColumnSpanned(row, {}, true);
    const QModelIndex heading = model->index(row, 0, {});
    rows += 1 + model->rowCount(heading);
    if (model->HasNotes(heading)) continue;
    for (int below = 0; below < model->rowCount(heading); ++below)
      list->setFirstColumnSpanned(below, heading, true);
  }
  if (rows <= kListLines) list->expandAll();
  if (rows > 0) list->setCurrentIndex(model->index(0, 0, {}));
  auto* const close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setDefault(true);
  close->setAccessibleDescription(tr("Closes the list"));
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(close);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(list, 1);
  layout->addLayout(buttons);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace tallow

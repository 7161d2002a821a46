// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_style_findings.h"

#include <utility>

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/support/display_text.h"
#include "ui/support/help_page.h"
#include "util/number.h"

namespace tallow {
namespace {

/// Minimum size of the list, in average characters and lines.
constexpr int kListCharacters = 110;
constexpr int kListLines = 18;

/// The headings and the rows below them, one after another. A row's text is made when it is shown,
/// because there may be a hundred thousand.
class FindingsModel : public QAbstractTableModel {
 public:
  FindingsModel(std::vector<StyleFindings> findings, QObject* parent)
      : QAbstractTableModel(parent), findings_(std::move(findings)) {
    for (const StyleFindings& part : findings_) rows_ += 1 + static_cast<int>(part.rows);
  }

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 2; }

  /// The rows of the headings, ascending.
  std::vector<int> Headings() const {
    std::vector<int> headings;
    int row = 0;
    for (const StyleFindings& part : findings_) {
      headings.push_back(row);
      row += 1 + static_cast<int>(part.rows);
    }
    return headings;
  }

  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::FontRole) return {};
    int row = index.row();
    for (const StyleFindings& part : findings_) {
      const int rows = static_cast<int>(part.rows);
      if (row > rows) {
        row -= 1 + rows;
        continue;
      }
      if (role == Qt::FontRole) return row == 0 ? QVariant(Bold()) : QVariant();
      if (row == 0) return index.column() == 0 ? HeadingOf(part) : QVariant();
      const StyleFindings::Row found = part.row(static_cast<std::size_t>(row - 1));
      return DisplayText(index.column() == 0 ? found.path : found.note);
    }
    return {};
  }

 private:
  static QFont Bold() {
    QFont font;
    font.setBold(true);
    return font;
  }
  static QVariant HeadingOf(const StyleFindings& part) {
    return DisplayText(part.heading + " (" + GroupedNumber(static_cast<std::int64_t>(part.rows)) +
                       ")");
  }

  std::vector<StyleFindings> findings_;
  int rows_ = 0;  ///< in all
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
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setTextElideMode(Qt::ElideMiddle);
  list->header()->hide();
  list->setMinimumSize(kListCharacters * fontMetrics().averageCharWidth(),
                       kListLines * fontMetrics().lineSpacing());
  list->header()->resizeSection(0, list->minimumWidth() / 2);
  for (const int row : model->Headings()) list->setFirstColumnSpanned(row, {}, true);
  if (model->rowCount({}) > 0) list->setCurrentIndex(model->index(0, 0));
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

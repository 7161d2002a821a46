// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_findings.h"

#include <string>
#include <utility>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "library/cls_main.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Minimum size of the list, in average characters and lines.
constexpr int kListCharacters = 120;
constexpr int kListLines = 18;

/// Item data: the path of a place that is away, as raw bytes.
constexpr int kPlaceRole = Qt::UserRole;

std::string SongCount(std::int32_t songs) {
  return std::to_string(songs) + (songs == 1 ? " song" : " songs");
}

}  // namespace

frmFindings::frmFindings(clsMain& library, ShowMessage show, std::function<void()> forgotten,
                         QWidget* parent, std::vector<std::int32_t> unreadable)
    : QDialog(parent),
      library_(library),
      show_(std::move(show)),
      forgotten_(std::move(forgotten)),
      unreadable_(std::move(unreadable)),
      list_(new QTreeWidget(this)),
      forget_(new QPushButton(tr("&Forget Songs of This Drive..."), this)) {
  setObjectName(QStringLiteral("frmFindings"));
  setWindowTitle(tr("Away and Left Out"));
  list_->setObjectName(QStringLiteral("lstFindings"));
  list_->setAccessibleName(tr("Places that are away, and files that were left out"));
  list_->setColumnCount(2);
  list_->setUniformRowHeights(true);
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->header()->hide();
  list_->setMinimumSize(kListCharacters * fontMetrics().averageCharWidth(),
                        kListLines * fontMetrics().lineSpacing());
  forget_->setObjectName(QStringLiteral("cmdForget"));
  forget_->setAutoDefault(false);
  forget_->setAccessibleDescription(tr("Marks the songs of the selected drive as missing"));
  auto* const close = new QPushButton(tr("&Close"), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setDefault(true);
  close->setAccessibleDescription(tr("Closes the list"));
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(forget_);
  buttons->addStretch(1);
  buttons->addWidget(close);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(list_, 1);
  layout->addLayout(buttons);
  connect(list_, &QTreeWidget::itemSelectionChanged, this,
          [this] { forget_->setEnabled(!SelectedPlace().isNull()); });
  connect(forget_, &QPushButton::clicked, this, &frmFindings::Forget);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  Fill();
}

void frmFindings::Fill() {
  list_->clear();
  const auto heading = [this](const QString& text) {
    auto* const item = new QTreeWidgetItem(list_, {text});
    item->setFirstColumnSpanned(true);
    item->setFlags(Qt::ItemIsEnabled);
    QFont bold = list_->font();
    bold.setBold(true);
    item->setFont(0, bold);
    return item;
  };
  const auto add = [](QTreeWidgetItem* above, const QString& first, const QString& second) {
    auto* const item = new QTreeWidgetItem(above, {first, second});
    item->setToolTip(0, first);
    item->setToolTip(1, second);
    return item;
  };
  const std::vector<AwayPlace> places = library_.AwayPlaces();
  if (!places.empty()) {
    QTreeWidgetItem* const away = heading(tr("Away (songs keep their ranks and folders)"));
    for (const AwayPlace& place : places) {
      std::string why;
      if (place.kind == AwayKind::kFolder) why = ", cannot be read: " + place.problem;
      if (place.kind == AwayKind::kKept)
        why = ", missing, but kept because " + place.problem + " cannot be read";
      QTreeWidgetItem* const item =
          add(away, DisplayText(place.place), DisplayText(SongCount(place.songs) + why));
      item->setData(0, kPlaceRole, QByteArray::fromStdString(place.place));
    }
  }
  const std::vector<UnreadFolder> unread = library_.UnreadFoldersNow();
  if (!unread.empty()) {
    QTreeWidgetItem* const above =
        heading(tr("Could not be read: checked again at the next start"));
    for (const UnreadFolder& folder : unread)
      add(above, DisplayText(folder.path), DisplayText(folder.problem));
  }
  const std::vector<LeftOutFile>& files = library_.LeftOut();
  if (!files.empty()) {
    QTreeWidgetItem* const left_out =
        heading(tr("Skipped because a song with that file name exists"));
    for (const LeftOutFile& file : files)
      add(left_out, DisplayText(file.path), tr("kept instead: ") + DisplayText(file.stands_for_it));
  }
  if (!unreadable_.empty()) {
    QTreeWidgetItem* const above = heading(tr("Songs that could not be read completely"));
    for (const std::int32_t record : unreadable_)
      if (library_.IsPresent(record)) add(above, DisplayText(library_.Song(record).Path()), {});
  }
  if (places.empty() && files.empty() && unread.empty() && unreadable_.empty())
    heading(tr("Nothing is away, and nothing was left out."));
  list_->expandAll();
  list_->header()->resizeSection(0, list_->minimumWidth() / 2);
  forget_->setEnabled(false);
  // Selects the first place that is away, so that it can be forgotten using only the keyboard.
  if (!places.empty()) list_->setCurrentItem(list_->topLevelItem(0)->child(0));
}

QString frmFindings::SelectedPlace() const {
  const QTreeWidgetItem* const item = list_->currentItem();
  if (item == nullptr || !item->isSelected()) return {};
  const QVariant place = item->data(0, kPlaceRole);
  return place.isValid() ? item->text(0) : QString();
}

void frmFindings::Forget() {
  if (SelectedPlace().isNull()) return;
  const std::string place = list_->currentItem()->data(0, kPlaceRole).toByteArray().toStdString();
  std::int32_t songs = 0;
  for (const AwayPlace& away : library_.AwayPlaces())
    if (away.place == place) songs = away.songs;
  if (show_({.text = "Forget the " + SongCount(songs) + " of " + place +
                     "?\n\nThey become missing and disappear from the lists. If their files "
                     "return, a search restores them with their ranks.",
             .icon = MessageIcon::kQuestion,
             .buttons = MessageButtons::kYesNo}) != MessageAnswer::kYes)
    return;
  library_.ForgetAwayPlace(place);
  if (!library_.SaveError().empty())
    show_({.text = "The song library could not be saved. " + library_.SaveError() + ".",
           .icon = MessageIcon::kCritical});
  forgotten_();
  Fill();
}

}  // namespace tallow

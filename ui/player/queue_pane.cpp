// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/queue_pane.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/player/queue_model.h"
#include "ui/player/queue_view.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// Initial size, in average characters and lines.
constexpr int kCharacters = 54;
constexpr int kLines = 16;

QLabel* MakeText(const char* name, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

QueuePane::QueuePane(PlayerModel& player, QWidget* parent)
    : QWidget(parent),
      player_(player),
      rows_(new QueueModel(player, this)),
      view_(new QueueView(player, *rows_, this)),
      count_(MakeText("lblQueueCount", this)),
      empty_(MakeText("lblQueueEmpty", view_->viewport())),
      note_(MakeText("lblQueueNote", this)),
      save_(new QPushButton(tr("Save As &Folder"), this)) {
  setObjectName(QStringLiteral("QueuePane"));
  count_->setWordWrap(false);
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setMargin(fontMetrics().lineSpacing() / 2);
  save_->setObjectName(QStringLiteral("cmdSaveQueue"));
  save_->setToolTip(tr("Makes a folder of these songs in the active jukebox"));
  auto* const header = new QHBoxLayout;
  header->addWidget(count_, 1);
  header->addWidget(save_, 0);
  auto* const layout = new QVBoxLayout(this);
  const int gap = fontMetrics().height() / 4;
  layout->setContentsMargins(gap, gap, gap, gap);
  layout->setSpacing(gap);
  layout->addLayout(header);
  layout->addWidget(view_, 1);
  layout->addWidget(note_);
  view_->viewport()->installEventFilter(this);
  setFocusProxy(view_);
  connect(save_, &QPushButton::clicked, this, &QueuePane::SaveAsFolder);
  connect(rows_, &QueueModel::Changed, this, &QueuePane::ShowState);
  ShowState();
}

QSize QueuePane::sizeHint() const {
  return {kCharacters * fontMetrics().averageCharWidth(), kLines * fontMetrics().lineSpacing()};
}

QString QueuePane::EmptyText() const {
  const Playing& now = player_.Now();
  if (now.is_running && now.kind == PlayerKind::kWinamp && now.shuffle)
    return tr("Winamp plays in random order, and does not say which songs are to come.");
  if (now.is_running && now.status != kStopped && now.song == 0)
    return tr("The songs of the player are not known.");
  if (now.song != 0 && now.repeat == RepeatMode::kAll)
    return tr("This is the last song. After it the list begins again.");
  return tr(
      "No songs are to come. To add some, right-click songs of a folder and choose Play From "
      "Here, Play Next or Add To Queue.");
}

void QueuePane::ShowState() {
  const int rows = rows_->rowCount();
  count_->setText(rows == 1 ? tr("1 song") : tr("%1 songs").arg(QLocale().toString(rows)));
  save_->setEnabled(rows > 0);
  empty_->setText(EmptyText());
  empty_->setVisible(rows == 0);
  const QString reason =
      rows > 0 ? DisplayText(player_.WhyNot(PlayerFeature::kRearrange)) : QString();
  note_->setText(reason.isEmpty() ? reason : tr("The songs cannot be rearranged. %1").arg(reason));
  note_->setVisible(!reason.isEmpty());
}

bool QueuePane::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) empty_->setGeometry(view_->viewport()->rect());
  return QWidget::eventFilter(watched, event);
}

}  // namespace tallow

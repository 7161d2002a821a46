// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/frm_tip.h"

#include <chrono>
#include <utility>

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSettings>
#include <QVBoxLayout>

#include "ui/support/display_text.h"
#include "ui/support/frame_pictures.h"

namespace tallow {
namespace {

const QString kOption = QStringLiteral("Options/Show Tips at Startup");

/// Minimum size of the text, in average characters and lines.
constexpr int kTipCharacters = 52;
constexpr int kTipLines = 7;

constexpr int kPictureSize = 48;

}  // namespace

frmTip::frmTip(std::string tips, QWidget* parent)
    : QDialog(parent),
      path_(std::move(tips)),
      tip_(new QLabel(this)),
      at_startup_(new QCheckBox(tr("&Show Tips at Startup"), this)) {
  setObjectName(QStringLiteral("frmTip"));
  setWindowTitle(tr("Tip of the Day"));
  tip_->setObjectName(QStringLiteral("lblTipText"));
  tip_->setAccessibleName(tr("Tip"));
  tip_->setTextFormat(Qt::PlainText);
  tip_->setWordWrap(true);
  tip_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  at_startup_->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
  at_startup_->setAccessibleDescription(tr("Shows a tip whenever Tallow starts"));
  auto* const picture = new QLabel(this);
  picture->setPixmap(FramePicture("tip").pixmap(kPictureSize));
  auto* const next = new QPushButton(tr("&Next Tip"), this);
  next->setObjectName(QStringLiteral("cmdNextTip"));
  next->setAutoDefault(false);
  next->setAccessibleDescription(tr("Shows another tip"));
  auto* const ok = new QPushButton(tr("OK"), this);
  ok->setObjectName(QStringLiteral("cmdOK"));
  ok->setDefault(true);
  ok->setAccessibleDescription(tr("Closes the tip"));
  ok->setFocus();

  // The text scrolls, because a tip can have any length.
  auto* const scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setWidget(tip_);
  scroll->setMinimumSize(kTipCharacters * fontMetrics().averageCharWidth(),
                         kTipLines * fontMetrics().lineSpacing());
  auto* const text = new QHBoxLayout;
  text->addWidget(picture, 0, Qt::AlignTop);
  text->addWidget(scroll, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(at_startup_);
  buttons->addStretch(1);
  buttons->addWidget(next);
  buttons->addWidget(ok);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(text, 1);
  layout->addLayout(buttons);
  connect(at_startup_, &QCheckBox::clicked, this,
          [](bool checked) { QSettings().setValue(kOption, checked ? 1 : 0); });
  connect(next, &QPushButton::clicked, this, [this] {
    if (tips_) tips_->Next();
    DisplayCurrentTip();
  });
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

int frmTip::StartUpOption() { return QSettings().value(kOption, 1).toInt(); }

bool frmTip::Load() {
  const bool shown = std::exchange(show_flag_, false) || StartUpOption() != 0;
  if (!shown) return false;
  if (StartUpOption() != 0) at_startup_->setChecked(true);
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  tips_ = std::make_unique<TipList>(static_cast<std::mt19937::result_type>(now));
  if (tips_->Load(path_))
    DisplayCurrentTip();
  else
    tip_->setText(DisplayMessage(NoTipsText()));
  return true;
}

void frmTip::DisplayCurrentTip() {
  if (const std::string* const tip = tips_ ? tips_->Current() : nullptr)
    tip_->setText(DisplayText(*tip));
}

}  // namespace tallow

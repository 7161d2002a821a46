// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/style_page.h"

#include <cstddef>
#include <string>
#include <utility>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/preferences.h"
#include "app/tallow.h"
#include "ui/dialogs/button_sentence.h"

namespace tallow {
namespace {

QString Tr(const char* text) { return QCoreApplication::translate("StyleSwitches", text); }

}  // namespace

StylePage::StylePage(PreferencesContext context, QWidget* parent)
    : QWidget(parent),
      context_(std::move(context)),
      preferences_(context_.tallow.preferences),
      styles_(new QButtonGroup(this)),
      state_(new QLabel(this)) {
  auto* const layout = new QVBoxLayout(this);
  AddStyle(*layout, Style::kClassic, tr("C&lassic Style"),
           tr("Songs are MP3 files. Tallow knows them by their file names, and files them by their "
              "ID3v1 tags."));
  AddStyle(
      *layout, Style::kModern, tr("&Modern Style"),
      tr("Songs are music files of all formats, each file for itself. Tallow files them by all "
         "their tags, and finds new folders."));
  state_->setObjectName(QStringLiteral("lblState"));
  state_->setWordWrap(true);
  layout->addWidget(state_);
  auto* const heading = new QLabel(
      tr("The switches of the two styles. Ranks, numbers and entries stay, however you switch."),
      this);
  heading->setWordWrap(true);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(heading);
  for (const StyleSwitch& one : StyleSwitches()) AddSwitch(*layout, one);
  layout->addStretch(1);
  connect(styles_, &QButtonGroup::idClicked, this, [this](int style) {
    preferences_.SetStyle(static_cast<Style>(style));
    context_.style_chosen();
    ShowSwitches();
    context_.changed();
  });
  ShowSwitches();
}

void StylePage::AddStyle(QVBoxLayout& layout, Style style, const QString& caption,
                         const QString& sentence) {
  auto* const button = new QRadioButton(caption, this);
  const std::string name(NameOfStyle(style));
  button->setObjectName(QStringLiteral("opt%1").arg(QLatin1String(name.c_str())));
  QFont bold = button->font();
  bold.setBold(true);
  // A font that the desktop gives in pixels has no size in points.
  if (bold.pointSizeF() > 0) bold.setPointSizeF(1.2 * bold.pointSizeF());
  button->setFont(bold);
  styles_->addButton(button, static_cast<int>(style));
  layout.addWidget(button);
  AddButtonSentence(layout, *button, sentence);
}

void StylePage::AddSwitch(QVBoxLayout& layout, const StyleSwitch& one) {
  auto* const box = new QCheckBox(Tr(one.caption), this);
  box->setObjectName(QStringLiteral("chk%1").arg(QLatin1String(one.name)));
  switches_.push_back(box);
  layout.addWidget(box);
  AddButtonSentence(layout, *box, Tr(one.explanation));
  connect(box, &QCheckBox::clicked, this, &StylePage::StoreSwitches);
}

void StylePage::StoreSwitches() {
  Switches switches;
  for (std::size_t k = 0; k < switches_.size(); ++k)
    switches.*StyleSwitches()[k].member = switches_[k]->isChecked();
  preferences_.SetSwitches(switches);
  ShowSwitches();
  context_.changed();
}

void StylePage::ShowSwitches() {
  const Style style = preferences_.style();
  // An exclusive group would keep one of its buttons checked.
  styles_->setExclusive(false);
  for (QAbstractButton* const button : styles_->buttons())
    button->setChecked(styles_->id(button) == static_cast<int>(style));
  styles_->setExclusive(true);
  // Tab reaches only the chosen style, or the first one if none is chosen; arrows choose the other.
  QAbstractButton* const tab =
      styles_->checkedButton() != nullptr ? styles_->checkedButton() : styles_->buttons().front();
  for (QAbstractButton* const button : styles_->buttons())
    button->setFocusPolicy(button == tab ? Qt::StrongFocus : Qt::ClickFocus);
  const Switches& switches = preferences_.switches();
  for (std::size_t k = 0; k < switches_.size(); ++k)
    switches_[k]->setChecked(switches.*StyleSwitches()[k].member);
  if (preferences_.IsOverridden())
    state_->setText(
        tr("This run has the style of the command line. A choice here replaces it, and "
           "is stored."));
  else if (style == Style::kCustom)
    state_->setText(tr("Neither style: the switches below are your own choice."));
  else
    state_->setText(tr("A choice acts at once, and can be taken back at any time."));
}

}  // namespace tallow

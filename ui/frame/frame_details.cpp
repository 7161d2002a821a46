// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame/frame_details.h"

#include <utility>

#include <QApplication>
#include <QLabel>
#include <QStatusBar>

#include "app/tallow.h"
#include "ui/dialogs/frm_style_findings.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/style_bar.h"
#include "ui/support/display_text.h"

namespace tallow {
namespace {

/// How often details that were read are taken, in ms.
constexpr int kTakeEvery = 50;
/// How often to look for new songs when all details are read, in ms.
constexpr int kLookEvery = 1000;

}  // namespace

FrameDetails::FrameDetails(QWidget& frame, StyleBar& bar, QStatusBar& status, Tallow& tallow,
                           FrameMessages& messages, std::function<void()> focus_jukebox,
                           std::function<void()> style_chosen, std::function<void()> polled)
    : frame_(frame),
      bar_(bar),
      tallow_(tallow),
      messages_(messages),
      focus_jukebox_(std::move(focus_jukebox)),
      style_chosen_(std::move(style_chosen)),
      polled_(std::move(polled)),
      progress_(new QLabel(&status)),
      counter_(tallow),
      hint_(tallow.preferences),
      unreadable_(tallow.preferences) {
  progress_->setObjectName(QStringLiteral("lblDetailsProgress"));
  progress_->hide();
  // At the right of the status bar, so that its messages stay.
  status.addPermanentWidget(progress_);
  timer_.setObjectName(QStringLiteral("DetailsTimer"));
  connect(&timer_, &QTimer::timeout, this, &FrameDetails::Poll);
  connect(&bar_, &StyleBar::UseModernStyle, this, &FrameDetails::UseModernStyle);
  connect(&bar_, &StyleBar::ShowDetails, this, &FrameDetails::ShowDetails);
  connect(&bar_, &StyleBar::NotNow, this, &FrameDetails::Decline);
}

FrameDetails::~FrameDetails() { tallow_.details.Stop(); }

void FrameDetails::Start(DetailsFiller::MakeReader make_reader) {
  tallow_.details.Start(tallow_.library, std::move(make_reader));
  timer_.start(kTakeEvery);
}

void FrameDetails::Changed() {
  if (!timer_.isActive()) return;
  tallow_.details.Refresh();
  counter_.Refresh();
  Poll();
}

void FrameDetails::Poll() {
  // A disabled frame has work in progress, which changes the library.
  if (!frame_.isEnabled()) return;
  tallow_.details.Poll();
  if (polled_) polled_();
  const bool is_busy = tallow_.details.IsReading() || tallow_.details.IsLoading();
  const int interval = is_busy ? kTakeEvery : kLookEvery;
  if (timer_.interval() != interval) timer_.setInterval(interval);
  messages_.AddNotice(tallow_.details.TakeProblems());
  TellUnreadable();
  ShowProgress();
  ShowBar();
}

void FrameDetails::TellUnreadable() {
  const bool is_reading = tallow_.details.IsReading();
  const bool has_ended = std::exchange(was_reading_, is_reading) && !is_reading;
  if (!has_ended) return;
  const std::string line = unreadable_.Update(tallow_.details.Unreadable().size());
  if (line.empty()) return;
  std::vector<std::string> lines = tallow_.TakeProblems();
  lines.insert(lines.begin(), line);
  messages_.AddNotice(std::move(lines));
}

void FrameDetails::ShowProgress() {
  const QString text = DisplayText(tallow_.details.ProgressText());
  progress_->setText(text);
  progress_->setVisible(!text.isEmpty());
}

void FrameDetails::ShowBar() {
  if (tallow_.library.LoadFindings()) {
    counter_.Refresh();
    messages_.Notice(tallow_.library.TakeProblems());
  }
  const StyleCounts counts = counter_.Count();
  if (!hint_.Update(counts, !tallow_.details.IsReading())) return HideBar();
  bar_.SetText(DisplayText(TextOf(counts)));
  bar_.show();
}

void FrameDetails::HideBar() {
  if (bar_.isHidden()) return;
  // Otherwise the focus would go to the next control, which may be any.
  const bool had_focus = bar_.HasFocus();
  if (had_focus) QApplication::focusWidget()->clearFocus();
  bar_.hide();
  if (had_focus) focus_jukebox_();
}

void FrameDetails::UseModernStyle() {
  hint_.Close();
  HideBar();
  tallow_.preferences.SetStyle(Style::kModern);
  style_chosen_();
  messages_.Notice(tallow_.TakeProblems());
}

void FrameDetails::ShowDetails() {
  frmStyleFindings list(ListStyleFindings(tallow_), &frame_);
  list.exec();
}

void FrameDetails::Decline() {
  hint_.Decline();
  HideBar();
  messages_.Notice(tallow_.TakeProblems());
}

}  // namespace tallow

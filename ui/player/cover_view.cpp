// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/cover_view.h"

#include <utility>

#include <QPainter>
#include <QTimer>

#include "ui/support/frame_pictures.h"

namespace tallow {
namespace {

/// Pixels of the longer side of a loaded cover: enough for scales up to 400 %.
constexpr int kLoadedPixels = 4 * CoverView::kSide;

/// How long the cover of the song before stays, in ms.
constexpr int kClearAfter = 400;

constexpr int kNoteSide = 32;

}  // namespace

CoverView::CoverView(CoverLoader::Read read, QWidget* parent)
    : QWidget(parent), loader_(std::move(read)), clear_(new QTimer(this)) {
  setObjectName(QStringLiteral("CoverView"));
  setFixedSize(kSide, kSide);
  clear_->setSingleShot(true);
  clear_->setInterval(kClearAfter);
  connect(clear_, &QTimer::timeout, this, [this] { ShowCover({}); });
  connect(&loader_, &CoverLoader::Loaded, this, [this](const QImage& cover) { ShowCover(cover); });
  ShowCover({});
}

void CoverView::ShowSong(const std::string& path) {
  if (path == path_) return;
  path_ = path;
  if (path.empty()) {
    loader_.Cancel();
    return ShowCover({});
  }
  clear_->start();
  loader_.Load(path, kLoadedPixels);
}

void CoverView::ShowCover(const QImage& cover) {
  clear_->stop();
  cover_ = cover;
  scaled_ = {};
  setAccessibleName(HasCover() ? tr("Cover of the song") : tr("No cover"));
  update();
}

void CoverView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const auto centered = [this](QSize size) {
    return QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
  };
  if (!HasCover()) {
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    FramePicture("no-cover").paint(&painter, centered(QSize(kNoteSide, kNoteSide)));
    return;
  }
  const qreal scale = devicePixelRatioF();
  const QSize pixels = (QSizeF(size()) * scale).toSize();
  if (scaled_.isNull() || scaled_.devicePixelRatio() != scale) {
    scaled_ =
        QPixmap::fromImage(cover_.scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    scaled_.setDevicePixelRatio(scale);
  }
  painter.drawPixmap(centered(scaled_.deviceIndependentSize().toSize()), scaled_);
}

}  // namespace tallow

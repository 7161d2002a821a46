// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/readable_placeholder.h"

#include <QEvent>
#include <QLineEdit>
#include <QObject>
#include <QPalette>

namespace tallow {
namespace {

/// How opaque the placeholder is, of 255.
constexpr int kOpacity = 160;

void DeriveColor(QLineEdit& field) {
  QPalette colors = field.palette();
  QColor color = colors.color(QPalette::Text);
  color.setAlpha(kOpacity);
  // Setting a palette sends another event.
  if (colors.color(QPalette::PlaceholderText) == color) return;
  colors.setColor(QPalette::PlaceholderText, color);
  field.setPalette(colors);
}

/// Follows the colours of a field, its parent.
class PlaceholderColor : public QObject {
 public:
  explicit PlaceholderColor(QLineEdit& field) : QObject(&field), field_(field) {
    field.installEventFilter(this);
    DeriveColor(field);
  }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) DeriveColor(field_);
    return QObject::eventFilter(watched, event);
  }

  QLineEdit& field_;
};

}  // namespace

void MakePlaceholderReadable(QLineEdit& field) { new PlaceholderColor(field); }

}  // namespace tallow

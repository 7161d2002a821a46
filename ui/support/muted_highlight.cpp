// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/muted_highlight.h"

#include <QPalette>

namespace tallow {

QColor MutedHighlight(const QPalette& colors) {
  constexpr int kGrey = 0x80;
  const QColor mark = colors.color(QPalette::Active, QPalette::Highlight);
  const auto mute = [](int part) { return (part + 2 * kGrey) / 3; };
  return {mute(mark.red()), mute(mark.green()), mute(mark.blue())};
}

}  // namespace tallow

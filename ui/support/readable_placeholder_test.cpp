// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/readable_placeholder.h"

#include <gtest/gtest.h>

#include <QLineEdit>

namespace tallow {
namespace {

QColor PlaceholderOf(const QLineEdit& field) {
  return field.palette().color(QPalette::PlaceholderText);
}

TEST(ReadablePlaceholder, FollowsTheColourOfTheTextAlsoWhenItChanges) {
  QWidget window;
  QLineEdit field(&window);
  MakePlaceholderReadable(field);
  for (const QColor color : {Qt::white, Qt::black, Qt::yellow}) {
    QPalette colors = window.palette();
    colors.setColor(QPalette::Text, color);
    colors.setColor(QPalette::PlaceholderText, Qt::black);
    window.setPalette(colors);
    EXPECT_EQ(PlaceholderOf(field).rgb(), color.rgb());
    EXPECT_EQ(PlaceholderOf(field).alpha(), 160);
  }
}

}  // namespace
}  // namespace tallow

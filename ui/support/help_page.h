// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace tallow {

/// The page of the manual that a window is described on: that of the closest window around it which has the
/// property "helpPage".
QString HelpPageOf(const QWidget* widget);

/// The name of that property.
inline constexpr const char* kHelpPage = "helpPage";

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace tallow {

/// Returns the manual page that describes a widget: the value of the property "helpPage" of the
/// widget or of its nearest ancestor that has the property.
QString HelpPageOf(const QWidget* widget);

/// The name of the property that HelpPageOf reads.
inline constexpr const char* kHelpPage = "helpPage";

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tallow {

/// Formats a time of a song as "1:05", or as "1:02:05" from one hour on.
/// \param seconds from 0
QString TimeText(int seconds);

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QString>

namespace tallow {

/// A path of the core as Qt takes it.
QString QtPath(const std::string& path);

/// A path of Qt as the core has it: in the bytes of the disk, with the system's separators.
std::string PathOfQt(const QString& path);

}  // namespace tallow

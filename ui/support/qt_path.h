// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include <QString>

namespace tallow {

/// Converts a path of the core to a QString.
QString QtPath(const std::string& path);

/// Converts a path of Qt to a path of the core: in the encoding of the file system, with native
/// separators.
std::string PathOfQt(const QString& path);

}  // namespace tallow

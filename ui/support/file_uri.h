// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include <QByteArray>

namespace tallow {

/// The path that a file URI names, in the encoding of the file system.
///
/// \param machine host name in the URI; empty when it has none
/// \param path    path in the URI, from its first slash on, with every %XX decoded
/// \returns no value when the file is on another computer and this system cannot open it there
std::optional<std::string> PathOfFileUri(const QByteArray& machine, std::string path);

/// The path in the URI of a file: with a slash before each of its parts.
std::string PathInFileUri(const std::string& path);

}  // namespace tallow

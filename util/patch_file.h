// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallow {

/// Writes bytes into a file in place, at a position counted back from its end. The file grows when
/// the bytes reach beyond the end. A file that does not exist is created empty first.
///
/// \param back  how many bytes before the end the first byte is written
/// \throws FileError when the file cannot be opened or written, or is shorter than back
void PatchFileEnd(const std::string& path, std::size_t back, std::string_view bytes);

}  // namespace tallow

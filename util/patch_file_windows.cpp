// SPDX-License-Identifier: GPL-3.0-or-later
#include <windows.h>

#include "util/errors.h"
#include "util/open_file_windows.h"
#include "util/patch_file.h"
#include "util/wide_text_windows.h"

namespace tallow {

void PatchFileEnd(const std::string& path, std::size_t back, std::string_view bytes) {
  const OpenHandle file(CreateFileW(ToWidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                                    FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                    nullptr));
  LARGE_INTEGER size{};
  if (!file || !GetFileSizeEx(file.get(), &size))
    throw FileError(path, SystemErrorText(GetLastError()));
  LARGE_INTEGER at{};
  at.QuadPart = size.QuadPart - static_cast<LONGLONG>(back);
  if (at.QuadPart < 0) throw FileError(path, "is too short to hold a tag");
  DWORD written = 0;
  if (!SetFilePointerEx(file.get(), at, nullptr, FILE_BEGIN) ||
      !WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
      written != bytes.size())
    throw FileError(path, SystemErrorText(GetLastError()));
}

}  // namespace tallow

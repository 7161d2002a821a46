// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <windows.h>

#include "util/input_file.h"
#include "util/open_file_windows.h"
#include "util/wide_text_windows.h"

namespace tallow {
namespace {

std::uint64_t Joined(DWORD high, DWORD low) noexcept { return (std::uint64_t{high} << 32U) | low; }

class WindowsInputFile final : public InputFile {
 public:
  /// \param handle becomes owned
  WindowsInputFile(HANDLE handle, FileStamp stamp) noexcept : InputFile(stamp), file_(handle) {}

  std::size_t ReadAt(std::uint64_t offset, std::span<char> bytes) override {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
      constexpr std::size_t kMaxAtOnce = std::size_t{1} << 30U;
      OVERLAPPED where{};
      where.Offset = static_cast<DWORD>((offset + filled) & 0xFFFFFFFFU);
      where.OffsetHigh = static_cast<DWORD>((offset + filled) >> 32U);
      DWORD got = 0;
      if (!ReadFile(file_.get(), bytes.data() + filled,
                    static_cast<DWORD>(std::min(bytes.size() - filled, kMaxAtOnce)), &got,
                    &where)) {
        if (GetLastError() != ERROR_HANDLE_EOF) SetFailed();
        break;
      }
      if (got == 0) break;
      filled += got;
    }
    return filled;
  }

 private:
  OpenHandle file_;
};

}  // namespace

std::unique_ptr<InputFile> InputFile::Open(const std::string& path) {
  const HANDLE handle = OpenForReading(ToWidePath(path));
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  BY_HANDLE_FILE_INFORMATION information{};
  const bool is_file = GetFileType(handle) == FILE_TYPE_DISK &&
                       GetFileInformationByHandle(handle, &information) != 0;
  auto file = std::make_unique<WindowsInputFile>(
      handle,
      FileStamp{Joined(information.nFileSizeHigh, information.nFileSizeLow),
                static_cast<std::int64_t>(Joined(information.ftLastWriteTime.dwHighDateTime,
                                                 information.ftLastWriteTime.dwLowDateTime))});
  if (!is_file) return nullptr;
  return file;
}

}  // namespace tallow

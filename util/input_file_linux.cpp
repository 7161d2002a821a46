// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/input_file.h"
#include "util/open_file_linux.h"

namespace tallow {
namespace {

class LinuxInputFile final : public InputFile {
 public:
  /// \param descriptor becomes owned
  LinuxInputFile(int descriptor, FileStamp stamp) noexcept : InputFile(stamp), file_(descriptor) {}

  std::size_t ReadAt(std::uint64_t offset, std::span<char> bytes) override {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
      const ssize_t got = Retry([&] {
        return pread(file_.descriptor(), bytes.data() + filled, bytes.size() - filled,
                     static_cast<off_t>(offset + filled));
      });
      if (got < 0) SetFailed();
      if (got <= 0) break;
      filled += static_cast<std::size_t>(got);
    }
    return filled;
  }

 private:
  OpenFile file_;
};

}  // namespace

std::unique_ptr<InputFile> InputFile::Open(const std::string& path) {
  const int descriptor =
      Retry([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
  if (descriptor < 0) return nullptr;
  struct stat status {};
  const bool is_file =
      Retry([&] { return fstat(descriptor, &status); }) == 0 && S_ISREG(status.st_mode);
  constexpr std::int64_t kNanosecondsASecond = 1'000'000'000;
  auto file = std::make_unique<LinuxInputFile>(
      descriptor, FileStamp{static_cast<std::uint64_t>(status.st_size),
                            status.st_mtim.tv_sec * kNanosecondsASecond + status.st_mtim.tv_nsec});
  if (!is_file) return nullptr;
  return file;
}

}  // namespace tallow

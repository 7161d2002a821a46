// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace tallow {

/// Limits the size of files that this process writes, so that a write fails midway as on a full
/// disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &was_);
    rlimit limit = was_;
    limit.rlim_cur = bytes;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    old_handler_ = std::signal(SIGXFSZ, SIG_IGN);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &was_);
    std::signal(SIGXFSZ, old_handler_);
  }

 private:
  rlimit was_{};
  void (*old_handler_)(int);
};

}  // namespace tallow

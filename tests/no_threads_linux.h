// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <pthread.h>

namespace tallow {

/// Within its scope no thread can be created: the default stack size does not fit in the address
/// space.
class NoThreads {
 public:
  NoThreads() {
    pthread_attr_init(&before_);
    EXPECT_EQ(pthread_getattr_default_np(&before_), 0);
    pthread_attr_t none;
    pthread_attr_init(&none);
    EXPECT_EQ(pthread_attr_setstacksize(&none, std::size_t{1} << 46U), 0);
    EXPECT_EQ(pthread_setattr_default_np(&none), 0);
    pthread_attr_destroy(&none);
  }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;
  ~NoThreads() {
    EXPECT_EQ(pthread_setattr_default_np(&before_), 0);
    pthread_attr_destroy(&before_);
  }

 private:
  pthread_attr_t before_{};
};

}  // namespace tallow

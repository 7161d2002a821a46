// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <string>

#include "player/substitute/event_loop.h"

namespace tallow {
namespace {

TEST(WindowsEventLoop, DueTimersCallBackInTheOrderOfTheirTimes) {
  using std::chrono::microseconds;
  const std::unique_ptr<EventLoop> loop = NewEventLoop();
  std::string called;
  // All of them are due at once.
  const auto last = loop->AddTimer(microseconds(-1000), [&] { called += '4'; });
  const auto first = loop->AddTimer(microseconds(-4000), [&] { called += '1'; });
  auto destroyed = loop->AddTimer(microseconds(-2000), [&] { called += 'x'; });
  const auto second = loop->AddTimer(microseconds(-3000), [&] {
    called += '2';
    destroyed.reset();
  });
  loop->RunOnce(microseconds(0));
  EXPECT_EQ(called, "124");
  loop->RunOnce(microseconds(0));
  EXPECT_EQ(called, "124");
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <csignal>
#include <gtest/gtest.h>

#include <QTest>

#include "ui/support/end_signals.h"

namespace tallow {
namespace {

TEST(EndSignals, TheEventLoopHandlesEachSignalOnce) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    int ends = 0;
    const EndSignals signals_taken([&] { ++ends; });
    raise(signal);
    raise(signal);
    // The callback must run in the event loop, not in the signal handler.
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ends > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 1);
  }
}

TEST(EndSignals, TheDestructorRestoresTheSignalHandlers) {
  struct sigaction before {};
  struct sigaction after {};
  sigaction(SIGTERM, nullptr, &before);
  {
    const EndSignals signals_taken([] {});
  }
  sigaction(SIGTERM, nullptr, &after);
  EXPECT_EQ(after.sa_handler, before.sa_handler);
}

}  // namespace
}  // namespace tallow

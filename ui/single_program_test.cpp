// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/single_program.h"

#include <gtest/gtest.h>
#include <thread>

#include <QCoreApplication>
#include <QFile>
#include <QTest>

#include "app/data_paths.h"
#include "tests/temp_folder.h"
#include "util/file_system.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

/// Hands over from another thread, as another program would.
bool HandOverWhileRunning(const std::string& folder, const Texts& files) {
  bool taken = false;
  bool done = false;
  std::thread other([&] {
    taken = SingleProgram(folder).HandOver(files);
    done = true;
  });
  const bool ended = QTest::qWaitFor([&] { return done; }, 3 * SingleProgram::kMostWait);
  other.join();
  return ended && taken;
}

TEST(SingleProgramTest, ASecondOneHandsItsFilesOver) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.Lock());
  std::vector<Texts> wanted;
  QObject::connect(&first, &SingleProgram::FilesWanted,
                   [&](const Texts& files) { wanted.push_back(files); });
  const Texts files{"/m/a.juk", "/m/caf\xE9\n.juk"};
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), files));
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return wanted.size() == 2; }));
  EXPECT_EQ(wanted, (std::vector<Texts>{files, {}}));
}

TEST(SingleProgramTest, WhatOpensTheFilesMayTakeItsTime) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  bool was_asked = false;
  // As a message box does; the one that hands over has gone meanwhile.
  QObject::connect(&first, &SingleProgram::FilesWanted, [&] {
    QTest::qWait(200);
    was_asked = true;
  });
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {"/m/a.juk"}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return was_asked; }));
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {}));
}

TEST(SingleProgramTest, OtherFoldersHaveTheirOwn) {
  TempFolder one;
  TempFolder two;
  SingleProgram first(one.path());
  SingleProgram second(two.path());
  EXPECT_TRUE(first.Lock());
  EXPECT_TRUE(second.Lock());
}

TEST(SingleProgramTest, OneThatIsClosedIsNoObstacle) {
  TempFolder folder;
  {
    SingleProgram first(folder.path());
    ASSERT_TRUE(first.Lock());
  }
  SingleProgram second(folder.path());
  EXPECT_TRUE(second.Lock());
}

TEST(SingleProgramTest, ALockThatACrashHasLeftIsNoObstacle) {
  TempFolder folder;
  CreateFolders(SystemFolder(folder.path()));
  QFile lock(QString::fromStdString(SystemFolder(folder.path()) + "tallow.lock"));
  ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
  lock.close();
  SingleProgram program(folder.path());
  EXPECT_TRUE(program.Lock());
}

TEST(SingleProgramTest, OneThatDoesNotAnswerIsNotWaitedForLong) {
  TempFolder folder;
  SingleProgram running(folder.path());
  ASSERT_TRUE(running.Lock());
  // Its event loop does not come to it.
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.HandOver({"/m/a.juk"}));
}

TEST(SingleProgramTest, WhereNobodyListensNothingIsHandedOver) {
  TempFolder folder;
  EXPECT_FALSE(SingleProgram(folder.path()).HandOver({}));
}

}  // namespace
}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/single_program.h"

#include <gtest/gtest.h>
#include <thread>

#include <QCoreApplication>
#include <QFile>
#include <QLocalSocket>
#include <QTest>

#include "app/data_paths.h"
#include "tests/temp_folder.h"
#include "ui/support/hand_over_server.h"
#include "util/file_system.h"
#include "util/owner_file.h"

namespace tallow {
namespace {

using Texts = std::vector<std::string>;

/// Hands files over from another thread, as a second instance would.
bool HandOverWhileRunning(const std::string& folder, const Texts& files) {
  bool taken = false;
  bool done = false;
  std::thread other([&] {
    taken = SingleProgram(folder).HandOver(files);
    done = true;
  });
  const bool ended = QTest::qWaitFor([&] { return done; }, 3 * SingleProgram::kMaxWait);
  other.join();
  return ended && taken;
}

TEST(SingleProgramTest, ASecondInstanceHandsItsFilesOver) {
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

TEST(SingleProgramTest, OpeningTheFilesMayOutlastTheConnection) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  bool was_asked = false;
  // Runs an event loop, as a message box does; the second instance disconnects meanwhile.
  QObject::connect(&first, &SingleProgram::FilesWanted, [&] {
    QTest::qWait(200);
    was_asked = true;
  });
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {"/m/a.juk"}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return was_asked; }));
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {}));
}

TEST(SingleProgramTest, EachFolderHasItsOwnLock) {
  TempFolder one;
  TempFolder two;
  SingleProgram first(one.path());
  SingleProgram second(two.path());
  EXPECT_TRUE(first.Lock());
  EXPECT_TRUE(second.Lock());
}

TEST(SingleProgramTest, AClosedInstanceReleasesItsLock) {
  TempFolder folder;
  {
    SingleProgram first(folder.path());
    ASSERT_TRUE(first.Lock());
  }
  SingleProgram second(folder.path());
  EXPECT_TRUE(second.Lock());
}

TEST(SingleProgramTest, ALockLeftByACrashIsIgnored) {
  TempFolder folder;
  CreateFolders(SystemFolder(folder.path()));
  QFile lock(QString::fromStdString(SystemFolder(folder.path()) + "tallow.lock"));
  ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
  lock.close();
  SingleProgram program(folder.path());
  EXPECT_TRUE(program.Lock());
}

TEST(SingleProgramTest, HandingOverToAHungInstanceTimesOut) {
  TempFolder folder;
  SingleProgram running(folder.path());
  ASSERT_TRUE(running.Lock());
  // The event loop of the running instance does not run.
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.HandOver({"/m/a.juk"}));
}

TEST(SingleProgramTest, WithoutARunningInstanceHandingOverFails) {
  TempFolder folder;
  EXPECT_FALSE(SingleProgram(folder.path()).HandOver({}));
}

/// The path of the lock file is occupied by a folder, so FileLock fails.
class WithoutALock : public testing::Test {
 protected:
  WithoutALock() { folder.Folder("Grouping/System/tallow.lock"); }
  std::string OwnerPath() const { return SystemFolder(folder.path()) + "tallow.owner"; }

  TempFolder folder;
};

TEST_F(WithoutALock, ASecondInstanceHandsItsFilesOver) {
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.Lock());
  EXPECT_EQ(second.Problem(), "");
  bool wanted = false;
  QObject::connect(&first, &SingleProgram::FilesWanted, [&] { wanted = true; });
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {"/m/a.juk"}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return wanted; }));
}

TEST_F(WithoutALock, AClosedInstanceLeavesNoOwnerFile) {
  {
    SingleProgram first(folder.path());
    ASSERT_TRUE(first.Lock());
    EXPECT_TRUE(FileExists(OwnerPath()));
  }
  EXPECT_FALSE(FileExists(OwnerPath()));
  SingleProgram second(folder.path());
  EXPECT_TRUE(second.Lock());
}

TEST_F(WithoutALock, AnOwnerFileLeftByACrashIsIgnored) {
  ProcessName ended = ThisProcess();
  ++ended.started;
  folder.File("Grouping/System/tallow.owner", OwnerText(ended));
  SingleProgram program(folder.path());
  EXPECT_TRUE(program.Lock());
}

TEST_F(WithoutALock, AnOwnerOnAnotherComputerIsNamedWithWhatToDo) {
  ProcessName far = ThisProcess();
  far.host = "anna";
  far.process = 4711;
  folder.File("Grouping/System/tallow.owner", OwnerText(far));
  SingleProgram program(folder.path());
  EXPECT_FALSE(program.Lock());
  EXPECT_EQ(program.Problem(),
            "The song library cannot be locked, and another Tallow may be using it. According to " +
                OwnerPath() +
                ", process 4711 on the computer \"anna\" holds the lock; whether it still runs "
                "cannot be checked from this computer.\n\nClose Tallow wherever it uses this "
                "library. If no Tallow uses it, delete the file and start Tallow again.");
  RemoveFile(OwnerPath());
  EXPECT_TRUE(program.Lock());
  EXPECT_EQ(program.Problem(), "");
}

TEST_F(WithoutALock, AnUnreadableOwnerFileIsNamedWithWhatToDo) {
  folder.Folder("Grouping/System/tallow.owner");
  SingleProgram program(folder.path());
  EXPECT_FALSE(program.Lock());
  EXPECT_EQ(program.Problem(),
            "The song library cannot be locked, and another Tallow may be using it. The file " +
                OwnerPath() +
                ", which names the owner, cannot be read.\n\nClose Tallow wherever it uses this "
                "library. If no Tallow uses it, delete the file and start Tallow again.");
}

TEST(SingleProgramTest, WithTheLockTheOwnerFileOfAnotherComputerIsIgnored) {
  TempFolder folder;
  ProcessName far = ThisProcess();
  far.host = "anna";
  folder.File("Grouping/System/tallow.owner", OwnerText(far));
  SingleProgram program(folder.path());
  EXPECT_TRUE(program.Lock());
}

TEST(SingleProgramTest, ALockThatTurnsIntoAFolderStillLocks) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  const std::string lock = SystemFolder(folder.path()) + "tallow.lock";
  // Windows refuses to remove the file while it is in use.
  if (RemoveFile(lock)) CreateFolders(lock);
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.Lock());
}

TEST(SingleProgramTest, ManyIdleConnectionsBlockNoGenuineRequest) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  std::vector<std::unique_ptr<QLocalSocket>> idle;
  for (int k = 0; k < 5 * HandOverServer::kMaxConnections; ++k) {
    idle.push_back(std::make_unique<QLocalSocket>());
    idle.back()->connectToServer(first.ServerName());
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), {}));
  EXPECT_LE(first.findChild<HandOverServer*>()->Connections(), HandOverServer::kMaxConnections);
  // Each connection ends after kMaxTime.
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return first.findChild<HandOverServer*>()->Connections() == 0; }, 20000));
}

TEST(SingleProgramTest, TenThousandFilesAreHandedOver) {
  TempFolder folder;
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  Texts files;
  for (int k = 0; k < 10000; ++k)
    files.push_back("/m/" + std::string(100, 'x') + std::to_string(k));
  Texts wanted;
  QObject::connect(&first, &SingleProgram::FilesWanted, [&](const Texts& got) { wanted = got; });
  EXPECT_TRUE(HandOverWhileRunning(folder.path(), files));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !wanted.empty(); }));
  EXPECT_EQ(wanted, files);
}

}  // namespace
}  // namespace tallow

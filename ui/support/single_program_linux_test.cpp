// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged lock files, and hostile bytes on the hand-over socket.
#include <atomic>
#include <cerrno>
#include <cstring>
#include <deque>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <QCoreApplication>
#include <QTest>

#include "app/data_paths.h"
#include "tests/as_nobody_linux.h"
#include "tests/resident_memory_linux.h"
#include "tests/temp_folder.h"
#include "ui/support/hand_over_request.h"
#include "ui/support/single_program.h"
#include "util/open_file_linux.h"

namespace tallow {
namespace {

class TwoPrograms : public testing::TestWithParam<std::string> {
 protected:
  TwoPrograms() { CreateFolders(SystemFolder(folder.path())); }

  /// Replaces a file by something else, or removes its permissions.
  static void Break(const std::string& file, const std::string& how) {
    if (how == "mode 000") {
      if (!FileExists(file)) std::ofstream(file).put('x');
      EXPECT_EQ(chmod(file.c_str(), 0), 0);
      return;
    }
    RemoveFile(file);
    int result = 0;
    if (how == "folder") CreateFolders(file);
    if (how == "dangling link") result = symlink("no/where", file.c_str());
    if (how == "link loop") result = symlink(file.c_str(), file.c_str());
    if (how == "FIFO") result = mkfifo(file.c_str(), 0600);
    if (how == "device") result = symlink("/dev/zero", file.c_str());
    EXPECT_EQ(result, 0);
  }

  TempFolder folder;
  const std::string lock = SystemFolder(folder.path()) + "tallow.lock";
  const std::string owner = SystemFolder(folder.path()) + "tallow.owner";
};

/// Drops root's privileges for a test, because root ignores file modes.
class LessRights {
 public:
  explicit LessRights(const TempFolder& folder, mode_t mode = 0777) {
    for (const char* const inside : {"", "Grouping", "Grouping/System"})
      EXPECT_EQ(chmod((folder / inside).c_str(), mode), 0);
    nobody_.emplace();
  }

 private:
  std::optional<AsNobody> nobody_;
};

TEST_P(TwoPrograms, WithADamagedLockOnlyOneInstanceRunsAtATime) {
  Break(lock, GetParam());
  const LessRights rights(folder);
  {
    SingleProgram first(folder.path());
    ASSERT_TRUE(first.Lock());
    SingleProgram second(folder.path());
    EXPECT_FALSE(second.Lock());
    EXPECT_EQ(second.Problem(), "");
  }
  SingleProgram third(folder.path());
  EXPECT_TRUE(third.Lock());
}

TEST_P(TwoPrograms, DamagingTheLockOfARunningInstanceLetsNoOtherStart) {
  const LessRights rights(folder);
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  Break(lock, GetParam());
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.Lock());
  EXPECT_EQ(second.Problem(), "");
}

TEST_P(TwoPrograms, DamagingBothLocksOfARunningInstanceLetsNoOtherStart) {
  const LessRights rights(folder);
  SingleProgram first(folder.path());
  ASSERT_TRUE(first.Lock());
  Break(lock, GetParam());
  Break(owner, GetParam());
  SingleProgram second(folder.path());
  EXPECT_FALSE(second.Lock());
  EXPECT_EQ(second.Problem(), "");
}

INSTANTIATE_TEST_SUITE_P(Ways, TwoPrograms,
                         testing::Values("folder", "mode 000", "dangling link", "link loop", "FIFO",
                                         "device", "nothing"),
                         [](const auto& way) {
                           std::string name = way.param;
                           std::erase(name, ' ');
                           return name;
                         });

TEST(SingleProgramLinux, InAReadOnlyFolderAnyNumberOfInstancesMayStart) {
  TempFolder folder;
  CreateFolders(SystemFolder(folder.path()));
  const LessRights rights(folder, 0555);
  SingleProgram first(folder.path());
  EXPECT_TRUE(first.Lock());
  SingleProgram second(folder.path());
  EXPECT_TRUE(second.Lock());
}

/// A running instance to whose socket another thread writes.
class Flood : public testing::Test {
 protected:
  using Socket = std::unique_ptr<OpenFile>;

  Flood() { EXPECT_TRUE(running.Lock()); }

  Socket Connect() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = running.ServerName().toLocal8Bit();
    std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    auto connection = std::make_unique<OpenFile>(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(
        connect(connection->descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0)
        << std::strerror(errno);
    return connection;
  }
  static bool Send(const Socket& socket, std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t sent = send(socket->descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
  }
  /// Runs a function in another thread while the event loop of the running instance runs.
  static void WhileRunning(const std::function<void()>& act) {
    std::atomic<bool> done{false};
    std::thread other([&] {
      act();
      done = true;
    });
    // Not qWaitFor, because it sleeps between its checks and so slows down the event loop.
    while (!done) QCoreApplication::processEvents();
    other.join();
  }
  void ExpectAnAnswer() {
    bool taken = false;
    WhileRunning([&] { taken = SingleProgram(folder.path()).HandOver({"/m/a.juk"}); });
    EXPECT_TRUE(taken);
  }
  TempFolder folder;
  SingleProgram running{folder.path()};
};

TEST_F(Flood, AfterTenThousandConnectionsItAnswers) {
  WhileRunning([&] {
    std::deque<Socket> idle;
    for (int k = 0; k < 10'000; ++k) {
      idle.push_back(Connect());
      if (idle.size() > 100) idle.pop_front();
    }
    // The last hundred connections stay open meanwhile.
    EXPECT_TRUE(SingleProgram(folder.path()).HandOver({}));
  });
  ExpectAnAnswer();
}

TEST_F(Flood, AfterTenThousandHostileMessagesItAnswersAndHasNotGrown) {
  const long before = ResidentKib("self");
  std::vector<std::vector<std::string>> wanted;
  QObject::connect(&running, &SingleProgram::FilesWanted,
                   [&](const std::vector<std::string>& files) { wanted.push_back(files); });
  WhileRunning([&] {
    std::mt19937 random(1);
    std::deque<Socket> slow;
    const std::string request = HandOverRequest::Serialize({"/m/never.juk"});
    for (int k = 0; k < 10'000; ++k) {
      std::string bytes(1 + random() % 200, '\0');
      for (char& byte : bytes) byte = static_cast<char>(random());
      // A first byte other than 0 announces more files than the maximum.
      bytes[0] |= 1;
      const Socket socket = Connect();
      switch (k % 5) {
        case 0:
          Send(socket, bytes);
          break;
        case 1:
          Send(socket, std::string("\0\0\0\1\xFF\xFF\xFF\xFF", 8) + bytes);
          break;
        case 2:
          Send(socket, std::string("\xFF\xFF\xFF\xFF", 4) + bytes);
          break;
        case 3:
          Send(socket, request.substr(0, random() % request.size()));
          break;
        default:
          // Starts a long path and then sends single bytes of it.
          slow.push_back(Connect());
          Send(slow.back(), std::string("\0\0\0\1\0\0\x10\0", 8));
          for (const Socket& one : slow) Send(one, "x");
          if (slow.size() > 20) slow.pop_front();
      }
    }
  });
  EXPECT_TRUE(wanted.empty());
  ExpectAnAnswer();
  EXPECT_LT(ResidentKib("self") - before, 20'000 + kSanitizerKib);
}

TEST_F(Flood, LongRequestsThatNeverEndCostNoMoreThanTheirBound) {
  const long before = ResidentKib("self");
  WhileRunning([&] {
    const std::string bytes = HandOverRequest::Serialize({std::string(5 << 20, 'x'), "/last"});
    std::vector<Socket> sockets;
    for (int k = 0; k < 50; ++k) {
      sockets.push_back(Connect());
      Send(sockets.back(), std::string_view(bytes).substr(0, bytes.size() - 1));
    }
  });
  // Eight requests of 5 MiB, each in a growing string, and memory that the allocator retains.
  EXPECT_LT(ResidentKib("self") - before, 150'000 + kSanitizerKib);
  ExpectAnAnswer();
}

TEST_F(Flood, ItAnswersAgainAfterRunningOutOfDescriptors) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit few = before;
  few.rlim_cur = 200;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
  {
    const Socket waiting = Connect();
    std::vector<Socket> used;
    do used.push_back(std::make_unique<OpenFile>(open("/dev/null", O_RDONLY | O_CLOEXEC)));
    while (*used.back());
    // No descriptor is left for the waiting connection.
    for (int k = 0; k < 10; ++k) QCoreApplication::processEvents();
  }
  setrlimit(RLIMIT_NOFILE, &before);
  bool taken = false;
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        WhileRunning([&] { taken = SingleProgram(folder.path()).HandOver({}); });
        return taken;
      },
      20'000));
}

}  // namespace
}  // namespace tallow

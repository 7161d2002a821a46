// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_socket_linux.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "util/errors.h"
#include "util/runtime_folder_linux.h"

namespace tallow {
namespace {

/// Number of attempts to lock the start lock, and the pause between attempts, in ns.
constexpr int kLockTries = 100;
constexpr timespec kLockPause{0, 10'000'000};

/// \returns false, with errno set, when the path is too long for a socket address
bool FillAddress(const std::string& path, sockaddr_un& address) noexcept {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    return false;
  }
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return true;
}

int NewSocket() noexcept { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

}  // namespace

std::string PlayerSocketPath(const std::string& identifier) {
  return RuntimeFolder() + "player" + (identifier.empty() ? "" : "-" + identifier);
}

int ConnectToPlayer(const std::string& path) noexcept {
  sockaddr_un address;
  if (!FillAddress(path, address)) return -1;
  const int connection = NewSocket();
  if (connection < 0) return -1;
  if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      PeerIsSameUser(connection))
    return connection;
  const int error = errno;
  close(connection);
  errno = error;
  return -1;
}

bool PlayerRuns(const std::string& path) noexcept {
  return OpenFile(ConnectToPlayer(path)) || errno == EAGAIN;
}

int ListenAsPlayer(const std::string& path) noexcept {
  sockaddr_un address;
  if (!FillAddress(path, address)) return -1;
  const int listening = NewSocket();
  if (listening < 0) return -1;
  unlink(path.c_str());
  if (bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0 && listen(listening, SOMAXCONN) == 0)
    return listening;
  const int error = errno;
  close(listening);
  errno = error;
  return -1;
}

bool PeerIsSameUser(int connection) noexcept {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         size == sizeof peer && peer.uid == geteuid();
}

PlayerStartLock::PlayerStartLock(const std::string& socket_path)
    : file_(
          open((socket_path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)) {
  for (int tried = 0; file_ && tried < kLockTries; ++tried) {
    if (flock(file_.descriptor(), LOCK_EX | LOCK_NB) == 0) return;
    nanosleep(&kLockPause, nullptr);
  }
  throw FileError(
      socket_path + ".lock",
      file_ ? "another process has held the start lock for too long" : std::strerror(errno));
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/single_program.h"

#include <utility>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

#include "app/data_paths.h"
#include "ui/support/foreground.h"
#include "ui/support/hand_over_request.h"
#include "ui/support/hand_over_server.h"
#include "ui/support/local_server_folder.h"
#include "util/file_lock.h"
#include "util/file_system.h"
#include "util/owner_file.h"

namespace tallow {
namespace {

/// Pause between two attempts to hand over, in ms.
constexpr unsigned long kPause = 50;

/// Sends a request to the running instance.
/// \returns whether the running instance accepted the request; if false, it opens no file
bool Send(const QString& server, const QByteArray& request, const QDeadlineTimer& end) {
  const auto left = [&] { return static_cast<int>(end.remainingTime()); };
  QLocalSocket socket;
  socket.connectToServer(server);
  if (!socket.waitForConnected(left())) return false;
  AllowForeground(socket);
  socket.write(request);
  while (socket.bytesToWrite() > 0)
    if (!socket.waitForBytesWritten(left())) return false;
  char answer = 0;
  return socket.waitForReadyRead(left()) && socket.read(&answer, 1) == 1 &&
         answer == HandOverServer::kAccepted;
}

/// The message for an owner file when it is unknown whether its process still runs.
std::string ProblemOfOwner(const std::string& path) {
  std::string text = "The song library cannot be locked, and another Tallow may be using it. ";
  if (const auto owner = ReadOwner(path))
    text += "According to " + path + ", process " + std::to_string(owner->process) +
            " on the computer \"" + owner->host +
            "\" holds the lock; whether it still runs cannot be checked from this computer.";
  else
    text += "The file " + path + ", which names the owner, cannot be read.";
  return text +
         "\n\nClose Tallow wherever it uses this library. If no Tallow uses it, delete the file "
         "and start Tallow again.";
}

}  // namespace

SingleProgram::SingleProgram(const std::string& application_folder)
    : lock_path_(SystemFolder(application_folder) + "tallow.lock"),
      owner_path_(SystemFolder(application_folder) + "tallow.owner") {
  CreateFolders(SystemFolder(application_folder));
  // Different paths to the same folder must give the same server name.
  const QByteArray real =
      QByteArray::fromStdString(RealPathOfFolder(SystemFolder(application_folder)));
  const QByteArray digest = QCryptographicHash::hash(real, QCryptographicHash::Sha256).toHex();
  server_name_ =
      LocalServerFolder() + QStringLiteral("tallow-") + QString::fromLatin1(digest.left(16));
}

SingleProgram::~SingleProgram() {
  // While the server listens, a new instance would hand over to this one.
  delete server_;
}

bool SingleProgram::Lock() {
  problem_.clear();
  auto lock = std::make_unique<FileLock>();
  const FileLock::Answer locked = lock->Acquire(lock_path_);
  if (locked == FileLock::Answer::kInUse) return false;
  // The lock file may have been removed by others, so FileLock alone is not enough. While FileLock
  // holds the lock, the owner file of another computer is replaced: if a removable disk was
  // unplugged there, its owner file would otherwise lock out everybody.
  const bool has_lock = locked == FileLock::Answer::kHeld;
  auto owner = std::make_unique<OwnerFile>();
  const OwnerFile::Answer owned = owner->Acquire(
      owner_path_, has_lock ? OwnerFile::Unknown::kIsReplaced : OwnerFile::Unknown::kStays);
  if (owned == OwnerFile::Answer::kInUse) return false;
  // In a read-only folder neither lock can be created, and there is no library to damage.
  const bool is_writable = has_lock || owned != OwnerFile::Answer::kImpossible;
  if (is_writable && LocalServersArePrivate() && IsServerListening()) return false;
  if (owned == OwnerFile::Answer::kUnknown) {
    problem_ = ProblemOfOwner(owner_path_);
    return false;
  }
  lock_ = std::move(lock);
  owner_ = std::move(owner);
  server_ = new HandOverServer(this);
  connect(server_, &HandOverServer::FilesWanted, this, &SingleProgram::FilesWanted);
  server_->Listen(server_name_);
  return true;
}

bool SingleProgram::IsServerListening() const {
  QLocalSocket socket;
  socket.connectToServer(server_name_);
  // A busy server leaves the connection pending, so every state but UnconnectedState means that a
  // server listens.
  return socket.state() != QLocalSocket::UnconnectedState;
}

bool SingleProgram::HandOver(const std::vector<std::string>& files) {
  const QByteArray request = QByteArray::fromStdString(HandOverRequest::Serialize(files));
  const QDeadlineTimer end(kMaxWait);
  // The running instance may have locked a moment ago and not listen yet, or may be at its maximum
  // number of connections.
  for (;;) {
    if (Send(server_name_, request, end)) return true;
    if (end.hasExpired()) return false;
    QThread::msleep(kPause);
  }
}

}  // namespace tallow

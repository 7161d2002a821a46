// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/single_program.h"

#include <vector>

#include <QByteArrayList>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

#include "app/data_paths.h"
#include "ui/foreground.h"
#include "ui/local_server_folder.h"
#include "util/file_lock.h"
#include "util/file_system.h"

namespace tallow {
namespace {

constexpr char kTaken = '+';

/// More than any command line holds; what is longer is no request of ours.
constexpr qint64 kMostBytes = 8 << 20;

}  // namespace

SingleProgram::SingleProgram(const std::string& application_folder)
    : lock_path_(SystemFolder(application_folder) + "tallow.lock") {
  CreateFolders(SystemFolder(application_folder));
  // Different paths to one folder have to meet at one place.
  const QByteArray real =
      QByteArray::fromStdString(RealPathOfFolder(SystemFolder(application_folder)));
  const QByteArray digest = QCryptographicHash::hash(real, QCryptographicHash::Sha256).toHex();
  server_name_ =
      LocalServerFolder() + QStringLiteral("tallow-") + QString::fromLatin1(digest.left(16));
}

SingleProgram::~SingleProgram() = default;

bool SingleProgram::Lock() {
  lock_ = std::make_unique<FileLock>();
  // A folder that cannot be written has no lock, and no library to be lost either.
  if (lock_->Take(lock_path_) == FileLock::Answer::kInUse) return false;
  QLocalServer::removeServer(server_name_);
  server_ = new QLocalServer(this);
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  connect(server_, &QLocalServer::newConnection, this, &SingleProgram::Answer);
  // Where it cannot listen, a later program says that this one does not answer.
  server_->listen(server_name_);
  return true;
}

void SingleProgram::Answer() {
  QLocalSocket* const socket = server_->nextPendingConnection();
  connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  const auto read = [this, socket] {
    if (socket->bytesAvailable() > kMostBytes) return socket->abort();
    QDataStream stream(socket);
    stream.startTransaction();
    QByteArrayList files;
    stream >> files;
    if (!stream.commitTransaction()) {
      if (stream.status() == QDataStream::ReadCorruptData) socket->abort();
      return;
    }
    socket->write(&kTaken, 1);
    socket->flush();
    std::vector<std::string> paths;
    for (const QByteArray& file : files) paths.push_back(file.toStdString());
    // Not from here: what opens the files may ask the user, and the socket is gone before the answer.
    QMetaObject::invokeMethod(
        this, [this, paths] { emit FilesWanted(paths); }, Qt::QueuedConnection);
  };
  connect(socket, &QLocalSocket::readyRead, socket, read);
  // It may have written before this was connected.
  if (socket->bytesAvailable() > 0) read();
}

bool SingleProgram::HandOver(const std::vector<std::string>& files) {
  const QDeadlineTimer end(kMostWait);
  const auto left = [&] { return static_cast<int>(end.remainingTime()); };
  QLocalSocket socket;
  // The other one may have locked a moment ago and not listen yet.
  for (;;) {
    socket.connectToServer(server_name_);
    if (socket.waitForConnected(left())) break;
    if (end.hasExpired()) return false;
    constexpr unsigned long kPause = 50;  // ms
    QThread::msleep(kPause);
  }
  LetComeToFront(socket);
  QByteArrayList list;
  for (const std::string& file : files) list.append(QByteArray::fromStdString(file));
  QByteArray request;
  QDataStream stream(&request, QIODevice::WriteOnly);
  stream << list;
  socket.write(request);
  char answer = 0;
  return socket.waitForBytesWritten(left()) && socket.waitForReadyRead(left()) &&
         socket.read(&answer, 1) == 1 && answer == kTaken;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/hand_over_server.h"

#include <memory>

#include <QLocalSocket>

#include "ui/support/hand_over_request.h"

namespace tallow {
namespace {

/// Interval at which the server checks that it still listens, in ms.
constexpr int kListenCheckInterval = 1000;

/// Size of Qt's read buffer for each connection, in bytes.
constexpr qint64 kReadBuffer = 64 * 1024;

}  // namespace

HandOverServer::HandOverServer(QObject* parent) : QObject(parent) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &HandOverServer::Accept);
  // QLocalServer stops listening permanently when the process has run out of file descriptors.
  connect(&listen_check_, &QTimer::timeout, this, [this] {
    if (!server_.isListening()) ListenAgain();
  });
}

HandOverServer::~HandOverServer() {
  // Closing a socket emits disconnected(), which must not call this object once it is destroyed.
  for (QLocalSocket* const socket : connections_) socket->disconnect(this);
}

void HandOverServer::Listen(const QString& name) {
  name_ = name;
  ListenAgain();
  listen_check_.start(kListenCheckInterval);
}

void HandOverServer::ListenAgain() {
  QLocalServer::removeServer(name_);
  // If listening fails, a second instance reports that this instance does not answer.
  server_.listen(name_);
}

void HandOverServer::Accept() {
  while (QLocalSocket* const socket = server_.nextPendingConnection()) {
    if (connections_.size() >= kMaxConnections) Drop(*connections_.first());
    connections_.append(socket);
    Serve(*socket);
  }
}

void HandOverServer::Serve(QLocalSocket& socket) {
  socket.setReadBufferSize(kReadBuffer);
  connect(&socket, &QLocalSocket::disconnected, this, [this, &socket] { Drop(socket); });
  QTimer::singleShot(kMaxTime, &socket, [this, &socket] { Drop(socket); });
  const auto request = std::make_shared<HandOverRequest>();
  const auto read = [this, &socket, request] {
    while (socket.bytesAvailable() > 0) {
      const QByteArray bytes = socket.read(kReadBuffer);
      const auto state = request->Add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
      if (state == HandOverRequest::State::kBroken) return Drop(socket);
      if (state == HandOverRequest::State::kPartial) continue;
      // The request is complete: ignore any further bytes.
      disconnect(&socket, &QLocalSocket::readyRead, this, nullptr);
      socket.write(&kAccepted, 1);
      socket.flush();
      // Queued, because the receiver may open a message box, whose event loop can delete the
      // socket.
      QMetaObject::invokeMethod(
          this, [this, files = request->Files()] { emit FilesWanted(files); },
          Qt::QueuedConnection);
      return;
    }
  };
  connect(&socket, &QLocalSocket::readyRead, this, read);
  // The bytes may have arrived before readyRead was connected.
  read();
}

void HandOverServer::Drop(QLocalSocket& socket) {
  if (!connections_.removeOne(&socket)) return;
  socket.disconnect(this);
  socket.abort();
  socket.deleteLater();
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <QList>
#include <QLocalServer>
#include <QString>
#include <QTimer>

class QLocalSocket;

namespace tallow {

/// Receives the requests of second instances, see HandOverRequest, and answers each with one byte.
///
/// The number of connections and their duration are limited, so that a flood of connections neither
/// blocks a genuine request for long nor exhausts the file descriptors and the memory of the
/// process: a new connection evicts the oldest connection, and each connection is closed after
/// kMaxTime.
class HandOverServer : public QObject {
  Q_OBJECT

 public:
  /// The answer to an accepted request.
  static constexpr char kAccepted = '+';

  /// Maximum number of open connections. A genuine second instance opens one connection, for some
  /// milliseconds. Eight requests of the maximum size need about 100 MiB.
  static constexpr int kMaxConnections = 8;
  /// Maximum duration of a connection, in ms. A second instance waits no longer for its answer.
  static constexpr int kMaxTime = 2000;

  explicit HandOverServer(QObject* parent = nullptr);
  ~HandOverServer() override;

  /// Starts listening under a name. Removes the socket that a crashed instance has left under it.
  void Listen(const QString& name);

  /// The number of open connections.
  int Connections() const noexcept { return static_cast<int>(connections_.size()); }

 signals:
  void FilesWanted(const std::vector<std::string>& files);

 private:
  void ListenAgain();
  void Accept();
  void Serve(QLocalSocket& socket);
  void Drop(QLocalSocket& socket);

  QLocalServer server_;
  QString name_;
  QTimer listen_check_;
  QList<QLocalSocket*> connections_;  ///< oldest first
};

}  // namespace tallow

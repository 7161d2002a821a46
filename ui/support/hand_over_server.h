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

/// Takes what later programs hand over, see HandOverRequest, and answers each request with one byte.
///
/// Connections are few and short, so that no flood of them keeps an honest one out for long or uses up the
/// descriptors and the memory of the program: the oldest one makes room, and each ends after its time.
class HandOverServer : public QObject {
  Q_OBJECT

 public:
  /// The answer to a request that was taken.
  static constexpr char kTaken = '+';

  /// An honest program has one, for some milliseconds. Eight of the longest requests need some 100 MiB.
  static constexpr int kMaxConnections = 8;
  /// How long a connection may last, in ms; who hands over does not wait longer for its answer.
  static constexpr int kMaxTime = 2000;

  explicit HandOverServer(QObject* parent = nullptr);
  ~HandOverServer() override;

  /// Listens under a name from now on. What a program that is gone has left there is removed.
  void Listen(const QString& name);

  /// How many are connected.
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
  QTimer look_again_;
  QList<QLocalSocket*> connections_;  ///< the oldest one first
};

}  // namespace tallow

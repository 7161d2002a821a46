// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QObject>
#include <QString>

namespace tallow {

class FileLock;
class HandOverServer;
class OwnerFile;

/// Ensures that only one instance of Tallow uses an application folder: two instances would
/// overwrite each other's library.
///
/// The first instance locks the folder and listens on a local socket. A later instance hands over
/// the files on its command line. A lock that a crashed instance has left is ignored.
///
/// There are two locks, a FileLock and an OwnerFile, because each has its gaps. FileLock fails
/// where its path is occupied by something else or the file system does not support locks, and it
/// has no effect once its file was removed. OwnerFile cannot check whether a process on another
/// computer still runs. Where neither file can be created, the folder is read-only, and any number
/// of instances may start. Where local sockets are private to the user, an instance that listens
/// for this folder also holds the lock.
class SingleProgram : public QObject {
  Q_OBJECT

 public:
  /// Maximum time that the running instance has to answer, in ms.
  static constexpr int kMaxWait = 2000;

  /// \param application_folder ends in a separator
  explicit SingleProgram(const std::string& application_folder);
  ~SingleProgram() override;

  /// Tries to lock the folder for this instance.
  /// \returns false when another instance holds the lock or may hold it, see Problem
  bool Lock();

  /// Why Lock failed and what the user can do about it; empty when another instance certainly holds
  /// the lock.
  const std::string& Problem() const noexcept { return problem_; }

  /// The name under which the instance with the lock listens.
  const QString& ServerName() const noexcept { return server_name_; }

  /// Sends files to the running instance, which opens them and comes to the front.
  /// \param files absolute paths, in the encoding of the file system
  /// \returns false when the running instance does not answer in time
  bool HandOver(const std::vector<std::string>& files);

 signals:
  /// A later instance has handed over these files to open; the list may be empty.
  void FilesWanted(const std::vector<std::string>& files);

 private:
  bool IsServerListening() const;

  std::string lock_path_;
  std::string owner_path_;
  std::string problem_;
  QString server_name_;
  std::unique_ptr<FileLock> lock_;
  std::unique_ptr<OwnerFile> owner_;
  HandOverServer* server_ = nullptr;
};

}  // namespace tallow

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

/// Sees to it that only one Tallow works on an application folder: two would write over each other's library.
///
/// The first one locks the folder and listens. A later one hands over the files that it was to open. A lock
/// whose program is gone, after a crash, is no obstacle.
///
/// There are two locks, a FileLock and an OwnerFile, since each has its gaps: the first cannot be had where its
/// name is taken by something else or the file system knows no locks, and it locks nothing any more once its
/// file was removed; the second cannot tell whether a program on another computer still runs. Where neither can be
/// made, nothing can be written, and everybody may start. Where sockets are the user's own, a program that listens
/// for this folder counts as a lock as well.
class SingleProgram : public QObject {
  Q_OBJECT

 public:
  /// How long the running program has to answer, in ms.
  static constexpr int kMaxWait = 2000;

  /// \param application_folder ends in a separator
  explicit SingleProgram(const std::string& application_folder);
  ~SingleProgram() override;

  /// Tries to be the one program of the folder.
  /// \returns false when another one is, or may be, see Problem
  bool Lock();

  /// Why Lock failed, and what to do, in words for the user; empty when another one works on the folder for sure.
  const std::string& Problem() const noexcept { return problem_; }

  /// Where the program that has the lock listens.
  const QString& ServerName() const noexcept { return server_name_; }

  /// Hands files to the running program, which opens them and comes to the front.
  /// \param files absolute paths, in the bytes of the disk
  /// \returns false when it does not answer in time
  bool HandOver(const std::vector<std::string>& files);

 signals:
  /// A later program wants these files opened, maybe none.
  void FilesWanted(const std::vector<std::string>& files);

 private:
  bool SomebodyListens() const;

  std::string lock_path_;
  std::string owner_path_;
  std::string problem_;
  QString server_name_;
  std::unique_ptr<FileLock> lock_;
  std::unique_ptr<OwnerFile> owner_;
  HandOverServer* server_ = nullptr;
};

}  // namespace tallow

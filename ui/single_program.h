// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QObject>
#include <QString>

class QLocalServer;

namespace tallow {

class FileLock;

/// Sees to it that only one Tallow works on an application folder: two would write over each other's library.
///
/// The first one locks the folder and listens. A later one hands over the files that it was to open. A lock
/// whose program is gone, after a crash, is no obstacle.
class SingleProgram : public QObject {
  Q_OBJECT

 public:
  /// How long the running program has to answer, in ms.
  static constexpr int kMostWait = 2000;

  /// \param application_folder ends in a separator
  explicit SingleProgram(const std::string& application_folder);
  ~SingleProgram() override;

  /// Tries to be the one program of the folder.
  /// \returns false when another one is
  bool Lock();

  /// Hands files to the running program, which opens them and comes to the front.
  /// \param files absolute paths, in the bytes of the disk
  /// \returns false when it does not answer in time
  bool HandOver(const std::vector<std::string>& files);

 signals:
  /// A later program wants these files opened, maybe none.
  void FilesWanted(const std::vector<std::string>& files);

 private:
  void Answer();

  std::string lock_path_;
  QString server_name_;
  std::unique_ptr<FileLock> lock_;
  QLocalServer* server_ = nullptr;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include "ui/support/file_uri.h"
#include "ui/support/qt_path.h"
#include "ui/support/show_in_file_manager.h"

namespace tallow {
namespace {

/// How long the file manager may take to start, in ms.
constexpr int kMaxWait = 10 * 1000;

void ShowFolder(const QString& path, const std::function<void()>& failed) {
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).path()))) failed();
}

}  // namespace

void ShowInFileManager(const std::string& path, const std::function<void()>& failed) {
  const QString in_qt = QtPath(path);
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"),
      QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  const QByteArray uri =
      "file://" + QByteArray::fromStdString(PathInFileUri(path)).toPercentEncoding("/:");
  // The second argument is the identifier of the start, which there is none of.
  call << QStringList{QString::fromLatin1(uri)} << QString();
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return ShowFolder(in_qt, failed);
  auto* const answer =
      new QDBusPendingCallWatcher(bus.asyncCall(call, kMaxWait), QCoreApplication::instance());
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, in_qt, failed] {
    if (answer->isError()) ShowFolder(in_qt, failed);
    answer->deleteLater();
  });
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
// The file manager of the desktop, played by a service on a bus of this program's own. Qt connects
// to the session bus once, so these tests are a program of their own.
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "ui/support/show_in_file_manager.h"

namespace tallow {

/// Records the folders that Qt would open.
class OpenedFolders : public QObject {
  Q_OBJECT

 public:
  OpenedFolders() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Open"); }
  ~OpenedFolders() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

  QStringList folders;

 public slots:
  void Open(const QUrl& url) { folders.append(url.toLocalFile()); }
};

namespace {

const QString kService = QStringLiteral("org.freedesktop.FileManager1");
const QString kObject = QStringLiteral("/org/freedesktop/FileManager1");

/// A bus without services that are started on demand: a file manager of this computer must not
/// answer.
constexpr const char* kBus = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

/// Records the calls of a file manager.
class FileManager : public QDBusVirtualObject {
 public:
  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.interface() != kService || message.member() != QStringLiteral("ShowItems"))
      return false;
    uris += message.arguments().value(0).toStringList();
    signature = message.signature();
    return bus.send(fails ? message.createErrorReply(QDBusError::Failed, QStringLiteral("no"))
                          : message.createReply());
  }

  QStringList uris;
  QString signature;
  bool fails = false;
};

class ShowFile : public testing::Test {
 protected:
  ShowFile() {
    EXPECT_TRUE(bus.registerVirtualObject(kObject, &manager));
    EXPECT_TRUE(bus.registerService(kService));
  }
  ~ShowFile() override { QDBusConnection::disconnectFromBus(QStringLiteral("manager")); }

  void Show(const std::string& path) {
    ShowInFileManager(path, [this] { ++failures; });
  }
  bool Becomes(const std::function<bool()>& condition) { return QTest::qWaitFor(condition); }

  FileManager manager;
  OpenedFolders opened;
  QDBusConnection bus = QDBusConnection::connectToBus(
      qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("manager"));
  int failures = 0;
};

TEST_F(ShowFile, TheFileManagerGetsTheAddressOfTheFile) {
  Show("/music/one.mp3");
  EXPECT_TRUE(Becomes([this] { return !manager.uris.isEmpty(); }));
  EXPECT_EQ(manager.uris, QStringList{"file:///music/one.mp3"});
  EXPECT_EQ(manager.signature, "ass");
  EXPECT_TRUE(opened.folders.isEmpty());
  EXPECT_EQ(failures, 0);
}

TEST_F(ShowFile, EveryByteOfANameIsKept) {
  Show("/my music/100% #1?;&=+.mp3");
  Show("/my music/caf\xE9 \xC3\xA9.mp3");
  EXPECT_TRUE(Becomes([this] { return manager.uris.size() == 2; }));
  EXPECT_EQ(manager.uris, (QStringList{"file:///my%20music/100%25%20%231%3F%3B%26%3D%2B.mp3",
                                       "file:///my%20music/caf%E9%20%C3%A9.mp3"}));
}

TEST_F(ShowFile, AFileManagerThatRefusesOpensTheFolder) {
  manager.fails = true;
  Show("/my music/100% #1.mp3");
  EXPECT_TRUE(Becomes([this] { return !opened.folders.isEmpty(); }));
  EXPECT_EQ(opened.folders, QStringList{"/my music"});
  EXPECT_EQ(failures, 0);
}

TEST_F(ShowFile, WithoutAFileManagerOnTheBusTheFolderIsOpened) {
  EXPECT_TRUE(bus.unregisterService(kService));
  Show("/my music/100% #1.mp3");
  EXPECT_TRUE(Becomes([this] { return !opened.folders.isEmpty(); }));
  EXPECT_EQ(opened.folders, QStringList{"/my music"});
  EXPECT_TRUE(manager.uris.isEmpty());
}

/// A bus that runs until the program ends.
class Bus {
 public:
  /// Starts the bus and makes it that of the session.
  bool Start() {
    QFile file(folder_.filePath(QStringLiteral("bus.conf")));
    if (!file.open(QIODevice::WriteOnly)) return false;
    file.write(QString::fromLatin1(kBus).arg(folder_.path()).toUtf8());
    file.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + file.fileName(), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
    if (!daemon_.waitForStarted() || !daemon_.waitForReadyRead()) return false;
    return qputenv("DBUS_SESSION_BUS_ADDRESS", daemon_.readLine().trimmed());
  }
  ~Bus() {
    daemon_.kill();
    daemon_.waitForFinished();
  }

 private:
  QTemporaryDir folder_;
  QProcess daemon_;
};

}  // namespace
}  // namespace tallow

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  tallow::Bus bus;
  if (!bus.Start()) {
    qWarning("dbus-daemon could not be started");
    return 1;
  }
  const QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

#include "show_in_file_manager_linux_test.moc"

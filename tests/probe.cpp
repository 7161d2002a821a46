// SPDX-License-Identifier: GPL-3.0-or-later
#include <optional>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QGenericPlugin>
#include <QHeaderView>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QTreeView>

namespace {

/// Runs inside the program under test: waits for the frame window, uses it as a user would, and
/// writes what it shows to the file named by TALLOW_PROBE_REPORT, one item per line. Then ends the
/// program.
///
/// If TALLOW_PROBE_BAR names a file, it only watches: the file always has the text of the bar that
/// tells what the classic style leaves out, or is empty while there is no bar.
class Probe : public QObject {
 public:
  Probe() {
    timer_.setInterval(50);
    connect(&timer_, &QTimer::timeout, this, &Probe::Look);
    timer_.start();
  }

 private:
  template <typename Widget>
  static Widget* Find(const QWidget* in, const char* name) {
    return in->findChild<Widget*>(QLatin1String(name));
  }

  void Look() {
    QMainWindow* frame = nullptr;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == QLatin1String("frmSplash")) return;
      if (window->objectName() == QLatin1String("frmMDIForm1") && window->isVisible())
        frame = qobject_cast<QMainWindow*>(window);
    }
    if (frame == nullptr) return;
    if (!bar_file_.isEmpty()) return ReportBar(*frame);
    auto* const tree = Find<QTreeView>(frame, "TreeView");
    auto* const list = Find<QTableView>(frame, "ListView");
    if (tree == nullptr || list == nullptr || list->model()->rowCount() == 0) return;
    if (!reported_) {
      reported_ = true;
      Report(*frame, *tree, *list);
      Play(*list);
    }
    if (HearsASong(*frame)) {
      timer_.stop();
      AnswerNoAndReport();
      frame->close();
      QApplication::exit(0);
    }
  }

  /// Answers No to the question about the unsaved sample jukebox, and reports the question's text.
  static void AnswerNoAndReport() {
    auto* const wait = new QTimer(qApp);
    QObject::connect(wait, &QTimer::timeout, wait, [wait] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      wait->stop();
      QFile file(qEnvironmentVariable("TALLOW_PROBE_REPORT"));
      if (file.open(QIODevice::Append | QIODevice::Text))
        QTextStream(&file) << "asked: " << box->text() << "\n";
      box->button(QMessageBox::No)->click();
    });
    wait->start(50);
  }

  /// Double-clicks the first song.
  static void Play(const QTableView& list) {
    const QPoint place = list.visualRect(list.model()->index(0, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  }

  /// Whether the panel shows that a song is playing and its position advances; if so, reports it.
  static bool HearsASong(QMainWindow& frame) {
    auto* const panel = Find<QWidget>(&frame, "frmMainWinamp");
    if (panel == nullptr || Find<QLabel>(panel, "lblStatus")->text() != QLatin1String("PLAYING") ||
        Find<QScrollBar>(panel, "hscrlTrackPos")->value() == 0)
      return false;
    QFile file(qEnvironmentVariable("TALLOW_PROBE_REPORT"));
    if (!file.open(QIODevice::Append | QIODevice::Text)) return true;
    QTextStream out(&file);
    out << "panel: " << panel->windowTitle() << "\n";
    out << "seconds: " << Find<QScrollBar>(panel, "hscrlTrackPos")->maximum() << "\n";
    frame.grab().save(qEnvironmentVariable("TALLOW_PROBE_PLAYING_PICTURE"));
    return true;
  }

  void Report(QMainWindow& frame, QTreeView& tree, QTableView& list) {
    QFile file(qEnvironmentVariable("TALLOW_PROBE_REPORT"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return;
    QTextStream out(&file);
    out << "window: " << Find<QWidget>(&frame, "frmMain")->windowTitle() << "\n";
    out << "header: " << Header(list) << "\n";
    out << "shown: " << tree.currentIndex().data().toString() << " " << list.model()->rowCount()
        << "\n";
    frame.grab().save(qEnvironmentVariable("TALLOW_PROBE_PICTURE"));
    for (int row = 0; row < tree.model()->rowCount(); ++row)
      out << "folder: " << tree.model()->index(row, 0).data().toString() << " "
          << tree.model()->rowCount(tree.model()->index(row, 0)) << "\n";
    QTest::mouseClick(list.horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
    out << "sorted: " << Header(list) << "\n";
    out << "first: " << list.model()->index(0, 0).data().toString() << "\n";
    const QModelIndex artist = tree.model()->index(1, 0);
    for (int row = 0; row < tree.model()->rowCount(artist); ++row) {
      const QModelIndex index = tree.model()->index(row, 0, artist);
      tree.scrollTo(index);
      QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(index).center());
      out << "artist: " << index.data().toString() << " " << list.model()->rowCount() << "\n";
    }
  }

  void ReportBar(const QMainWindow& frame) {
    const auto* const label = Find<QLabel>(&frame, "lblStyleBar");
    const QString text = label->isVisible() ? label->text() : QString();
    if (std::exchange(bar_text_, text) == text) return;
    QFile file(bar_file_);
    if (file.open(QIODevice::WriteOnly)) file.write(text.toUtf8());
  }

  static QString Header(const QTableView& list) {
    return list.model()->headerData(0, Qt::Horizontal).toString();
  }

  QTimer timer_;
  bool reported_ = false;
  const QString bar_file_ = qEnvironmentVariable("TALLOW_PROBE_BAR");
  std::optional<QString> bar_text_;  ///< reported last
};

class ProbePlugin : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

 public:
  QObject* create(const QString& /*name*/, const QString& /*options*/) override {
    return new Probe;
  }
};

}  // namespace

#include "probe.moc"

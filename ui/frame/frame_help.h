// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

namespace tallow {

class Tallow;
class frmHelp;
class frmTip;

/// The help of the frame window: the help file or the manual, also by the help key in any window,
/// the tip window and the about window.
class FrameHelp : public QObject {
  Q_OBJECT

 public:
  /// \param frame, tallow have to outlive this object
  FrameHelp(QWidget& frame, Tallow& tallow);
  ~FrameHelp() override;

  /// Sets the function that opens the help file, in place of OpenHelpFile.
  void OnOpenHelp(std::function<bool(const std::string& path)> open) {
    open_help_ = std::move(open);
  }

  /// Opens the help file or, if it cannot be opened, a page of the manual.
  /// \param page the empty text for the first page
  void ShowHelp(const QString& page);
  /// Closes the manual and the tip of the start, if they are open.
  void Close();

  /// Shows the tip window until the user closes it.
  void ShowTip();
  /// Shows the tip window unless tips are turned off. The frame window stays usable meanwhile, and
  /// keeps the keyboard focus.
  void ShowTipOfStart();
  void ShowAbout();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowManual(const QString& page);
  std::unique_ptr<frmTip> MakeTip(bool asked_for);

  QWidget& frame_;
  Tallow& tallow_;
  std::function<bool(const std::string& path)> open_help_;
  QPointer<frmHelp> manual_;
  QPointer<frmTip> tip_;  ///< of the start
};

}  // namespace tallow

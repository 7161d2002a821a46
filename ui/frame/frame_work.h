// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <QElapsedTimer>
#include <QString>

#include "app/long_work.h"

namespace tallow {

class Tallow;
class frmSearching;

/// Progress of long work under the frame window. Work that finishes quickly shows nothing.
class FrameWork : public LongWork {
 public:
  /// \param tallow the Cancel button sets its SearchCancelled; has to outlive this object
  /// \param text   names the work in the progress window
  /// \param enable enables and disables the frame window
  FrameWork(Tallow& tallow, QString text, std::function<void(bool)> enable);
  FrameWork(const FrameWork&) = delete;
  FrameWork& operator=(const FrameWork&) = delete;
  ~FrameWork() override;

  bool GoOn(const std::function<std::string()>& line) override;

 private:
  Tallow& tallow_;
  const QString text_;
  const std::function<void(bool)> enable_;
  QElapsedTimer begun_;
  QElapsedTimer since_events_;
  bool is_disabled_ = false;
  std::unique_ptr<frmSearching> window_;  ///< created when the work takes long
};

}  // namespace tallow

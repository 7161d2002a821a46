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

/// Work that may take long, under the frame window. Nothing is to be seen of work that is done at once.
class FrameWork : public LongWork {
 public:
  /// \param tallow its SearchCancelled is what the Cancel button sets; has to outlive this
  /// \param text   what is being done
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
  std::unique_ptr<frmSearching> window_;  ///< once it has taken a while
};

}  // namespace tallow

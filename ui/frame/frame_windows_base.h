// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/window_interfaces.h"
#include "ui/frame/busy_frame.h"
#include "ui/frame/frame_messages.h"
#include "ui/frame/jukebox_area.h"

namespace tallow {

/// Base class of the frame window's implementations of the command interfaces: the functions that
/// all of these interfaces have in common.
///
/// \tparam Windows the interface of a command, derived from JukeboxWindows
template <typename Windows>
class FrameWindows : public Windows {
 public:
  /// The parameters have to outlive this object.
  FrameWindows(JukeboxArea& jukeboxes, FrameMessages& messages, BusyFrame& busy)
      : jukeboxes_(jukeboxes), messages_(messages), busy_(busy) {}

  MessageAnswer Show(const Message& message) override { return messages_.Show(message); }
  void Notice(const std::vector<std::string>& lines) override { messages_.Notice(lines); }
  std::span<Jukebox* const> OpenJukeboxes() override {
    open_ = jukeboxes_.Open();
    return open_;
  }
  std::unique_ptr<LongWork> BeginWork(std::string_view text) override {
    return busy_.BeginWork(text);
  }

 protected:
  JukeboxArea& jukeboxes_;
  FrameMessages& messages_;
  BusyFrame& busy_;

 private:
  std::vector<Jukebox*> open_;  ///< what OpenJukeboxes() returned last
};

}  // namespace tallow

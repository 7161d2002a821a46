// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mpv/client.h>
#include <string>

#include "player/substitute/event_source.h"
#include "util/open_file_linux.h"

namespace tallow {

/// The destination of the sound.
struct SoundOutput {
  std::string file;     ///< a WAV file, written as fast as possible; empty for a device
  bool silent = false;  ///< no output, in real time
};

/// libmpv, configured to play songs only, as part of an event loop.
///
/// No call waits for libmpv: commands take effect in the order of the calls, and results arrive as
/// events.
class SoundEngine {
 public:
  /// \param take callback for each event, called from the event loop
  /// \throws std::runtime_error when libmpv cannot be set up
  SoundEngine(sd_event* loop, const SoundOutput& output,
              std::function<void(const mpv_event&)> take);
  SoundEngine(const SoundEngine&) = delete;
  SoundEngine& operator=(const SoundEngine&) = delete;
  ~SoundEngine();

  /// \returns the number of the reply that will arrive; 0 when mpv's command queue is full
  std::uint64_t Command(std::initializer_list<const char*> words);
  void Pause(bool paused);
  /// \param volume 0 to 255, proportional to the amplitude; 255 is the original volume
  void SetVolume(std::int32_t volume);
  /// \param balance -127 (only left) to 127 (only right)
  void SetBalance(std::int32_t balance);
  /// Requests the tags and then the length of the open track. The reply for the length has the
  /// number kLengthReply and arrives even when the length is unknown.
  void AskForTrack();

  static constexpr std::uint64_t kLengthReply = ~std::uint64_t{0};

 private:
  struct DestroyMpv {
    void operator()(mpv_handle* mpv) const noexcept { mpv_terminate_destroy(mpv); }
  };

  void TakeEvents();
  void BeforeLoading(std::uint64_t hook);
  void SendBalance();

  OpenFile wake_up_;  ///< eventfd, readable when there are events; written by mpv's threads
  std::unique_ptr<mpv_handle, DestroyMpv> mpv_;
  EventSource events_;
  std::function<void(const mpv_event&)> take_;
  std::uint64_t last_reply_ = 0;
  std::int32_t balance_ = 0;
  std::int32_t balance_of_new_tracks_ = 0;
};

}  // namespace tallow

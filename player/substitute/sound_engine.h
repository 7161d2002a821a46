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

/// Where the sound goes.
struct SoundOutput {
  std::string file;     ///< a WAV file, written as fast as it goes; empty for a device
  bool silent = false;  ///< nowhere, in real time
};

/// libmpv, set up to play songs and nothing else, as part of an event loop.
///
/// Nothing here waits for libmpv: commands take effect in the order they are given, and what comes of
/// them comes as events.
class SoundEngine {
 public:
  /// \param take called with each event, from the loop
  /// \throws std::runtime_error when there can be no sound at all
  SoundEngine(sd_event* loop, const SoundOutput& output,
              std::function<void(const mpv_event&)> take);
  SoundEngine(const SoundEngine&) = delete;
  SoundEngine& operator=(const SoundEngine&) = delete;
  ~SoundEngine();

  /// \returns the number of the reply that will come; 0 when there is no room for the command
  std::uint64_t Command(std::initializer_list<const char*> words);
  void Pause(bool paused);
  /// \param volume 0 to 255, in proportion to the amplitude; 255 leaves the sound as it is
  void SetVolume(std::int32_t volume);
  /// \param balance -127, only left, to 127, only right
  void SetBalance(std::int32_t balance);
  /// Asks for the tags, then for the length of the track that is open. The reply about the length has
  /// the number kLengthReply, also when there is none.
  void AskForTrack();

  static constexpr std::uint64_t kLengthReply = ~std::uint64_t{0};

 private:
  struct DestroyMpv {
    void operator()(mpv_handle* mpv) const noexcept { mpv_terminate_destroy(mpv); }
  };

  void TakeEvents();
  void BeforeLoading(std::uint64_t hook);
  void SendBalance();

  OpenFile wake_up_;  ///< readable when there are events; written to by mpv's threads
  std::unique_ptr<mpv_handle, DestroyMpv> mpv_;
  EventSource events_;
  std::function<void(const mpv_event&)> take_;
  std::uint64_t last_reply_ = 0;
  std::int32_t balance_ = 0;
  std::int32_t balance_of_new_tracks_ = 0;
};

}  // namespace tallow

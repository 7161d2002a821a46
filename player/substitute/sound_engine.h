// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <mpv/client.h>
#include <string>

#include "player/substitute/event_loop.h"
#include "player/substitute/playback_engine.h"

namespace tallow {

/// The destination of the sound.
struct SoundOutput {
  std::string file;     ///< a WAV file, written as fast as possible; empty for a device
  bool silent = false;  ///< no output, in real time
};

/// libmpv, configured to play songs only, as part of an event loop. Ends the loop if libmpv ends.
class SoundEngine final : public PlaybackEngine {
 public:
  /// \throws std::runtime_error when libmpv cannot be set up
  SoundEngine(EventLoop& loop, const SoundOutput& output);
  SoundEngine(const SoundEngine&) = delete;
  SoundEngine& operator=(const SoundEngine&) = delete;
  ~SoundEngine() override;

  void SetListener(PlaybackListener& listener) override { listener_ = &listener; }
  CommandNumber Load(const std::string& path) override;
  CommandNumber Append(const std::string& path) override;
  void RemoveFirst() override;
  void RemoveFollowing() override;
  void Stop() override;
  CommandNumber Seek(double seconds) override;
  void Pause(bool paused) override;
  void SetVolume(std::int32_t volume) override;
  void SetBalance(std::int32_t balance) override;
  void RequestProperties() override;

 private:
  struct DestroyMpv {
    void operator()(mpv_handle* mpv) const noexcept { mpv_terminate_destroy(mpv); }
  };

  void DispatchEvents();
  void DispatchEvent(const mpv_event& event);
  CommandNumber Command(std::initializer_list<const char*> words);
  void BeforeLoading(std::uint64_t hook);
  void SendBalance();

  EventLoop& loop_;
  std::unique_ptr<WakeUp> wake_up_;  ///< requested by mpv's threads when there are events
  std::unique_ptr<mpv_handle, DestroyMpv> mpv_;
  PlaybackListener* listener_ = nullptr;
  CommandNumber last_command_ = 0;
  std::int32_t balance_ = 0;
  std::int32_t balance_of_new_tracks_ = 0;
};

}  // namespace tallow

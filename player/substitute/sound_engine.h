// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mpv/client.h>
#include <string>
#include <vector>

#include "player/substitute/engine_path.h"
#include "player/substitute/event_loop.h"
#include "player/substitute/playback_engine.h"

namespace tallow {

/// The destination of the sound.
struct SoundOutput {
  std::string file;     ///< a WAV file, written as fast as possible; empty for a device
  bool silent = false;  ///< no output, in real time
  double pace = 0;      ///< the file is written at this multiple of real time; 0: no limit
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
  CommandNumber RemoveFollowing() override;
  void RemoveAt(std::size_t index) override;
  void MoveBehindFirst(std::size_t index) override;
  void Redirect(const std::string& path) override { redirect_ = EnginePath(path); }
  void Stop() override;
  CommandNumber Seek(double seconds) override;
  void Pause(bool paused) override;
  void SetVolume(std::int32_t volume) override;
  void SetBalance(std::int32_t balance) override;
  void SetGain(ReplayGain mode) override;
  void SetDevice(const std::string& name) override;
  void RequestDevices(std::function<void(std::vector<SoundDevice>)> callback) override;
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
  void SendVolume(double percent);
  void AnswerDevices(const mpv_event& reply);
  /// The filter chain for tracks that are loaded later.
  std::string Filters() const;

  EventLoop& loop_;
  std::unique_ptr<WakeUp> wake_up_;  ///< requested by mpv's threads when there are events
  std::unique_ptr<mpv_handle, DestroyMpv> mpv_;
  PlaybackListener* listener_ = nullptr;
  CommandNumber last_command_ = 0;
  double percent_ = 100;  ///< the volume, as mpv scales it
  std::int32_t balance_ = 0;
  std::int32_t balance_of_new_tracks_ = 0;
  double pace_;           ///< see SoundOutput
  std::string redirect_;  ///< the file to load in place of the entry that starts; empty for none
  std::vector<std::function<void(std::vector<SoundDevice>)>> waiting_for_devices_;
};

}  // namespace tallow

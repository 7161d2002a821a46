// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/search/place_states.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include "util/detached_threads.h"
#include "util/file_system.h"

namespace tallow {

/// What the threads share with the object, which may be destroyed before they end.
struct PlaceStates::Shared {
  struct Place {
    std::chrono::steady_clock::time_point asked;
    bool is_waiting = false;  ///< for an answer
    std::optional<bool> is_there;
  };

  std::mutex mutex;
  std::map<std::string, Place> places;
  DetachedThreads threads{mutex};
};

PlaceStates::PlaceStates(std::chrono::milliseconds max_wait)
    : max_wait_(max_wait), shared_(std::make_shared<Shared>()) {}

PlaceStates::~PlaceStates() = default;

void PlaceStates::Ask(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    {
      const std::lock_guard lock(shared_->mutex);
      Shared::Place& place = shared_->places[folder];
      if (std::exchange(place.is_waiting, true)) continue;
      place.asked = std::chrono::steady_clock::now();
    }
    const bool is_started = shared_->threads.Start([shared = shared_, folder] {
      const bool is_there = StateOfFolder(folder) != FolderState::kNotThere;
      const std::lock_guard lock(shared->mutex);
      Shared::Place& place = shared->places[folder];
      place.is_there = is_there;
      place.is_waiting = false;
      shared->threads.RemoveLocked();
    });
    if (is_started) continue;
    // Without a thread the place cannot be asked for safely; the next Ask tries again.
    const std::lock_guard lock(shared_->mutex);
    shared_->places[folder].is_waiting = false;
  }
}

void PlaceStates::Clear() {
  const std::lock_guard lock(shared_->mutex);
  std::erase_if(shared_->places, [](const auto& place) { return !place.second.is_waiting; });
  for (auto& [folder, place] : shared_->places) place.is_there.reset();
}

std::optional<bool> PlaceStates::IsThere(const std::string& folder) const {
  const std::lock_guard lock(shared_->mutex);
  const auto found = shared_->places.find(folder);
  if (found == shared_->places.end()) return std::nullopt;
  const Shared::Place& place = found->second;
  const bool is_given_up =
      place.is_waiting && std::chrono::steady_clock::now() - place.asked >= max_wait_;
  if (is_given_up) return false;
  return place.is_there;
}

bool PlaceStates::IsWaiting() const {
  const auto now = std::chrono::steady_clock::now();
  const std::lock_guard lock(shared_->mutex);
  return std::any_of(shared_->places.begin(), shared_->places.end(), [&](const auto& place) {
    return place.second.is_waiting && now - place.second.asked < max_wait_;
  });
}

}  // namespace tallow

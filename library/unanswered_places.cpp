// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/unanswered_places.h"

#include "library/mounted_volumes.h"

namespace tallow {

void UnansweredPlaces::Add(std::string_view root) {
  const std::lock_guard lock(mutex_);
  roots_.emplace_back(root);
  any_ = true;
}

void UnansweredPlaces::Clear() {
  const std::lock_guard lock(mutex_);
  roots_.clear();
  any_ = false;
}

std::string UnansweredPlaces::RootOf(std::string_view path) const {
  if (!any_) return {};
  const std::lock_guard lock(mutex_);
  for (const std::string& root : roots_)
    if (LiesBelow(path, root)) return root;
  return {};
}

}  // namespace tallow

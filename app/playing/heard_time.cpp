// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/playing/heard_time.h"

#include <algorithm>

namespace tallow {
namespace {

using std::chrono::milliseconds;

/// How much farther than the time that passed a position may have moved: Winamp's are whole
/// seconds.
constexpr milliseconds kInexact{1000};

/// A song whose last position was this close to its end, and that is at its beginning now, has been
/// repeated.
constexpr std::int64_t kNearTheEnds = 2500;

}  // namespace

void HeardTime::Begin(const Entry& entry) {
  entry_ = entry;
  heard_ = milliseconds{0};
  is_counted_ = false;
}

bool HeardTime::Update(const Entry& entry, std::int64_t position, std::int64_t length, Time now) {
  const bool is_repeated = entry == entry_ && length_ > 0 && position >= 0 &&
                           position < position_ && position < kNearTheEnds &&
                           position_ > length_ - kNearTheEnds;
  const std::int64_t before = position_;
  const auto passed = std::chrono::duration_cast<milliseconds>(now - last_);
  position_ = position;
  length_ = length;
  last_ = now;
  if (entry != entry_ || is_repeated) {
    Begin(entry);
    return false;
  }
  if (entry.entry == 0 || is_counted_ || position < 0 || before < 0) return false;
  const milliseconds moved{position - before};
  if (moved > milliseconds{0} && moved <= passed + kInexact) heard_ += moved;
  const milliseconds enough =
      length > 0 ? std::min(milliseconds{(length + 1) / 2}, kEnough) : kEnough;
  is_counted_ = heard_ >= enough;
  return is_counted_;
}

}  // namespace tallow

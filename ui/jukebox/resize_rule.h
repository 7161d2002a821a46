// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// A twip is a 1440th of an inch; at 96 dots an inch a pixel has 15.
inline constexpr int kTwipsPerPixel = 15;

/// A window no larger than this in a dimension, in twips, leaves its control alone in that dimension.
inline constexpr int kMinResized = 600;

/// What the control of a jukebox window is wider and higher than the window, in twips.
inline constexpr int kMoreWidth = 39;
inline constexpr int kMoreHeight = -378;

/// One dimension of a jukebox window's control.
///
/// \param window the whole window with its frame, in pixels
/// \param now    the control, in pixels
/// \param more   kMoreWidth or kMoreHeight
/// \returns pixels, rounded to the nearest
constexpr int ControlExtent(int window, int now, int more) noexcept {
  const int twips = window * kTwipsPerPixel;
  if (twips <= kMinResized) return now;
  return (twips + more + kTwipsPerPixel / 2) / kTwipsPerPixel;
}

}  // namespace tallow

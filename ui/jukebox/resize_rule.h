// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// A twip is 1/1440 inch; at 96 dpi a pixel has 15 twips.
inline constexpr int kTwipsPerPixel = 15;

/// If a dimension of the window is at most this many twips, that dimension of the control stays
/// unchanged.
inline constexpr int kMinResized = 600;

/// Size of the control minus size of the jukebox window, in twips.
inline constexpr int kMoreWidth = 39;
inline constexpr int kMoreHeight = -378;

/// Computes one dimension of a jukebox window's control.
///
/// \param window size of the whole window with its frame, in pixels
/// \param now    current size of the control, in pixels
/// \param more   kMoreWidth or kMoreHeight
/// \returns the new size of the control, in pixels, rounded to the nearest
constexpr int ControlExtent(int window, int now, int more) noexcept {
  const int twips = window * kTwipsPerPixel;
  if (twips <= kMinResized) return now;
  return (twips + more + kTwipsPerPixel / 2) / kTwipsPerPixel;
}

}  // namespace tallow

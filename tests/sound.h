// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "util/file_system.h"

namespace tallow {

/// The root mean square of a sine of MakeMp3, with full scale 1: 6 dB below full scale, minus 5 %
/// that the encoder loses.
inline const double kToneLevel = 0.5012 * 0.95 / std::sqrt(2.0);

/// The samples of a WAV file with two channels and 16 bits.
struct Sound {
  static constexpr double kRate = 44100;

  std::vector<double> left;   ///< -1 to 1
  std::vector<double> right;  ///< -1 to 1

  double Seconds() const { return static_cast<double>(left.size()) / kRate; }
};

inline Sound ReadSound(const std::string& path) {
  Sound sound;
  const std::string bytes = ReadWholeFile(path).value_or("");
  const std::size_t data = bytes.find("data");
  if (data == std::string::npos) return sound;
  for (std::size_t at = data + 8; at + 4 <= bytes.size(); at += 4) {
    std::int16_t pair[2];
    std::memcpy(pair, bytes.data() + at, sizeof pair);
    sound.left.push_back(pair[0] / 32768.0);
    sound.right.push_back(pair[1] / 32768.0);
  }
  return sound;
}

/// A piece of a channel.
/// \param from, length in seconds
inline std::span<const double> Piece(const std::vector<double>& channel, double from,
                                     double length) {
  const auto begin = std::min(channel.size(), static_cast<std::size_t>(from * Sound::kRate));
  const auto count =
      std::min(channel.size() - begin, static_cast<std::size_t>(length * Sound::kRate));
  return {channel.data() + begin, count};
}

/// The root mean square.
inline double Level(std::span<const double> piece) {
  double sum = 0;
  for (const double sample : piece) sum += sample * sample;
  return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(piece.size(), 1)));
}

/// The pitch of a sine in Hz, measured at the upward zero crossings.
inline double Pitch(std::span<const double> piece) {
  double first = -1;
  double last = -1;
  int periods = -1;
  for (std::size_t k = 1; k < piece.size(); ++k) {
    if (piece[k - 1] >= 0 || piece[k] < 0) continue;
    last = static_cast<double>(k - 1) - piece[k - 1] / (piece[k] - piece[k - 1]);
    if (first < 0) first = last;
    ++periods;
  }
  return periods < 1 ? 0 : periods * Sound::kRate / (last - first);
}

/// The longest stretch without sound, in seconds: blocks of 2 ms below -40 dB.
inline double LongestSilence(const std::vector<double>& channel) {
  constexpr double kBlock = 0.002;
  constexpr double kSilence = 0.01;
  double longest = 0;
  double now = 0;
  const double end = static_cast<double>(channel.size()) / Sound::kRate;
  for (double at = 0; at + kBlock <= end; at += kBlock) {
    now = Level(Piece(channel, at, kBlock)) < kSilence ? now + kBlock : 0;
    longest = std::max(longest, now);
  }
  return longest;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "details/bounded_stream.h"

namespace tallow {

inline constexpr std::uint64_t kMaxPlainTag = std::uint64_t{1} << 20U;  ///< with its header
inline constexpr int kMaxPlainFrames = 256;

/// Whether the newer tags of an MP3 file are as most programs write them, so that TagLib can read
/// them in this process: what the file says of lengths and structure was checked, and only the
/// contents of frames are left to TagLib.
///
/// - An ID3v2.3 or 2.4 tag of at most kMaxPlainTag bytes is at the start, without flags, and the
///   first MPEG frame follows at once.
/// - Its frames lie inside it one after another, then there is padding. They have no flags, so
///   that nothing is compressed or encrypted. They are at most kMaxPlainFrames.
/// - There is no APE tag. There may be an ID3v1 tag.
///
/// Reads the headers of the frames, and both ends of the file.
bool IsPlainMp3(BoundedStream& stream);

}  // namespace tallow

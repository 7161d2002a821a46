// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "details/bounded_stream.h"

namespace tallow {

// Reads the picture that the tags of a song file hold, with TagLib. Any bytes may be in the file:
// it is read as tag_reader.h describes. The picture is the file of an image, usually JPEG or PNG,
// which was not looked into.
//
// | Files | Where pictures are |
// |---|---|
// | MP3 | APIC or PIC in ID3v2; APE if there is none |
// | FLAC, Ogg files | their picture blocks; FLAC: else ID3v2 |
// | MP4 | "covr" |
// | WMA | "WM/Picture" |
// | WAV, AIFF, AAC | ID3v2 |
// | APE, WavPack, Musepack | "Cover Art" |
//
// Of several pictures the front cover is taken, else the first that is no icon.

/// Larger pictures are ignored.
inline constexpr std::size_t kMaxPictureBytes = std::size_t{16} << 20U;

/// The limits of reading a file for its picture. TagLib reads some bytes twice.
inline constexpr std::uint64_t kMaxBytesForPicture = 2 * kMaxPictureBytes;

/// \returns the bytes of the picture; empty when there is none, or the file cannot be read
std::string ReadEmbeddedPicture(const std::string& path,
                                const ReadLimits& limits = {.max_bytes = kMaxBytesForPicture});

/// Reads the picture if the file is an MP3 file as IsPlainMp3 describes it. Such a file may be read
/// in the program's own process.
///
/// \returns no value for other files, and when a limit was exceeded
std::optional<std::string> ReadPlainPicture(const std::string& path, const ReadLimits& limits = {});

}  // namespace tallow

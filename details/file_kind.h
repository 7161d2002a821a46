// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

#include "details/bounded_stream.h"

namespace tallow {

/// The format of a song file, as far as its tags are read differently.
enum class FileKind {
  kUnknown,
  kMpeg,  ///< MPEG audio of any layer: MP3
  kFlac,
  kVorbis,
  kOpus,
  kSpeex,
  kOggFlac,  ///< FLAC in an Ogg file
  kMp4,
  kAac,  ///< AAC without a container; it can have an ID3 tag
  kAsf,  ///< WMA
  kWav,
  kAiff,
  kApe,  ///< Monkey's Audio
  kWavPack,
  kMusepack,
};

/// The kind that a file's extension says; kUnknown for other extensions. ".oga" is kOggFlac, and
/// ".ogg" kVorbis.
FileKind KindByExtension(std::string_view path);

/// The kind that the first bytes of a file say, else the kind by its extension. An ID3v2 tag at the
/// start is skipped, because any format may have one.
FileKind KindOfFile(std::string_view path, BoundedStream& stream);

/// The length of the ID3v2 tag that begins with these bytes, with its header of ten bytes; 0 when
/// there is none. At most 2^28 + 9.
std::uint64_t Id3v2Length(std::string_view head) noexcept;

/// The name of a format, as the user sees it: "MP3"; empty for kUnknown.
std::string_view KindName(FileKind kind) noexcept;

}  // namespace tallow

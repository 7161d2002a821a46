// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/file_kind.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "util/text.h"

namespace tallow {
namespace {

using namespace std::string_view_literals;

/// Enough for the first page header of an Ogg file, with up to 255 segments, and the name of the
/// codec behind it.
constexpr std::size_t kPeekBytes = 27 + 255 + 8;

struct Extension {
  std::string_view text;
  FileKind kind;
};
constexpr std::array kExtensions{
    Extension{"mp3", FileKind::kMpeg},     Extension{"flac", FileKind::kFlac},
    Extension{"ogg", FileKind::kVorbis},   Extension{"oga", FileKind::kOggFlac},
    Extension{"opus", FileKind::kOpus},    Extension{"spx", FileKind::kSpeex},
    Extension{"m4a", FileKind::kMp4},      Extension{"m4b", FileKind::kMp4},
    Extension{"mp4", FileKind::kMp4},      Extension{"aac", FileKind::kAac},
    Extension{"wma", FileKind::kAsf},      Extension{"wav", FileKind::kWav},
    Extension{"aif", FileKind::kAiff},     Extension{"aiff", FileKind::kAiff},
    Extension{"ape", FileKind::kApe},      Extension{"wv", FileKind::kWavPack},
    Extension{"mpc", FileKind::kMusepack},
};

/// A text at an offset that marks a format.
struct Signature {
  std::size_t offset;
  std::string_view text;
  FileKind kind;
};
constexpr std::array kSignatures{
    Signature{0, "fLaC"sv, FileKind::kFlac},
    Signature{4, "ftyp"sv, FileKind::kMp4},
    Signature{8, "WAVE"sv, FileKind::kWav},
    Signature{8, "AIFF"sv, FileKind::kAiff},
    Signature{8, "AIFC"sv, FileKind::kAiff},
    Signature{0, "MAC "sv, FileKind::kApe},
    Signature{0, "wvpk"sv, FileKind::kWavPack},
    Signature{0, "MPCK"sv, FileKind::kMusepack},
    Signature{0, "MP+"sv, FileKind::kMusepack},
    Signature{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, FileKind::kAsf},
};
constexpr std::array kOggCodecs{
    Signature{0, "OpusHead"sv, FileKind::kOpus},
    Signature{0, "\x01vorbis"sv, FileKind::kVorbis},
    Signature{0, "Speex   "sv, FileKind::kSpeex},
    Signature{0,
              "\x7F"
              "FLAC"sv,
              FileKind::kOggFlac},
};

bool Has(std::string_view head, std::size_t offset, std::string_view text) noexcept {
  return head.size() >= offset && head.substr(offset).starts_with(text);
}

template <typename Signatures>
FileKind Match(std::string_view head, const Signatures& signatures) noexcept {
  for (const Signature& signature : signatures)
    if (Has(head, signature.offset, signature.text)) return signature.kind;
  return FileKind::kUnknown;
}

unsigned Byte(std::string_view text, std::size_t index) noexcept {
  return static_cast<unsigned char>(text[index]);
}

FileKind KindOfOgg(std::string_view head) noexcept {
  constexpr std::size_t kSegmentsAt = 26;
  if (head.size() <= kSegmentsAt) return FileKind::kUnknown;
  const std::size_t packet = kSegmentsAt + 1 + Byte(head, kSegmentsAt);
  if (packet >= head.size()) return FileKind::kUnknown;
  return Match(head.substr(packet), kOggCodecs);
}

/// The kind by the eleven or twelve bits that start each MPEG or AAC frame. Layer 0 is AAC.
FileKind KindByFrame(std::string_view head) noexcept {
  if (head.size() < 2 || Byte(head, 0) != 0xFF || (Byte(head, 1) & 0xE0U) != 0xE0U)
    return FileKind::kUnknown;
  const bool has_layer = (Byte(head, 1) & 0x06U) != 0;
  if (has_layer) return FileKind::kMpeg;
  return (Byte(head, 1) & 0xF0U) == 0xF0U ? FileKind::kAac : FileKind::kUnknown;
}

FileKind KindOfHead(std::string_view head) noexcept {
  if (head.starts_with("OggS")) return KindOfOgg(head);
  const FileKind kind = Match(head, kSignatures);
  if (kind == FileKind::kWav && !head.starts_with("RIFF")) return FileKind::kUnknown;
  if (kind == FileKind::kAiff && !head.starts_with("FORM")) return FileKind::kUnknown;
  return kind != FileKind::kUnknown ? kind : KindByFrame(head);
}

}  // namespace

FileKind KindByExtension(std::string_view path) {
  const std::size_t dot = path.find_last_of("./\\");
  if (dot == std::string_view::npos || path[dot] != '.') return FileKind::kUnknown;
  const std::string extension = ToLower(path.substr(dot + 1));
  for (const Extension& known : kExtensions)
    if (extension == known.text) return known.kind;
  return FileKind::kUnknown;
}

std::uint64_t Id3v2Length(std::string_view head) noexcept {
  constexpr std::size_t kHeaderBytes = 10;
  if (head.size() < kHeaderBytes || !head.starts_with("ID3")) return 0;
  std::uint64_t length = 0;
  for (std::size_t k = 6; k < kHeaderBytes; ++k) length = (length << 7U) | (Byte(head, k) & 0x7FU);
  return length + kHeaderBytes;
}

FileKind KindOfFile(std::string_view path, BoundedStream& stream) {
  const FileKind named = KindByExtension(path);
  std::string head = stream.Peek(0, kPeekBytes);
  if (const std::uint64_t length = Id3v2Length(head); length > 0)
    head = stream.Peek(length, kPeekBytes);
  const FileKind found = KindOfHead(head);
  return found != FileKind::kUnknown ? found : named;
}

std::string_view KindName(FileKind kind) noexcept {
  switch (kind) {
    case FileKind::kMpeg:
      return "MP3";
    case FileKind::kFlac:
      return "FLAC";
    case FileKind::kVorbis:
      return "Ogg Vorbis";
    case FileKind::kOpus:
      return "Opus";
    case FileKind::kSpeex:
      return "Speex";
    case FileKind::kOggFlac:
      return "Ogg FLAC";
    case FileKind::kMp4:
      return "MP4";
    case FileKind::kAac:
      return "AAC";
    case FileKind::kAsf:
      return "WMA";
    case FileKind::kWav:
      return "WAV";
    case FileKind::kAiff:
      return "AIFF";
    case FileKind::kApe:
      return "Monkey's Audio";
    case FileKind::kWavPack:
      return "WavPack";
    case FileKind::kMusepack:
      return "Musepack";
    case FileKind::kUnknown:
      break;
  }
  return {};
}

}  // namespace tallow

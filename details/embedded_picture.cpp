// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/embedded_picture.h"

#include <exception>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/unknownframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavpackfile.h>
#include <utility>

#include "details/file_kind.h"
#include "details/plain_mp3.h"
#include "details/riff_tags.h"
#include "details/tag_decoding.h"
#include "details/text_frames.h"

namespace tallow {
namespace {

/// The types of pictures, which all formats share.
constexpr int kSmallIcon = 1;
constexpr int kIcon = 2;
constexpr int kFrontCover = 3;

/// The best of the pictures that it is offered.
class BestPicture {
 public:
  void Offer(int type, const TagLib::ByteVector& bytes) {
    if (bytes.isEmpty() || bytes.size() > kMaxPictureBytes) return;
    const int merit = type == kFrontCover ? 3 : type == kSmallIcon || type == kIcon ? 1 : 2;
    if (merit <= merit_) return;
    merit_ = merit;
    bytes_ = bytes;
  }
  bool HasAny() const noexcept { return merit_ > 0; }
  std::string Bytes() const { return {bytes_.data(), bytes_.size()}; }

 private:
  int merit_ = 0;  ///< of the picture; 0 for none
  TagLib::ByteVector bytes_;
};

/// One file being read.
struct Reading {
  BoundedStream& stream;
  BestPicture best;
};

/// Offers the picture of a frame of ID3v2, which TextFrames has kept as bytes: the encoding, the
/// type of the image up to a NUL ("PIC": three characters), the type of the picture, a description
/// up to a NUL of one or two bytes, and the image.
void OfferFrame(BestPicture& best, const TagLib::ByteVector& frame, bool is_pic) {
  constexpr unsigned kPicFormat = 3;
  constexpr char kUtf16 = 1;
  constexpr char kUtf16BigEndian = 2;
  if (frame.isEmpty()) return;
  const char encoding = frame[0];
  unsigned at = 1 + kPicFormat;
  if (!is_pic) {
    const int end = frame.find('\0', 1);
    if (end < 0) return;
    at = static_cast<unsigned>(end) + 1;
  }
  if (at >= frame.size()) return;
  // A link to a picture in the network.
  if (frame.mid(1, 3) == "-->") return;
  const int type = static_cast<unsigned char>(frame[static_cast<int>(at)]);
  ++at;
  const bool is_wide = encoding == kUtf16 || encoding == kUtf16BigEndian;
  const TagLib::ByteVector nul(is_wide ? 2U : 1U, '\0');
  const int end = frame.find(nul, at, is_wide ? 2 : 1);
  if (end < 0) return;
  best.Offer(type, frame.mid(static_cast<unsigned>(end) + nul.size()));
}

void OfferId3v2(BestPicture& best, const TagLib::ID3v2::Tag* tag) {
  if (tag == nullptr) return;
  for (const char* const id : {"APIC", "PIC"})
    for (const TagLib::ID3v2::Frame* const frame : tag->frameList(id))
      if (const auto* const bytes = dynamic_cast<const TagLib::ID3v2::UnknownFrame*>(frame))
        OfferFrame(best, bytes->data(), id[0] == 'P');
}

void OfferBlocks(BestPicture& best, const TagLib::List<TagLib::FLAC::Picture*>& blocks) {
  for (const TagLib::FLAC::Picture* const picture : blocks)
    if (picture->mimeType() != "-->") best.Offer(picture->type(), picture->data());
}

/// Offers the items "Cover Art (Front)" and so on, a file name up to a NUL and the image.
void OfferApe(BestPicture& best, const TagLib::APE::Tag* tag) {
  if (tag == nullptr) return;
  for (const auto& [key, item] : tag->itemListMap()) {
    // TagLib's keys are in upper case.
    if (!key.startsWith("COVER ART") || item.type() != TagLib::APE::Item::Binary) continue;
    const TagLib::ByteVector bytes = item.binaryData();
    const int end = bytes.find('\0');
    if (end >= 0)
      best.Offer(key == "COVER ART (FRONT)" ? kFrontCover : 0,
                 bytes.mid(static_cast<unsigned>(end) + 1));
  }
}

void ReadMpeg(Reading& reading) {
  TagLib::MPEG::File file(&reading.stream, &TextFrames::Instance(), false);
  if (file.hasID3v2Tag()) OfferId3v2(reading.best, file.ID3v2Tag());
  if (file.hasAPETag() && !reading.best.HasAny()) OfferApe(reading.best, file.APETag());
}

void ReadAac(Reading& reading) {
  // Without an ID3v2 tag, TagLib would search the whole file for the first MPEG frame.
  if (reading.stream.Peek(0, 3) == "ID3") ReadMpeg(reading);
}

void ReadFlac(Reading& reading) {
  TagLib::FLAC::File file(&reading.stream, &TextFrames::Instance(), false);
  if (!file.isValid()) return;
  OfferBlocks(reading.best, file.pictureList());
  if (file.hasXiphComment()) OfferBlocks(reading.best, file.xiphComment()->pictureList());
  if (file.hasID3v2Tag() && !reading.best.HasAny()) OfferId3v2(reading.best, file.ID3v2Tag());
}

template <typename File>
void ReadOgg(Reading& reading) {
  File file(&reading.stream, false);
  if (file.isValid() && file.tag() != nullptr) OfferBlocks(reading.best, file.tag()->pictureList());
}

void ReadMp4(Reading& reading) {
  const TagLib::MP4::File file(&reading.stream, false);
  if (!file.isValid() || file.tag() == nullptr) return;
  for (const TagLib::MP4::CoverArt& cover : file.tag()->item("covr").toCoverArtList())
    reading.best.Offer(0, cover.data());
}

void ReadAsf(Reading& reading) {
  const TagLib::ASF::File file(&reading.stream, false);
  if (!file.isValid() || file.tag() == nullptr) return;
  for (const TagLib::ASF::Attribute& attribute : file.tag()->attribute("WM/Picture")) {
    const TagLib::ASF::Picture picture = attribute.toPicture();
    if (picture.isValid()) reading.best.Offer(picture.type(), picture.picture());
  }
}

void ReadRiff(Reading& reading, RiffTags::Kind kind) {
  const RiffTags tags(reading.stream, kind);
  OfferId3v2(reading.best, tags.Id3v2());
}

template <typename File>
void ReadApeTag(Reading& reading) {
  File file(&reading.stream, false);
  if (file.hasAPETag()) OfferApe(reading.best, file.APETag());
}

void ReadKind(Reading& reading, FileKind kind) {
  switch (kind) {
    case FileKind::kMpeg:
      return ReadMpeg(reading);
    case FileKind::kFlac:
      return ReadFlac(reading);
    case FileKind::kVorbis:
      return ReadOgg<TagLib::Ogg::Vorbis::File>(reading);
    case FileKind::kOpus:
      return ReadOgg<TagLib::Ogg::Opus::File>(reading);
    case FileKind::kSpeex:
      return ReadOgg<TagLib::Ogg::Speex::File>(reading);
    case FileKind::kOggFlac:
      return ReadOgg<TagLib::Ogg::FLAC::File>(reading);
    case FileKind::kMp4:
      return ReadMp4(reading);
    case FileKind::kAac:
      return ReadAac(reading);
    case FileKind::kAsf:
      return ReadAsf(reading);
    case FileKind::kWav:
      return ReadRiff(reading, RiffTags::Kind::kWav);
    case FileKind::kAiff:
      return ReadRiff(reading, RiffTags::Kind::kAiff);
    case FileKind::kApe:
      return ReadApeTag<TagLib::APE::File>(reading);
    case FileKind::kWavPack:
      return ReadApeTag<TagLib::WavPack::File>(reading);
    case FileKind::kMusepack:
      return ReadApeTag<TagLib::MPC::File>(reading);
    case FileKind::kUnknown:
      return;
  }
}

enum class Files { kAll, kPlainMp3 };

/// \returns no value for a file of another kind, and for one that cannot be read whole
std::optional<std::string> Read(const std::string& path, const ReadLimits& limits, Files files) {
  SetTextDecoding();
  BoundedStream stream(InputFile::Open(path), limits);
  if (!stream.isOpen()) return std::nullopt;
  Reading reading{stream, {}};
  try {
    const FileKind kind = KindOfFile(path, stream);
    const bool is_plain = files == Files::kAll || (kind == FileKind::kMpeg && IsPlainMp3(stream));
    if (!is_plain) return std::nullopt;
    ReadKind(reading, kind);
    if (stream.Overran() || stream.DiskFailed()) return std::nullopt;
    return reading.best.Bytes();
  } catch (const StreamNotLeft&) {
    return std::nullopt;
  } catch (const std::exception&) {
    // Of containers, when a length is nonsense or memory is short.
    return std::nullopt;
  }
}

}  // namespace

std::string ReadEmbeddedPicture(const std::string& path, const ReadLimits& limits) {
  return Read(path, limits, Files::kAll).value_or(std::string());
}

std::optional<std::string> ReadPlainPicture(const std::string& path, const ReadLimits& limits) {
  return Read(path, limits, Files::kPlainMp3);
}

}  // namespace tallow

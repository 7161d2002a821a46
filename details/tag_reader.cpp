// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_reader.h"

#include <algorithm>
#include <exception>
#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>  // IWYU pragma: keep, for the members of the tag
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mp4file.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/textidentificationframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>
#include <utility>

#include "details/file_kind.h"
#include "details/id3v2_values.h"
#include "details/plain_mp3.h"
#include "details/riff_tags.h"
#include "details/tag_decoding.h"
#include "details/tag_fields.h"
#include "details/text_frames.h"
#include "library/tag_layout.h"

namespace tallow {
namespace {

/// One file being read.
struct Reading {
  BoundedStream& stream;
  bool wants_audio;  ///< also read the audio properties
  TagFields fields;
  SongDetails details;
};

void AddAudio(Reading& reading, const TagLib::AudioProperties* audio) {
  if (!reading.wants_audio || audio == nullptr) return;
  // Damaged files can give negative numbers.
  reading.details.length_ms = std::max(0, audio->lengthInMilliseconds());
  reading.details.bit_rate = std::max(0, audio->bitrate());
  reading.details.sample_rate = std::max(0, audio->sampleRate());
}

/// \param tag of its own type, because properties() is not virtual
template <typename Tag>
void AddTag(TagFields& fields, const Tag* tag) {
  if (tag == nullptr || tag->isEmpty()) return;
  fields.tags.found = true;
  fields.Add(tag->properties());
}

void AddId3v2(TagFields& fields, const TagLib::ID3v2::Tag* tag) {
  if (tag == nullptr || tag->frameList().isEmpty()) return;
  // Before the other fields, because TagLib's names of the numbers differ from GenreName.
  for (const TagLib::ID3v2::Frame* const frame : tag->frameList("TCON")) {
    const auto* const text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame);
    if (text == nullptr) continue;
    for (const TagLib::String& genre : text->fieldList())
      fields.AddGenre(GenreOfNumber(CleanTagText(genre)));
  }
  fields.tags.found = true;
  fields.Add([tag](const char* key) { return Id3v2Values(*tag, key); });
}

/// The last bytes of the file, where an ID3v1 tag is; empty when it is too short for one.
std::string LastBlock(BoundedStream& stream) {
  const std::uint64_t size = stream.Size();
  return size < kTagBytes ? std::string() : stream.Peek(size - kTagBytes, kTagBytes);
}

void AddId3v1(Reading& reading) { reading.fields.AddId3v1(LastBlock(reading.stream)); }

void ReadMpeg(Reading& reading) {
  TagLib::MPEG::File file(&reading.stream, &TextFrames::Instance(), reading.wants_audio);
  if (file.hasID3v2Tag()) AddId3v2(reading.fields, file.ID3v2Tag());
  if (file.hasAPETag() && !reading.fields.HasAny()) AddTag(reading.fields, file.APETag());
  AddAudio(reading, file.audioProperties());
  AddId3v1(reading);
}

void ReadAac(Reading& reading) {
  // Without an ID3v2 tag, TagLib would search the whole file for the first MPEG frame.
  if (reading.stream.Peek(0, 3) == "ID3") {
    TagLib::MPEG::File file(&reading.stream, &TextFrames::Instance(), false);
    if (file.hasID3v2Tag()) AddId3v2(reading.fields, file.ID3v2Tag());
  }
  AddId3v1(reading);
}

void ReadFlac(Reading& reading) {
  TagLib::FLAC::File file(&reading.stream, &TextFrames::Instance(), reading.wants_audio);
  if (file.hasXiphComment()) AddTag(reading.fields, file.xiphComment());
  if (file.hasID3v2Tag()) AddId3v2(reading.fields, file.ID3v2Tag());
  AddAudio(reading, file.audioProperties());
  AddId3v1(reading);
}

/// Reads the tags of a WAV or AIFF file, and its audio with a class of TagLib.
template <typename File>
void ReadRiff(Reading& reading, RiffTags::Kind kind) {
  const RiffTags tags(reading.stream, kind);
  AddId3v2(reading.fields, tags.Id3v2());
  if (tags.Info() != nullptr) {
    // TagLib returns the date as a number.
    reading.fields.AddDate(tags.Info()->fieldText("ICRD"));
    AddTag(reading.fields, tags.Info());
  }
  if (!reading.wants_audio) return;
  // TagLib reads these files from the position of the stream.
  reading.stream.seek(0, TagLib::IOStream::Beginning);
  const File file(&reading.stream);
  AddAudio(reading, file.audioProperties());
}

/// Reads a format with one kind of tag.
template <typename File>
void ReadOneTag(Reading& reading) {
  File file(&reading.stream, reading.wants_audio);
  if (file.isValid()) AddTag(reading.fields, file.tag());
  AddAudio(reading, file.audioProperties());
}

void ReadAsf(Reading& reading) {
  TagLib::ASF::File file(&reading.stream, reading.wants_audio);
  if (file.isValid()) {
    AddTag(reading.fields, file.tag());
    // Where FFmpeg writes the date; TagLib expects "WM/Year".
    const TagLib::ASF::AttributeList dates = file.tag()->attribute("date");
    if (!dates.isEmpty()) reading.fields.AddDate(dates.front().toString());
  }
  AddAudio(reading, file.audioProperties());
}

/// Reads a format with an APE tag, which may have an ID3v1 tag too.
template <typename File>
void ReadApeTag(Reading& reading) {
  File file(&reading.stream, reading.wants_audio);
  if (file.hasAPETag()) AddTag(reading.fields, file.APETag());
  AddAudio(reading, file.audioProperties());
  AddId3v1(reading);
}

void ReadKind(Reading& reading, FileKind kind) {
  switch (kind) {
    case FileKind::kMpeg:
      return ReadMpeg(reading);
    case FileKind::kFlac:
      return ReadFlac(reading);
    case FileKind::kVorbis:
      return ReadOneTag<TagLib::Ogg::Vorbis::File>(reading);
    case FileKind::kOpus:
      return ReadOneTag<TagLib::Ogg::Opus::File>(reading);
    case FileKind::kSpeex:
      return ReadOneTag<TagLib::Ogg::Speex::File>(reading);
    case FileKind::kOggFlac:
      return ReadOneTag<TagLib::Ogg::FLAC::File>(reading);
    case FileKind::kMp4:
      return ReadOneTag<TagLib::MP4::File>(reading);
    case FileKind::kAac:
      return ReadAac(reading);
    case FileKind::kAsf:
      return ReadAsf(reading);
    case FileKind::kWav:
      return ReadRiff<TagLib::RIFF::WAV::File>(reading, RiffTags::Kind::kWav);
    case FileKind::kAiff:
      return ReadRiff<TagLib::RIFF::AIFF::File>(reading, RiffTags::Kind::kAiff);
    case FileKind::kApe:
      return ReadApeTag<TagLib::APE::File>(reading);
    case FileKind::kWavPack:
      return ReadApeTag<TagLib::WavPack::File>(reading);
    case FileKind::kMusepack:
      return ReadApeTag<TagLib::MPC::File>(reading);
    case FileKind::kUnknown:
      return AddId3v1(reading);
  }
}

/// What Read reads.
enum class Want {
  kTags,
  kPlainTags,  ///< of a file that IsPlainMp3; SongDetails::failed for others
  kAll,
};

SongDetails Read(const std::string& path, const ReadLimits& limits, Want want) {
  const bool wants_audio = want == Want::kAll;
  SetTextDecoding();
  auto opened = InputFile::Open(path);
  const FileStamp stamp = opened ? opened->Stamp() : FileStamp();
  BoundedStream stream(std::move(opened), limits);
  Reading reading{stream, wants_audio, {}, {}};
  bool is_broken = !stream.isOpen();
  try {
    if (!is_broken) {
      const FileKind kind = KindOfFile(path, stream);
      reading.details.format = KindName(kind);
      // Before the other tags, which may exceed a limit.
      if (wants_audio) reading.details.has_id3v1 = LastBlock(stream).starts_with(kTagMarker);
      is_broken = want == Want::kPlainTags && (kind != FileKind::kMpeg || !IsPlainMp3(stream));
      if (!is_broken) ReadKind(reading, kind);
    }
  } catch (const StreamNotLeft&) {
    is_broken = true;
  } catch (const std::exception&) {
    // TagLib throws nothing of its own, but containers do, when a length is nonsense or memory is
    // short.
    is_broken = true;
  }
  const bool is_unread = !stream.isOpen() || stream.DiskFailed();
  reading.details.failed = is_broken || is_unread || stream.Overran();
  reading.details.tags = std::move(reading.fields.tags);
  reading.details.tags.unread = is_unread;
  reading.details.comment = std::move(reading.fields.comment);
  if (!is_unread) reading.details.stamp = stamp;
  return std::move(reading.details);
}

}  // namespace

SongTags ReadSongTags(const std::string& path, const ReadLimits& limits) {
  return Read(path, limits, Want::kTags).tags;
}

std::optional<SongTags> ReadPlainTags(const std::string& path, const ReadLimits& limits) {
  SongDetails details = Read(path, limits, Want::kPlainTags);
  if (details.failed) return std::nullopt;
  return std::move(details.tags);
}

SongDetails ReadSongDetails(const std::string& path, const ReadLimits& limits) {
  return Read(path, limits, Want::kAll);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/rifffile.h>

#include "details/bounded_stream.h"

namespace tallow {

/// The tags of a WAV or AIFF file, of each kind the first. TagLib's own classes for these files
/// read ID3v2 tags without TextFrames.
class RiffTags final : public TagLib::RIFF::File {
 public:
  enum class Kind { kWav, kAiff };

  RiffTags(BoundedStream& stream, Kind kind);

  /// Null when there is none.
  const TagLib::ID3v2::Tag* Id3v2() const noexcept { return id3v2_.get(); }
  /// The INFO list of a WAV file; null when there is none.
  const TagLib::RIFF::Info::Tag* Info() const noexcept { return info_.get(); }

  // What the base class requires; nothing calls it.
  TagLib::Tag* tag() const override { return nullptr; }
  TagLib::AudioProperties* audioProperties() const override { return nullptr; }
  bool save() override { return false; }

 private:
  std::unique_ptr<TagLib::ID3v2::Tag> id3v2_;
  std::unique_ptr<TagLib::RIFF::Info::Tag> info_;
};

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/riff_tags.h"

#include "details/text_frames.h"

namespace tallow {

RiffTags::RiffTags(BoundedStream& stream, Kind kind)
    : File(&stream, kind == Kind::kWav ? LittleEndian : BigEndian) {
  for (unsigned chunk = 0; chunk < chunkCount(); ++chunk) {
    const TagLib::ByteVector name = chunkName(chunk);
    if (id3v2_ == nullptr && (name == "ID3 " || name == "id3 ")) {
      id3v2_ = std::make_unique<TagLib::ID3v2::Tag>(this, static_cast<long>(chunkOffset(chunk)),
                                                    &TextFrames::Instance());
    } else if (info_ == nullptr && kind == Kind::kWav && name == "LIST") {
      const TagLib::ByteVector data = chunkData(chunk);
      if (data.startsWith("INFO")) info_ = std::make_unique<TagLib::RIFF::Info::Tag>(data);
    }
  }
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/text_frames.h"

#include "details/bounded_stream.h"

namespace tallow {

TextFrames& TextFrames::Instance() {
  static TextFrames frames;
  return frames;
}

bool TextFrames::updateFrame(Id3v2FrameTypes::Header* header) const {
  // Not only of texts: TagLib inflates the frames that it keeps as bytes, too.
  if (header->compression()) throw StreamNotLeft();
  // "COM" is the comment of ID3v2.2.
  const TagLib::ByteVector id = header->frameID();
  if (!id.startsWith("T") && !id.startsWith("COM")) return false;
  return FrameFactory::updateFrame(header);
}

}  // namespace tallow

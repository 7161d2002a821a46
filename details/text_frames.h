// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <taglib/id3v2frame.h>
#include <taglib/id3v2framefactory.h>

namespace tallow {

/// Names TagLib's type of a frame's header, which only classes derived from Frame can name.
struct Id3v2FrameTypes : TagLib::ID3v2::Frame {
  using TagLib::ID3v2::Frame::Header;
};

/// Creates the frames of ID3v2 tags with texts and comments alone; TagLib keeps all other frames as
/// bytes. A file can otherwise make it
///
/// - inflate a compressed frame of 16 MB to 16 GB; a compressed frame therefore gives up the file
///   with StreamNotLeft. No program that is in use writes them;
/// - descend into a million chapters, each inside the one before, until the stack ends.
class TextFrames final : public TagLib::ID3v2::FrameFactory {
 public:
  /// The factory of all threads; it has no state.
  static TextFrames& Instance();

 protected:
  /// Decides about a frame by its header. \returns false to keep the frame as bytes
  bool updateFrame(Id3v2FrameTypes::Header* header) const override;
};

}  // namespace tallow

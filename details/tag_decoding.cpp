// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_decoding.h"

#include <string_view>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>

#include "library/tag_text.h"

namespace tallow {
namespace {

TagLib::String DecodedText(const TagLib::ByteVector& bytes) {
  return {DecodeTagField(std::string_view(bytes.data(), bytes.size())), TagLib::String::UTF8};
}

class Id3v2Text final : public TagLib::ID3v2::Latin1StringHandler {
 public:
  TagLib::String parse(const TagLib::ByteVector& bytes) const override {
    return DecodedText(bytes);
  }
};

class InfoText final : public TagLib::RIFF::Info::StringHandler {
 public:
  TagLib::String parse(const TagLib::ByteVector& bytes) const override {
    return DecodedText(bytes);
  }
};

}  // namespace

void SetTextDecoding() {
  static const bool done = [] {
    static const Id3v2Text id3v2;
    static const InfoText info;
    TagLib::ID3v2::Tag::setLatin1StringHandler(&id3v2);
    TagLib::RIFF::Info::Tag::setStringHandler(&info);
    return true;
  }();
  static_cast<void>(done);
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/id3v2_values.h"

#include <cstring>
#include <taglib/commentsframe.h>
#include <taglib/textidentificationframe.h>

namespace tallow {
namespace {

struct NamedFrame {
  const char* key;
  const char* id;
};

/// The frames of ID3v2.4, to which TagLib converts those of the older versions.
constexpr NamedFrame kFrames[] = {
    {"TITLE", "TIT2"}, {"ARTIST", "TPE1"},     {"ALBUMARTIST", "TPE2"}, {"ALBUM", "TALB"},
    {"DATE", "TDRC"},  {"DISCNUMBER", "TPOS"}, {"TRACKNUMBER", "TRCK"},
};

void AddTexts(const TagLib::ID3v2::FrameList& frames, TagLib::StringList& values) {
  for (const TagLib::ID3v2::Frame* const frame : frames)
    if (const auto* const text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame))
      values.append(text->fieldList());
}

/// Adds the texts that the writing program has named itself.
void AddUserTexts(const TagLib::ID3v2::FrameList& frames, const char* key,
                  TagLib::StringList& values) {
  for (const TagLib::ID3v2::Frame* const frame : frames) {
    const auto* const text = dynamic_cast<const TagLib::ID3v2::UserTextIdentificationFrame*>(frame);
    if (text == nullptr || text->description().upper() != key) continue;
    TagLib::StringList texts = text->fieldList();
    if (!texts.isEmpty()) texts.erase(texts.begin());  // the description
    values.append(texts);
  }
}

void AddComments(const TagLib::ID3v2::FrameList& frames, TagLib::StringList& values) {
  for (const TagLib::ID3v2::Frame* const frame : frames) {
    const auto* const comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame);
    if (comment == nullptr) continue;
    const TagLib::String name = comment->description();
    if (name.isEmpty() || name.upper() == "COMMENT") values.append(comment->text());
  }
}

}  // namespace

TagLib::StringList Id3v2Values(const TagLib::ID3v2::Tag& tag, const char* key) {
  TagLib::StringList values;
  for (const NamedFrame& frame : kFrames)
    if (std::strcmp(frame.key, key) == 0) AddTexts(tag.frameList(frame.id), values);
  if (std::strcmp(key, "COMMENT") == 0) AddComments(tag.frameList("COMM"), values);
  AddUserTexts(tag.frameList("TXXX"), key, values);
  return values;
}

}  // namespace tallow

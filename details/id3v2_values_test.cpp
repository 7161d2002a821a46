// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/id3v2_values.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <taglib/commentsframe.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tpropertymap.h>
#include <vector>

namespace tallow {
namespace {

constexpr const char* kKeys[] = {"TITLE",        "ARTIST",  "ARTISTS",     "ALBUMARTIST",
                                 "ALBUM ARTIST", "ALBUM",   "DATE",        "DISCNUMBER",
                                 "TRACKNUMBER",  "COMMENT", "DESCRIPTION", "YEAR"};

class RandomTag {
 public:
  explicit RandomTag(unsigned seed) : random_(seed) {
    for (int k = Below(8); k > 0; --k) tag.addFrame(Frame());
  }

  TagLib::ID3v2::Tag tag;

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  template <typename T>
  T Any(std::initializer_list<T> values) {
    return values.begin()[Below(static_cast<int>(values.size()))];
  }

  TagLib::StringList Texts() {
    TagLib::StringList texts;
    for (int k = Below(4); k > 0; --k) texts.append(Any({"", "1", "Abba", "1999-01-02", " x "}));
    return texts;
  }

  TagLib::ID3v2::Frame* Frame() {
    switch (Below(3)) {
      case 0: {
        auto text = std::make_unique<TagLib::ID3v2::TextIdentificationFrame>(
            Any({"TIT2", "TPE1", "TPE2", "TALB", "TDRC", "TPOS", "TRCK", "TCOM"}));
        text->setText(Texts());
        return text.release();
      }
      case 1: {
        auto text = std::make_unique<TagLib::ID3v2::UserTextIdentificationFrame>();
        text->setDescription(
            Any({"ARTISTS", "artists", "Album Artist", "TITLE", "Comment", "other"}));
        text->setText(Texts());
        return text.release();
      }
      default: {
        auto comment = std::make_unique<TagLib::ID3v2::CommentsFrame>();
        comment->setDescription(Any({"", "Comment", "iTunNORM", "description"}));
        comment->setText(Any({"", "good", "better"}));
        return comment.release();
      }
    }
  }

  std::mt19937 random_;
};

std::vector<std::string> Sorted(const TagLib::StringList& values) {
  std::vector<std::string> sorted;
  for (const TagLib::String& value : values)
    if (!value.isEmpty()) sorted.push_back(value.to8Bit(true));
  std::ranges::sort(sorted);
  return sorted;
}

TEST(Id3v2Values, AreThoseOfTagLibsProperties) {
  int compared = 0;
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const RandomTag random(seed);
    const TagLib::PropertyMap properties = random.tag.properties();
    for (const char* const key : kKeys) {
      const auto found = properties.find(key);
      const auto expected =
          found == properties.end() ? std::vector<std::string>() : Sorted(found->second);
      if (!expected.empty()) ++compared;
      EXPECT_EQ(Sorted(Id3v2Values(random.tag, key)), expected) << key << ", seed " << seed;
    }
  }
  EXPECT_GT(compared, 1000);
}

}  // namespace
}  // namespace tallow

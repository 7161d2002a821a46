// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/tag_fields.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <taglib/id3v1genres.h>
#include <vector>

#include "library/mp3_genra.h"
#include "library/tag_layout.h"
#include "library/tag_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Cuts a UTF-8 text to kMaxTagText bytes, at a character.
void Limit(std::string& text) {
  if (text.size() <= kMaxTagText) return;
  std::size_t end = kMaxTagText;
  const auto is_inside = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (end > 0 && is_inside(end)) --end;
  text.resize(end);
}

std::string_view TrimControls(std::string_view text) noexcept {
  const auto is_blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

/// The values of the first of several keys that has any, without empty ones and repetitions.
std::vector<std::string> Values(const TagFields::Lookup& lookup,
                                std::initializer_list<const char*> keys) {
  std::vector<std::string> values;
  for (const char* const key : keys) {
    for (const TagLib::String& value : lookup(key)) {
      std::string text = CleanTagText(value);
      if (!text.empty() && std::ranges::find(values, text) == values.end())
        values.push_back(std::move(text));
    }
    if (!values.empty()) break;
  }
  return values;
}

std::string Joined(const std::vector<std::string>& values) {
  std::string joined;
  for (const std::string& value : values) {
    if (!joined.empty()) joined += "; ";
    joined += value;
  }
  Limit(joined);
  return joined;
}

/// The name of a genre by its number in an ID3 tag; empty when there is none.
std::string NameOfNumber(int number) {
  // The name of this number was withdrawn; TagLib has the present one.
  constexpr int kRenamed = 133;
  if (number != kRenamed)
    if (const std::string_view name = GenreName(number); !name.empty()) return std::string(name);
  return CleanTagText(TagLib::ID3v1::genre(number));
}

void SetFirst(std::string& field, const std::vector<std::string>& values) {
  if (field.empty() && !values.empty()) field = values.front();
}

void SetJoined(std::string& field, const std::vector<std::string>& values) {
  if (field.empty()) field = Joined(values);
}

void SetNumber(std::int32_t& field, const std::vector<std::string>& values) {
  if (field == 0 && !values.empty()) field = LeadingNumber(values.front());
}

}  // namespace

std::string CleanTagText(const TagLib::String& text) {
  // A text of several megabytes is not converted whole.
  std::string bytes = text.substr(0, kMaxTagText).to8Bit(true);
  if (!IsValidUtf8(bytes)) bytes = DecodeTagField(bytes);
  bytes = TrimControls(StripAtNul(bytes));
  Limit(bytes);
  return bytes;
}

std::string GenreOfNumber(const std::string& text) {
  std::string_view digits = text;
  if (digits.starts_with('(') && digits.ends_with(')'))
    digits = digits.substr(1, digits.size() - 2);
  int number = -1;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return text;
  constexpr int kNumbers = 256;
  if (number < 0 || number >= kNumbers - 1) return text;
  const std::string name = NameOfNumber(number);
  return name.empty() ? text : name;
}

std::int32_t LeadingNumber(std::string_view text) noexcept {
  std::int32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && number > 0 ? number : 0;
}

void TagFields::Add(const TagLib::PropertyMap& properties) {
  Add([&](const char* key) {
    const auto found = properties.find(key);
    return found == properties.end() ? TagLib::StringList() : found->second;
  });
}

void TagFields::Add(const Lookup& lookup) {
  SetFirst(tags.title, Values(lookup, {"TITLE"}));
  SetJoined(tags.artist, Values(lookup, {"ARTIST", "ARTISTS"}));
  SetJoined(tags.album_artist, Values(lookup, {"ALBUMARTIST", "ALBUM ARTIST", "ALBUM_ARTIST"}));
  SetFirst(tags.album, Values(lookup, {"ALBUM"}));
  SetFirst(tags.date, Values(lookup, {"DATE", "YEAR"}));
  SetFirst(tags.genre, Values(lookup, {"GENRE"}));
  SetNumber(tags.disc, Values(lookup, {"DISCNUMBER", "DISC"}));
  SetNumber(tags.track, Values(lookup, {"TRACKNUMBER", "TRACK"}));
  SetFirst(comment, Values(lookup, {"COMMENT", "DESCRIPTION"}));
}

void TagFields::AddId3v1(std::string_view block) {
  if (block.size() != kTagBytes || !block.starts_with(kTagMarker)) return;
  const bool is_only_tag = !tags.found;
  tags.found = true;
  const auto fill = [&](std::string& field, std::size_t at, std::size_t length) {
    if (field.empty()) field = TrimControls(DecodeTagField(StripAtNul(block.substr(at, length))));
  };
  fill(tags.title, kTitleAt, kArtistAt - kTitleAt);
  fill(tags.artist, kArtistAt, kAlbumAt - kArtistAt);
  fill(tags.album, kAlbumAt, kYearAt - kAlbumAt);
  fill(tags.date, kYearAt, kCommentAt - kYearAt);
  fill(comment, kCommentAt, kGenraAt - kCommentAt);
  // Version 1.1: a NUL and then the track in the last two bytes of the comment.
  if (tags.track == 0 && block[kGenraAt - 2] == '\0')
    tags.track = static_cast<unsigned char>(block[kGenraAt - 1]);
  // A program that writes another tag too puts 255 here for any genre that has no number.
  constexpr int kNone = 255;
  const int number = static_cast<unsigned char>(block[kGenraAt]);
  if (number != kNone || is_only_tag) AddGenre(NameOfNumber(number));
}

void TagFields::AddGenre(std::string_view name) {
  if (tags.genre.empty()) tags.genre = name;
}

void TagFields::AddDate(const TagLib::String& date) {
  if (tags.date.empty()) tags.date = CleanTagText(date);
}

bool TagFields::HasAny() const {
  SongTags none;
  none.found = tags.found;
  return tags != none || !comment.empty();
}

}  // namespace tallow

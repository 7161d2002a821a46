// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mp3_tag_editor.h"

#include <algorithm>

#include "library/tag_text.h"
#include "util/errors.h"
#include "util/patch_file.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::int16_t kNoGenre = 255;

template <std::size_t kLength>
void Copy(const TagBlock& block, std::size_t at, std::array<char, kLength>& field) {
  std::copy_n(block.bytes.begin() + static_cast<std::ptrdiff_t>(at), kLength, field.begin());
}

}  // namespace

TagBlock ReadTagBlock(const std::string& path) {
  TagBlock block;
  block.result = ReadTail(path, block.bytes);
  return block;
}

template <std::size_t kLength>
std::string MP3TagEditor::Read(const Field<kLength>& field) {
  return std::string(Trim(DecodeTagField({field.data(), kLength})));
}

template <std::size_t kLength>
void MP3TagEditor::PadOrCut(Field<kLength>& field, std::string_view text) {
  const std::string bytes = EncodeTagField(text, kLength);
  std::copy(bytes.begin(), bytes.end(), field.begin());
}

template std::string MP3TagEditor::Read(const Field<30>&);
template std::string MP3TagEditor::Read(const Field<4>&);
template void MP3TagEditor::PadOrCut(Field<30>&, std::string_view);
template void MP3TagEditor::PadOrCut(Field<4>&, std::string_view);

MP3TagEditor::MP3TagEditor() {
  ClearFields();
  genra_ = 0;
}

void MP3TagEditor::ClearFields() {
  tag_exists_ = false;
  title_.fill(' ');
  artist_.fill(' ');
  album_.fill(' ');
  year_.fill(' ');
  comment_.fill(' ');
  genra_ = kNoGenre;
}

bool MP3TagEditor::LoadMP3(std::string_view path) {
  return LoadMP3(path, ReadTagBlock(std::string(path)));
}

bool MP3TagEditor::LoadMP3(std::string_view path, const TagBlock& block) {
  ClearFields();
  filename_ = path;
  if (block.result == TailResult::kFailed) return false;
  if (block.result == TailResult::kTooShort) return true;
  if (std::string_view(block.bytes.data(), kTagMarker.size()) != kTagMarker) return true;
  tag_exists_ = true;
  Copy(block, kTitleAt, title_);
  Copy(block, kArtistAt, artist_);
  Copy(block, kAlbumAt, album_);
  Copy(block, kYearAt, year_);
  Copy(block, kCommentAt, comment_);
  genra_ = static_cast<unsigned char>(block.bytes[kGenraAt]);
  return true;
}

bool MP3TagEditor::SaveMP3() {
  std::string tag(kTagMarker);
  tag.append(title_.data(), title_.size());
  tag.append(artist_.data(), artist_.size());
  tag.append(album_.data(), album_.size());
  tag.append(year_.data(), year_.size());
  tag.append(comment_.data(), comment_.size());
  if (genra_ < 0 || genra_ > kNoGenre) throw OverflowError(std::to_string(genra_));
  tag += static_cast<char>(genra_);
  // Without a tag, the marker replaces the last byte of the file, and 127 bytes are appended.
  PatchFileEnd(filename_, tag_exists_ ? kTagBytes : 1, tag);
  return true;
}

}  // namespace tallow

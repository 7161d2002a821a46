// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/filing_tags.h"

#include <optional>
#include <string_view>
#include <utility>

#include "library/cls_main.h"
#include "library/mp3_genra.h"
#include "library/tag_cache.h"
#include "library/tag_layout.h"
#include "library/tag_text.h"
#include "util/read_ahead.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Number of tags that a thread reads in one batch, see ReadAhead.
constexpr std::size_t kTagsAtOnce = 64;

constexpr std::size_t kTextBytes = 30;
constexpr std::size_t kYearBytes = 4;
/// Offset of the track number in the comment, if the byte before it is NUL (ID3v1.1).
constexpr std::size_t kTrackInComment = 29;

std::string TextAt(const TagBlock& block, std::size_t at, std::size_t length) {
  // What lies behind the first NUL says nothing about the encoding of the text.
  const std::string text = DecodeTagField(StripAtNul({block.bytes.data() + at, length}));
  return std::string(Trim(text));
}

/// Request for the tags of a song.
struct TagQuestion {
  std::optional<TagBlock> known;
  std::string path;
};

}  // namespace

SongTags TagsOfBlock(const TagBlock& block, bool with_album) {
  SongTags tags;
  if (block.result != TailResult::kRead ||
      std::string_view(block.bytes.data(), kTagMarker.size()) != kTagMarker)
    return tags;
  tags.found = true;
  tags.artist = TextAt(block, kArtistAt, kTextBytes);
  tags.date = TextAt(block, kYearAt, kYearBytes);
  tags.genre = GenreName(static_cast<unsigned char>(block.bytes[kGenraAt]));
  if (!with_album) return tags;
  tags.album = TextAt(block, kAlbumAt, kTextBytes);
  if (block.bytes[kCommentAt + kTrackInComment - 1] == '\0')
    tags.track = static_cast<unsigned char>(block.bytes[kCommentAt + kTrackInComment]);
  return tags;
}

SongTagReader::SongTagReader(clsMain& library, const TagCache* found_tags, ReadTags read,
                             bool with_album)
    : library_(library),
      found_tags_(with_album ? nullptr : found_tags),
      read_(library.Switches().newer_tags ? std::move(read) : ReadTags()),
      with_album_(with_album) {}

void SongTagReader::Read(const std::vector<std::int32_t>& rows,
                         const std::function<void(std::size_t, const ReadSong&)>& consume,
                         const GoOn& go_on) const {
  const auto ask = [&](std::size_t k) -> TagQuestion {
    const SongView song = library_.Song(rows[k]);
    if (!read_ && found_tags_ != nullptr)
      if (const auto found = found_tags_->Find(song.Folder(), song.Name())) return {found, {}};
    return {std::nullopt, song.Path()};
  };
  const auto answer = [unanswered = library_.Unanswered(), read = read_,
                       with_album = with_album_](const TagQuestion& question) -> ReadSong {
    if (question.known) return {true, false, TagsOfBlock(*question.known, with_album)};
    if (unanswered->Covers(question.path)) return {};
    if (read) {
      SongTags tags = read(question.path);
      const bool has_failed = tags.unread;
      return {true, has_failed, std::move(tags)};
    }
    const TagBlock block = ReadTagBlock(question.path);
    return {true, block.result == TailResult::kFailed, TagsOfBlock(block, with_album)};
  };
  ReadAhead(rows.size(), kTagsAtOnce, ask, answer, consume,
            go_on ? library_.WaitingFor(
                        [&](std::size_t k) { return library_.Song(rows[k]).Path(); }, go_on)
                  : WhileWaiting(),
            [](std::size_t) { return ReadSong(); });
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "details/details_message.h"

#include <cstdint>
#include <utility>

namespace tallow {
namespace {

constexpr std::size_t kNumberBytes = 8;
constexpr unsigned kBitsOfByte = 8;

void AppendNumber(std::string& bytes, std::uint64_t number, std::size_t count = kNumberBytes) {
  for (std::size_t k = 0; k < count; ++k) {
    bytes += static_cast<char>(number & 0xFFU);
    number >>= kBitsOfByte;
  }
}

std::uint64_t NumberOf(std::string_view bytes) noexcept {
  std::uint64_t number = 0;
  for (std::size_t k = bytes.size(); k > 0; --k)
    number = (number << kBitsOfByte) | static_cast<unsigned char>(bytes[k - 1]);
  return number;
}

/// Appends the members that it visits.
struct Encoder {
  std::string bytes;

  void Visit(const std::string& text) {
    AppendNumber(bytes, text.size());
    bytes += text;
  }
  template <typename Number>
  void Visit(Number number) {
    AppendNumber(bytes, static_cast<std::uint64_t>(number));
  }
};

/// Reads the members that it visits.
struct Decoder {
  std::string_view bytes;
  bool is_good = true;

  std::string_view Take(std::uint64_t count) {
    if (count > bytes.size()) is_good = false;
    if (!is_good) return {};
    const std::string_view taken = bytes.substr(0, static_cast<std::size_t>(count));
    bytes.remove_prefix(taken.size());
    return taken;
  }
  void Visit(std::string& text) { text = Take(NumberOf(Take(kNumberBytes))); }
  template <typename Number>
  void Visit(Number& number) {
    number = static_cast<Number>(NumberOf(Take(kNumberBytes)));
  }
};

/// Visits all members in the order of the message.
template <typename Visitor, typename Details>
void VisitAll(Visitor& visitor, Details& details) {
  auto& tags = details.tags;
  visitor.Visit(tags.found);
  visitor.Visit(tags.unread);
  visitor.Visit(tags.title);
  visitor.Visit(tags.artist);
  visitor.Visit(tags.album_artist);
  visitor.Visit(tags.album);
  visitor.Visit(tags.date);
  visitor.Visit(tags.genre);
  visitor.Visit(tags.disc);
  visitor.Visit(tags.track);
  visitor.Visit(details.comment);
  visitor.Visit(details.length_ms);
  visitor.Visit(details.bit_rate);
  visitor.Visit(details.sample_rate);
  visitor.Visit(details.format);
  visitor.Visit(details.has_id3v1);
  visitor.Visit(details.stamp.size);
  visitor.Visit(details.stamp.modified);
  visitor.Visit(details.failed);
}

}  // namespace

std::string MessageOf(std::string_view content) {
  std::string message;
  AppendNumber(message, content.size(), kMessageLengthBytes);
  message += content;
  return message;
}

std::size_t MessageLength(std::string_view bytes) noexcept {
  return static_cast<std::size_t>(NumberOf(bytes.substr(0, kMessageLengthBytes)));
}

std::string EncodeDetails(const SongDetails& details) {
  Encoder encoder;
  VisitAll(encoder, details);
  return std::move(encoder.bytes);
}

std::optional<SongDetails> DecodeDetails(std::string_view bytes) {
  Decoder decoder{bytes};
  SongDetails details;
  VisitAll(decoder, details);
  if (!decoder.is_good || !decoder.bytes.empty()) return std::nullopt;
  return details;
}

}  // namespace tallow

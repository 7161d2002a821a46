// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "details/song_details.h"

namespace tallow {

// Messages between the program and its child that reads song details. A message is its length in
// four bytes, the lowest first, and its content: a WhatToRead and a path in a request, details or
// the bytes of a picture in an answer. In the details, each number has eight bytes, the lowest
// first, and each text its length as such a number before it. The message "ab" is 02 00 00 00 61
// 62.

/// The bytes of a message's length.
inline constexpr std::size_t kMessageLengthBytes = 4;

/// Longer messages are damaged: requests are paths, and answers are details with at most ten texts
/// of kMaxTagText bytes, or pictures of at most kMaxPictureBytes.
inline constexpr std::size_t kMaxRequestBytes = 65'536;
inline constexpr std::size_t kMaxAnswerBytes = std::size_t{16} << 20U;

/// A message with its length.
std::string MessageOf(std::string_view content);

/// The length of a message from its first four bytes.
std::size_t MessageLength(std::string_view bytes) noexcept;

/// The content of a message with details.
std::string EncodeDetails(const SongDetails& details);

/// Decodes EncodeDetails.
/// \returns no value when the bytes are anything else
std::optional<SongDetails> DecodeDetails(std::string_view bytes);

}  // namespace tallow

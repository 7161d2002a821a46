// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace tallow {

// Requests that only Tallow's own player knows, beside the messages of player_messages.h. Both are
// copy-data records of at most kMaxPayload bytes.
//
// kAddFiles: eight bytes, a signed number in the byte order of the machine: where to add the files.
// Then the absolute paths, each followed by a NUL; in UTF-8 on Windows, unchanged bytes on Linux.
// All files are added, or none. They get consecutive entry numbers; the answer is the first of
// them, or kListHasNoRoom, or kNoSuchEntry when the entry to add them before is not in the list. An
// entry number is never used again while the player runs.
//
// kAsk: a JSON object. "do" says what to do; the answer is a JSON object, {} where the table names
// none. Texts are as in util/json_text.h. Times are in ms, and -1 where unknown.
//
// | do      | further members            | answer, effect                                         |
// |---------|----------------------------|--------------------------------------------------------|
// | state   | failuresAfter: number      | see below                                              |
// | queue   | from, count (at most 4096) | revision, upcoming, entries: numbers of the entries    |
// |         |                            | to play after the current one, from the from-th,       |
// |         |                            | counted from 0                                         |
// | move    | entries: numbers, before   | moves upcoming entries, in this order, before another  |
// |         |                            | upcoming one; before 0: to the end                     |
// | remove  | entries: numbers           | removes upcoming entries                               |
// | play    | entry                      | plays an entry of the list from its beginning          |
// | cue     | entry, position            | makes an entry the current one, paused at a position   |
// | repeat  | mode: off, all, one        |                                                        |
// | gain    | mode: off, track, album    | ReplayGain                                             |
// | devices |                            | devices: array of {name, description}                  |
// | device  | name                       | plays on a sound device; "auto": the system's          |
//
// Numbers of entries that are not in the list, or no longer upcoming, are ignored.
//
// The answer to "state" has status (PlayerStatus), position and length of the current track, entry
// (its number; 0 for an empty list), place (in the list, from 0), count (of the list), upcoming
// (number of entries that will play after the current one), ended (true after the end of the list,
// until something is played or added), revision (changes with the list, its order, and the current
// entry), volume, balance (-127 to 127), shuffle (true or false), repeat, gain, device,
// deviceMissing (true while a track plays silently because the sound device cannot be opened),
// stopAfter (true when playback stops after this track), and failures: those since the failure
// number failuresAfter, oldest first, each {number, entry, reason}; at most 64, and only the last
// 1,000 are kept. An entry that plays after all is reported as a failure without a reason.

/// Whether a request in JSON changes nothing. These are not sent to a player that has overdue
/// answers. Recognizes the requests as TallowPlayer writes them, with "do" as their first member.
constexpr bool AsksOnly(std::string_view request) noexcept {
  constexpr std::string_view kQueries[] = {R"({"do":"state")", R"({"do":"queue")",
                                           R"({"do":"devices")"};
  return std::any_of(std::begin(kQueries), std::end(kQueries),
                     [&](std::string_view query) { return request.starts_with(query); });
}

/// Values of the eight bytes before the paths of kAddFiles; other values are the number of the
/// entry that the files are added before.
enum AddFilesAt : std::int64_t {
  kAtEnd = 0,
  kPlayNext = -1,  ///< behind the current entry and earlier files that were added there
};

enum class RepeatMode { kOff, kAll, kOne };
enum class ReplayGain { kOff, kTrack, kAlbum };

struct SoundDevice {
  std::string name;         ///< as the request "device" takes it
  std::string description;  ///< as the user knows it
};

}  // namespace tallow

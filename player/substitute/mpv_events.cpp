// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/substitute/mpv_events.h"

#include <cstring>
#include <string>
#include <string_view>

#include "library/tag_text.h"
#include "util/text.h"

namespace tallow {
namespace {

/// Returns the number of the playlist entry that a command has added; kNoEntry for none.
EntryNumber AddedEntry(const mpv_event& reply) {
  const mpv_node& result = static_cast<mpv_event_command*>(reply.data)->result;
  if (result.format != MPV_FORMAT_NODE_MAP) return kNoEntry;
  for (int k = 0; k < result.u.list->num; ++k)
    if (std::strcmp(result.u.list->keys[k], "playlist_entry_id") == 0)
      return result.u.list->values[k].u.int64;
  return kNoEntry;
}

/// Converts the text of a tag to UTF-8.
std::string TextOfTag(const char* bytes) {
  std::string text(bytes);
  return IsValidUtf8(text) ? text : DecodeTagField(text);
}

/// \param map a node of format MPV_FORMAT_NODE_MAP
TrackTags TagsOfMap(const mpv_node& map) {
  TrackTags tags;
  for (int k = 0; k < map.u.list->num; ++k) {
    const mpv_node& value = map.u.list->values[k];
    if (value.format != MPV_FORMAT_STRING) continue;
    const std::string_view key = map.u.list->keys[k];
    if (EqualsIgnoringCase(key, "title")) tags.title = TextOfTag(value.u.string);
    if (EqualsIgnoringCase(key, "artist")) tags.artist = TextOfTag(value.u.string);
  }
  return tags;
}

void DispatchProperty(const mpv_event_property& property, PlaybackListener& listener) {
  const std::string_view name = property.name;
  if (name == "time-pos" && property.format == MPV_FORMAT_DOUBLE) {
    listener.OnPosition(*static_cast<double*>(property.data));
  } else if (name == "duration" && property.format == MPV_FORMAT_DOUBLE) {
    listener.OnLength(*static_cast<double*>(property.data));
  } else if (name == "metadata" && property.format == MPV_FORMAT_NODE) {
    const mpv_node& node = *static_cast<mpv_node*>(property.data);
    if (node.format == MPV_FORMAT_NODE_MAP) listener.OnTags(TagsOfMap(node));
  } else if (name == "current-ao") {
    // Without a value no track plays.
    listener.OnDevice(property.format == MPV_FORMAT_STRING &&
                      std::strcmp(*static_cast<char**>(property.data), "null") == 0);
  }
}

/// Why a file could not be played, as users understand it.
const char* ReasonOf(int error) {
  switch (error) {
    case MPV_ERROR_LOADING_FAILED:
      return "The file cannot be opened.";
    case MPV_ERROR_UNKNOWN_FORMAT:
      return "Its format is not known.";
    case MPV_ERROR_NOTHING_TO_PLAY:
      return "It has no sound.";
    case MPV_ERROR_AO_INIT_FAILED:
      return "The sound device cannot be opened.";
    default:
      return mpv_error_string(error);
  }
}

void DispatchEndOfFile(const mpv_event_end_file& end, PlaybackListener& listener) {
  const bool failed = end.reason == MPV_END_FILE_REASON_ERROR;
  listener.OnTrackEnded(end.playlist_entry_id, failed ? ReasonOf(end.error) : nullptr);
}

/// \param map a node of format MPV_FORMAT_NODE_MAP
SoundDevice DeviceOfMap(const mpv_node& map) {
  SoundDevice device;
  for (int k = 0; k < map.u.list->num; ++k) {
    const mpv_node& value = map.u.list->values[k];
    if (value.format != MPV_FORMAT_STRING) continue;
    const std::string_view key = map.u.list->keys[k];
    if (key == "name") device.name = value.u.string;
    if (key == "description") device.description = value.u.string;
  }
  return device;
}

}  // namespace

std::vector<SoundDevice> DevicesOfReply(const mpv_event& reply) {
  std::vector<SoundDevice> devices;
  if (reply.error < 0) return devices;
  const auto& property = *static_cast<mpv_event_property*>(reply.data);
  if (property.format != MPV_FORMAT_NODE) return devices;
  const mpv_node& list = *static_cast<mpv_node*>(property.data);
  if (list.format != MPV_FORMAT_NODE_ARRAY) return devices;
  for (int k = 0; k < list.u.list->num; ++k)
    if (list.u.list->values[k].format == MPV_FORMAT_NODE_MAP)
      devices.push_back(DeviceOfMap(list.u.list->values[k]));
  return devices;
}

void DispatchMpvEvent(const mpv_event& event, PlaybackListener& listener) {
  const bool succeeded = event.error >= 0;
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      return listener.OnReply(event.reply_userdata, succeeded,
                              succeeded ? AddedEntry(event) : kNoEntry);
    case MPV_EVENT_START_FILE:
      return listener.OnTrackStarted(
          static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id);
    case MPV_EVENT_FILE_LOADED:
      return listener.OnTrackOpened();
    case MPV_EVENT_END_FILE:
      return DispatchEndOfFile(*static_cast<mpv_event_end_file*>(event.data), listener);
    case MPV_EVENT_IDLE:
      return listener.OnIdle();
    case MPV_EVENT_PLAYBACK_RESTART:
      return listener.OnPlaybackRestarted();
    case MPV_EVENT_PROPERTY_CHANGE:
    case MPV_EVENT_GET_PROPERTY_REPLY:
      if (succeeded) DispatchProperty(*static_cast<mpv_event_property*>(event.data), listener);
      if (event.event_id == MPV_EVENT_GET_PROPERTY_REPLY &&
          event.reply_userdata == kLastPropertyReply)
        listener.OnPropertiesReported();
      return;
    case MPV_EVENT_QUEUE_OVERFLOW:
      return listener.OnEventsLost();
    default:
      return;
  }
}

}  // namespace tallow

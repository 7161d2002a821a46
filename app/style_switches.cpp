// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/style_switches.h"

namespace tallow {
namespace {

constexpr StyleSwitch kStyleSwitches[] = {
    {"newerTags", "Read newer &tags",
     "Uses all tags of a file, and the album artist before the artist; without this, only ID3v1 "
     "tags are read.",
     &Switches::newer_tags},
    {"moreFormats", "Find songs of all &formats",
     "Also finds FLAC, Ogg, Opus, M4A, WMA, WAV and other music files; without this, only MP3 "
     "files.",
     &Switches::more_formats},
    {"songsByPath", "Every file is a song of its &own",
     "Two files of one name in different folders are two songs; without this, they count as one.",
     &Switches::songs_by_path},
    {"wholeArtists", "Compare the whole name of an &artist",
     "A song is filed under the artist of exactly its name, ignoring case; without this, under the "
     "first artist whose name its own begins with.",
     &Switches::whole_artists},
    {"fourDigitYears", "Find the &year in any date",
     "\"12/05/1999\" is filed under 1999; without this, only a date that begins with its year is.",
     &Switches::four_digit_years},
    {"allDecades", "Use all &decades",
     "A song of 2024 is filed under \"2020's\", and a decade gets its folder when it is needed; "
     "without this, 2024 is filed under \"20's\".",
     &Switches::all_decades},
    {"albums", "Make al&bum folders",
     "A sample jukebox also gets the automatic folder \"Album\", with the songs of each album in "
     "their order; without this, it does not.",
     &Switches::albums},
    {"naturalOrder", "&Sort automatic folders",
     "The folders inside automatic folders are sorted by name; without this, they stay in the "
     "order of their making.",
     &Switches::natural_order},
    {"newSubfolders", "Find n&ew subfolders",
     "New folders inside folders of songs, and new artists and albums beside others, are found by "
     "a search of the known folders; without this, only by one of the whole computer.",
     &Switches::new_subfolders},
    {"fillsNewJukeboxes", "Fill &new jukeboxes",
     "A new jukebox has all songs in \"All Songs\"; without this, the folder is empty.",
     &Switches::fills_new_jukeboxes},
    {"reopensJukeboxes", "&Reopen all jukeboxes",
     "A start opens all jukeboxes that were open; without this, only the one that was saved last.",
     &Switches::reopens_jukeboxes},
    {"playsOn", "Play on &in the folder",
     "A double click or Enter plays the songs of the folder from that one on, and Space pauses; "
     "without this, only the one song is played.",
     &Switches::plays_on},
    {"columnsOfDetails", "More col&umns in lists",
     "Lists begin with title, artist, album, year, length and rank, and the status bar tells how "
     "many songs they have; without this, they begin with file name and number.",
     &Switches::columns_of_details},
    {"findField", "Find songs &while you type",
     "A field in the toolbar lists the songs of the library that have the typed words; without "
     "this, only Ctrl+F finds songs.",
     &Switches::find_field},
    {"moreCommands", "More commands for son&gs and folders",
     "Songs are put in order by hand, ranked by keys, and have properties, and the pop-up menus "
     "have more items; without this, songs are ordered by sorting and ranked by the menu.",
     &Switches::more_commands},
};

}  // namespace

std::span<const StyleSwitch> StyleSwitches() { return kStyleSwitches; }

Style StyleOf(const Switches& switches) {
  if (switches == kClassicStyle) return Style::kClassic;
  return switches == kModernStyle ? Style::kModern : Style::kCustom;
}

const Switches& SwitchesOf(Style style) {
  return style == Style::kModern ? kModernStyle : kClassicStyle;
}

std::string_view NameOfStyle(Style style) {
  if (style == Style::kClassic) return "classic";
  return style == Style::kModern ? "modern" : "custom";
}

std::optional<Style> StyleOfName(std::string_view name) {
  for (const Style style : {Style::kClassic, Style::kModern, Style::kCustom})
    if (NameOfStyle(style) == name) return style;
  return std::nullopt;
}

}  // namespace tallow

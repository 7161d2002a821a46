// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/mp3_genra.h"

#include <algorithm>
#include <array>

#include "util/errors.h"

namespace tallow {
namespace {

constexpr std::int16_t kNoGenre = 255;

/// Genre names by number, from 0.
constexpr std::array<std::string_view, 148> kNames = {"Blues",
                                                      "Classic Rock",
                                                      "Country",
                                                      "Dance",
                                                      "Disco",
                                                      "Funk",
                                                      "Grunge",
                                                      "Hip Hop",
                                                      "Jazz",
                                                      "Metal",
                                                      "New Age",
                                                      "Oldies",
                                                      "Other",
                                                      "Pop",
                                                      "Rhythm and Blues",
                                                      "Rap",
                                                      "Reggae",
                                                      "Rock",
                                                      "Techno",
                                                      "Industrial",
                                                      "Alternative",
                                                      "Ska",
                                                      "DeathMetal",
                                                      "Pranks",
                                                      "Soundtrack",
                                                      "Euro Techno",
                                                      "Ambient",
                                                      "Trip Hop",
                                                      "Vocal",
                                                      "Jazz Funk",
                                                      "Fusion",
                                                      "Trance",
                                                      "Classical",
                                                      "Instrumental",
                                                      "Acid",
                                                      "House",
                                                      "Game",
                                                      "Sound Clip",
                                                      "Gospel",
                                                      "Noise",
                                                      "Alternative Rock",
                                                      "Bass",
                                                      "Soul",
                                                      "Punk",
                                                      "Space",
                                                      "Meditative",
                                                      "Instrumental Pop",
                                                      "Instrumental Rock",
                                                      "Ethnic",
                                                      "Gothic",
                                                      "Darkwave",
                                                      "Techno Industrial",
                                                      "Electronic",
                                                      "Pop Folk",
                                                      "Eurodance",
                                                      "Dream",
                                                      "Southern Rock",
                                                      "Comedy",
                                                      "Cult",
                                                      "Gangsta",
                                                      "Top 40",
                                                      "Christian Rap",
                                                      "Pop Funk",
                                                      "Jungle",
                                                      "Native American",
                                                      "Cabaret",
                                                      "New Wave",
                                                      "Psychadelic",
                                                      "Rave",
                                                      "Show Tunes",
                                                      "Trailer",
                                                      "Lo Fi",
                                                      "Tribal",
                                                      "Acid Punk",
                                                      "Acid Jazz",
                                                      "Polka",
                                                      "Retro",
                                                      "Musical",
                                                      "Rock n Roll",
                                                      "Hard Rock",
                                                      "Folk",
                                                      "Folk Rock",
                                                      "National Folk",
                                                      "Swing",
                                                      "Fast Fusion",
                                                      "Bebob",
                                                      "Latin",
                                                      "Revival",
                                                      "Celtic",
                                                      "Bluegrass",
                                                      "Avantgarde",
                                                      "Gothic Rock",
                                                      "Progressive Rock",
                                                      "Psychedelic Rock",
                                                      "Symphonic Rock",
                                                      "Slow Rock",
                                                      "Big Band",
                                                      "Chorus",
                                                      "Easy Listening",
                                                      "Acoustic",
                                                      "Humour",
                                                      "Speech",
                                                      "Chanson",
                                                      "Opera",
                                                      "Chamber Music",
                                                      "Sonata",
                                                      "Symphony",
                                                      "Booty Bass",
                                                      "Primus",
                                                      "Porn Groove",
                                                      "Satire",
                                                      "Slow Jam",
                                                      "Club",
                                                      "Tango",
                                                      "Samba",
                                                      "Folklore",
                                                      "Ballad",
                                                      "Power Ballad",
                                                      "Rhytmic Soul",
                                                      "Freestyle",
                                                      "Duet",
                                                      "Punk Rock",
                                                      "Drum Solo",
                                                      "Acapella",
                                                      "Euro House",
                                                      "Dance Hall",
                                                      "Goa",
                                                      "Drum n Bass",
                                                      "Club House",
                                                      "Hardcore",
                                                      "Terror",
                                                      "Indie",
                                                      "Brit Pop",
                                                      "Negerpunk",
                                                      "Polsk Punk",
                                                      "Beat",
                                                      "Christian Gangsta Rap",
                                                      "Heavy Metal",
                                                      "Black Metal",
                                                      "Crossover",
                                                      "Contemporary Christian",
                                                      "Christian Rock",
                                                      "Merengue",
                                                      "Salsa",
                                                      "Trash Metal",
                                                      "Anime",
                                                      "J Pop",
                                                      "Synth Pop"};

constexpr std::string_view kKeyPrefix = "ID";

}  // namespace

std::string_view GenreName(std::int32_t id) noexcept {
  if (id == kNoGenre) return "None";
  if (id < 0 || id >= static_cast<std::int32_t>(kNames.size())) return {};
  return kNames[static_cast<std::size_t>(id)];
}

GenraCollection::GenraCollection() {
  const auto add = [this](std::int16_t id) {
    genres_.emplace_back();
    genres_.back().SetBoth(GenreName(id), id);
  };
  genres_.reserve(kNames.size() + 1);
  for (std::int16_t id = 0; id < static_cast<std::int16_t>(kNames.size()); ++id) add(id);
  add(kNoGenre);
}

const MP3Genra& GenraCollection::Item(std::int32_t index) const {
  if (index < 1 || static_cast<std::size_t>(index) > genres_.size())
    throw SubscriptError("There is no genre at place " + std::to_string(index) + ".");
  return genres_[static_cast<std::size_t>(index - 1)];
}

const MP3Genra& GenraCollection::Item(std::string_view key) const {
  const auto found = std::find_if(genres_.begin(), genres_.end(), [&](const MP3Genra& genre) {
    return key.starts_with(kKeyPrefix) &&
           key.substr(kKeyPrefix.size()) == std::to_string(genre.ID());
  });
  if (found == genres_.end())
    throw SubscriptError("There is no genre of the key '" + std::string(key) + "'.");
  return *found;
}

}  // namespace tallow

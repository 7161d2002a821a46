// SPDX-License-Identifier: GPL-3.0-or-later
#include "jukebox/filing_rules.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "util/number.h"
#include "util/text.h"

namespace tallow {
namespace {

constexpr std::size_t kYearDigits = 4;
constexpr std::int32_t kFirstDecade = 1920;
constexpr std::int32_t kYearsOfDecade = 10;
/// From this decade on, a folder text has the whole year.
constexpr std::int32_t kFirstWholeDecade = 2010;
constexpr std::string_view kDecadeEnd = "'s";

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

}  // namespace

std::string DecadeText(std::int32_t year) {
  if (year < kFirstDecade) return {};
  const std::int32_t first = year - year % kYearsOfDecade;
  std::string text = std::to_string(first);
  if (first < kFirstWholeDecade) text.erase(0, 2);
  return text.append(kDecadeEnd);
}

std::int32_t FirstYearOfDecade(std::string_view text) {
  if (!text.ends_with(kDecadeEnd)) return 0;
  const std::string_view digits = text.substr(0, text.size() - kDecadeEnd.size());
  if (digits.empty() || digits.size() > kYearDigits ||
      !std::all_of(digits.begin(), digits.end(), IsDigit))
    return 0;
  const std::int32_t number = TryConvertToInt32(digits).value_or(0);
  for (const std::int32_t century : {0, 1900, 2000})
    if (DecadeText(century + number) == text) return century + number;
  return 0;
}

std::string AlbumFolderText(const SongTags& tags) {
  const std::string_view album = Trim(StripAtNul(tags.album));
  const std::string_view artist = Trim(StripAtNul(tags.FolderArtist()));
  if (album.empty()) return {};
  std::string text(album);
  if (!artist.empty()) text.append(" (").append(artist).append(")");
  return ToNfc(text);
}

std::vector<std::int32_t> OrderWithNew(std::int32_t count, std::int32_t first_new,
                                       const ComesBefore& comes_before) {
  std::vector<std::int32_t> added(static_cast<std::size_t>(count - first_new));
  std::iota(added.begin(), added.end(), first_new);
  std::stable_sort(added.begin(), added.end(), comes_before);
  std::vector<std::int32_t> order;
  order.reserve(static_cast<std::size_t>(count));
  std::int32_t old = 0;
  // No old element that was passed comes after a later new one, because the new ones are sorted.
  for (const std::int32_t element : added) {
    for (; old < first_new && !comes_before(element, old); ++old) order.push_back(old);
    order.push_back(element);
  }
  for (; old < first_new; ++old) order.push_back(old);
  return order;
}

}  // namespace tallow

// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/like.h"

#include <cstddef>
#include <string>

#include "util/text.h"

namespace tallow {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// One parsed element of a pattern.
struct Element {
  enum class Kind { kAnyRun, kAnyOne, kDigit, kList, kNothing, kCharacter };
  Kind kind;
  char32_t character = 0;  ///< for kCharacter
  std::string_view list;   ///< for kList, without the brackets and without the leading `!`
  bool negated = false;    ///< for kList: the list starts with `!`
  std::size_t next;        ///< position of the following element
};

Element ReadElement(std::string_view pattern, std::size_t at) noexcept {
  using Kind = Element::Kind;
  switch (pattern[at]) {
    case '*':
      return {.kind = Kind::kAnyRun, .list = {}, .next = at + 1};
    case '?':
      return {.kind = Kind::kAnyOne, .list = {}, .next = at + 1};
    case '#':
      return {.kind = Kind::kDigit, .list = {}, .next = at + 1};
    case '[': {
      const std::size_t close = pattern.find(']', at + 1);
      if (close == kNone) break;
      std::string_view list = pattern.substr(at + 1, close - at - 1);
      if (list.empty()) return {.kind = Kind::kNothing, .list = {}, .next = close + 1};
      const bool negated = list.size() > 1 && list.front() == '!';
      if (negated) list.remove_prefix(1);
      return {.kind = Kind::kList, .list = list, .negated = negated, .next = close + 1};
    }
    default:
      break;
  }
  std::size_t next = at;
  const char32_t c = NextCharacter(pattern, next);
  return {.kind = Kind::kCharacter, .character = c, .list = {}, .next = next};
}

bool InList(char32_t c, std::string_view list) noexcept {
  for (std::size_t i = 0; i < list.size();) {
    const char32_t low = NextCharacter(list, i);
    if (i + 1 < list.size() && list[i] == '-') {
      ++i;
      const char32_t high = NextCharacter(list, i);
      if (low <= c && c <= high) return true;
    } else if (c == low) {
      return true;
    }
  }
  return false;
}

bool MatchesOne(const Element& element, char32_t c) noexcept {
  switch (element.kind) {
    case Element::Kind::kAnyOne:
      return true;
    case Element::Kind::kDigit:
      return c >= U'0' && c <= U'9';
    case Element::Kind::kList:
      return InList(c, element.list) != element.negated;
    default:
      return c == element.character;
  }
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern) noexcept {
  std::size_t t = 0;
  std::size_t p = 0;
  // Backtracking point: when the match after the last `*` fails, let the `*` match one more
  // character and retry from here.
  std::size_t retry_pattern = kNone;
  std::size_t retry_text = 0;
  for (;;) {
    if (p < pattern.size()) {
      const Element element = ReadElement(pattern, p);
      if (element.kind == Element::Kind::kAnyRun) {
        p = retry_pattern = element.next;
        retry_text = t;
        continue;
      }
      if (element.kind == Element::Kind::kNothing) {
        p = element.next;
        continue;
      }
      std::size_t after = t;
      if (t < text.size() && MatchesOne(element, NextCharacter(text, after))) {
        t = after;
        p = element.next;
        continue;
      }
    } else if (t == text.size()) {
      return true;
    }
    if (retry_pattern == kNone || retry_text >= text.size()) return false;
    NextCharacter(text, retry_text);
    t = retry_text;
    p = retry_pattern;
  }
}

bool HasWildcards(std::string_view text) noexcept { return text.find_first_of("?*#[") != kNone; }

bool SameName(std::string_view text, std::string_view pattern) noexcept {
  return text == pattern || (HasWildcards(pattern) && Like(text, pattern));
}

bool MatchesFilePattern(std::string_view name, std::string_view pattern) {
  const std::size_t separator = pattern.find(';');
  if (separator != std::string_view::npos)
    return MatchesFilePattern(name, pattern.substr(0, separator)) ||
           MatchesFilePattern(name, pattern.substr(separator + 1));
  if (!pattern.empty() && pattern.front() == '*' && !HasWildcards(pattern.substr(1))) {
    const std::string_view ending = pattern.substr(1);
    if (IsAscii(ending))
      return name.size() >= ending.size() &&
             EqualsIgnoringCase(name.substr(name.size() - ending.size()), ending);
  }
  // In a file pattern `#` and `[` are ordinary characters: quote each as a list of one character.
  std::string quoted;
  for (const char c : ToLower(pattern)) {
    if (c == '#' || c == '[')
      quoted.append({'[', c, ']'});
    else
      quoted += c;
  }
  return Like(ToLower(name), quoted);
}

}  // namespace tallow

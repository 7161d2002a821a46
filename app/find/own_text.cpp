// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/find/own_text.h"

#include "app/find/find_words.h"
#include "util/fold.h"

namespace tallow {

std::string_view OwnTextMaker::Make(std::string_view name, std::string_view title) {
  text_.clear();
  AppendFolded(text_, name);
  title_.clear();
  AppendFolded(title_, title);
  // What is found in the title is found in a name that contains it, too.
  if (!title_.empty() && MatchOf(title_, text_) != WordMatch::kAtWordStart)
    (text_ += kBetweenTexts) += title_;
  return std::string_view(text_).substr(0, kMaxOwnText);
}

}  // namespace tallow

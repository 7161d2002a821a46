// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "library/switches.h"

namespace tallow {

/// The style that a set of switches makes.
enum class Style {
  kClassic,  ///< kClassicStyle
  kModern,   ///< kModernStyle
  kCustom,   ///< any other combination
};

/// A switch as the preferences file names it and the preferences dialog shows it.
struct StyleSwitch {
  const char* name;         ///< the member in the file, unique
  const char* caption;      ///< with a mnemonic that is unique in the dialog
  const char* explanation;  ///< a sentence on what the switch does and on what happens without it
  bool Switches::*member;
};

/// All switches, in the order in which the dialog shows them.
std::span<const StyleSwitch> StyleSwitches();

Style StyleOf(const Switches& switches);
/// The switches of a style. \param style not kCustom
const Switches& SwitchesOf(Style style);

/// The name of a style in the file and on the command line: "classic", "modern" or "custom".
std::string_view NameOfStyle(Style style);
/// The style of a name; no value when there is none of this name.
std::optional<Style> StyleOfName(std::string_view name);

}  // namespace tallow

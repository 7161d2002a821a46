// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

namespace tallow {

/// The first group of exactly four digits of a date: "1999" of "12/05/1999". Empty when there is
/// none, and when it is "0000".
std::string_view FourDigitYear(std::string_view date) noexcept;

/// FourDigitYear as a number; 0 when there is none.
std::int32_t YearOfDate(std::string_view date) noexcept;

}  // namespace tallow

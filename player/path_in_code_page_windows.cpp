// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/path_in_code_page_windows.h"

#include <cwchar>
#include <optional>
#include <windows.h>

#include "util/wide_text_windows.h"

namespace tallow {

unsigned SystemCodePage() {
  wchar_t digits[16] = {};
  DWORD size = sizeof digits - sizeof digits[0];
  if (RegGetValueW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage", L"ACP",
                   RRF_RT_REG_SZ, nullptr, digits, &size) == ERROR_SUCCESS) {
    const auto page = static_cast<UINT>(std::wcstoul(digits, nullptr, 10));
    if (IsValidCodePage(page)) return page;
  }
  DWORD page = 0;
  GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                  reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
  return page == 0 ? CP_UTF8 : page;
}

namespace {

/// How to treat a character that is not in the code page: fail, or replace it by a question mark.
enum class Replacing { kNo, kYes };

std::optional<std::string> InCodePage(UINT page, const std::wstring& text, Replacing replacing) {
  const auto length = static_cast<int>(text.size());
  // For UTF-8, WideCharToMultiByte allows neither this flag nor this pointer, and it has all
  // characters.
  const bool is_utf8 = page == CP_UTF8;
  const DWORD flags = is_utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
  BOOL replaced = FALSE;
  const int needed =
      WideCharToMultiByte(page, flags, text.data(), length, nullptr, 0, nullptr, nullptr);
  if (needed <= 0) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(page, flags, text.data(), length, bytes.data(), needed, nullptr,
                      is_utf8 ? nullptr : &replaced);
  if (replaced && replacing == Replacing::kNo) return std::nullopt;
  return bytes;
}

std::optional<std::wstring> ShortPath(const std::string& path) {
  // ToWidePath adds the prefix for paths over 260 characters, and GetShortPathNameW keeps the
  // prefix.
  const std::wstring wide = ToWidePath(path);
  const std::size_t prefix = wide.size() - ToWide(path).size();
  const DWORD needed = GetShortPathNameW(wide.c_str(), nullptr, 0);
  if (needed == 0) return std::nullopt;
  std::wstring shortened(needed, L'\0');
  const DWORD length = GetShortPathNameW(wide.c_str(), shortened.data(), needed);
  if (length <= prefix || length >= needed) return std::nullopt;
  shortened.resize(length);
  return shortened.substr(prefix);
}

}  // namespace

std::string PathInCodePage(const std::string& path, unsigned page) {
  const std::wstring wide = ToWide(path);
  if (const auto bytes = InCodePage(page, wide, Replacing::kNo)) return *bytes;
  if (const auto shortened = ShortPath(path))
    if (const auto bytes = InCodePage(page, *shortened, Replacing::kNo)) return *bytes;
  // Some disks have no short names. The player then gets a path with question marks, which it will
  // not find.
  return InCodePage(page, wide, Replacing::kYes).value_or(std::string());
}

std::string PathFromCodePage(const std::string& bytes, unsigned page) {
  const auto length = static_cast<int>(bytes.size());
  const int needed = MultiByteToWideChar(page, 0, bytes.data(), length, nullptr, 0);
  if (needed <= 0) return bytes;
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(page, 0, bytes.data(), length, wide.data(), needed);
  return FromWide(wide);
}

}  // namespace tallow

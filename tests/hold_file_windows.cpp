// SPDX-License-Identifier: GPL-3.0-or-later
// Holds a file open without sharing, so that no other program can open, replace or delete it.
//
// Usage: hold_file FILE UNTIL     ends when the file UNTIL exists, or after a minute
#include <windows.h>

int wmain(int argc, wchar_t** argv) {
  if (argc != 3) return 2;
  const HANDLE file =
      CreateFileW(argv[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  constexpr int kMaxTimes = 600;
  constexpr DWORD kPause = 100;  // ms
  for (int k = 0; k < kMaxTimes && GetFileAttributesW(argv[2]) == INVALID_FILE_ATTRIBUTES; ++k)
    Sleep(kPause);
  CloseHandle(file);
  return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for Winamp on Windows: a window of the same class that logs every message and answers
// from a list. It plays nothing.
//
// TALLOW_STAND_IN_LOG names the log file. Each line is a message: its three numbers, and for a
// copy-data record also the data in quotes. The first line records how the program was started.
// TALLOW_STAND_IN_ANSWERS names a file of answers, one per line: "1024 1 105=60".
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <windows.h>

namespace {

constexpr WPARAM kClosePlayer = 40001;

std::string log_path;
std::map<std::string, long> answers;

void Log(const std::string& line) {
  std::ofstream(log_path, std::ios::app | std::ios::binary) << line << "\n";
}

std::string Describe(UINT message, WPARAM wParam, LPARAM lParam) {
  return std::to_string(message) + " " + std::to_string(static_cast<long long>(wParam)) + " " +
         std::to_string(static_cast<long long>(lParam));
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COPYDATA) {
    const auto& record = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    std::string line = Describe(message, wParam, static_cast<LPARAM>(record.dwData)) + " \"";
    const auto* const bytes = static_cast<const char*>(record.lpData);
    for (DWORD k = 0; k < record.cbData; ++k) {
      if (bytes[k] == '\0')
        line += "\\0";
      else
        line += bytes[k];
    }
    Log(line + "\"");
    return TRUE;
  }
  if (message == WM_COMMAND || message == WM_USER) {
    const std::string text = Describe(message, wParam, lParam);
    Log(text);
    if (message == WM_COMMAND && wParam == kClosePlayer) DestroyWindow(window);
    const auto answer = answers.find(text);
    return answer == answers.end() ? 0 : answer->second;
  }
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcA(window, message, wParam, lParam);
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
  log_path = Variable("TALLOW_STAND_IN_LOG");
  std::ifstream file(Variable("TALLOW_STAND_IN_ANSWERS"));
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos)
      answers[line.substr(0, equals)] = std::strtol(line.c_str() + equals + 1, nullptr, 0);
  }
  WNDCLASSA window_class{};
  window_class.lpfnWndProc = Procedure;
  window_class.hInstance = instance;
  window_class.lpszClassName = "Winamp v1.x";
  if (RegisterClassA(&window_class) == 0) return 1;
  Log("started " + std::to_string(show));
  if (CreateWindowA("Winamp v1.x", "Winamp 2.81", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                    nullptr, instance, nullptr) == nullptr) {
    Log("no window");
    return 1;
  }
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}

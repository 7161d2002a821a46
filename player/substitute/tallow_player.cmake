# SPDX-License-Identifier: GPL-3.0-or-later
# The player for platforms that have no Winamp.
pkg_check_modules(MPV REQUIRED IMPORTED_TARGET mpv)
pkg_check_modules(SYSTEMD REQUIRED IMPORTED_TARGET libsystemd)

add_executable(tallow-player
  player/substitute/mpris.cpp
  player/substitute/player_requests.cpp
  player/substitute/request_server.cpp
  player/substitute/song_player.cpp
  player/substitute/sound_engine.cpp
  player/substitute/tallow_player_main.cpp)
target_link_libraries(tallow-player PRIVATE tallow_core PkgConfig::MPV PkgConfig::SYSTEMD)

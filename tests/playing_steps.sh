# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# To be sourced: what the tests that play songs do in the same way on Linux and on Windows. They
# define `ask`, which prints what the player answers to a message or to a request in JSON, and
# source screen_user.sh.

# state_has TEXT: whether the player's state has a member with a value, such as "place":2
state_has() { ask '{"do":"state","failuresAfter":0}' | tr -d ' ' | grep -qF "$1"; }
is_paused() { [ "$(ask 1024 0 104)" = 3 ]; }
plays() { [ "$(ask 1024 0 104)" = 1 ]; }
title_begins() { window_named "^$1.* - Tallow - "; }

# Uses the player by keys while it plays the second of six songs, of which the third is Cedar and
# the fourth is damaged.
use_player_by_keys() {
  # Space pauses and goes on.
  keys space
  until_true 10 "the pause" is_paused
  picture 3-paused
  keys space
  until_true 10 "the song again" plays

  # The queue shows what is to come.
  keys ctrl+shift+u
  sleep 1
  picture 4-queue
  until_true 5 "four songs to come" state_has '"upcoming":4'
  keys ctrl+shift+u

  # The next song; then the damaged one is passed over.
  keys ctrl+t
  until_true 10 "the third song" state_has '"place":2'
  until_true 10 "its title" title_begins Cedar
  keys ctrl+t
  until_true 20 "the song behind the damaged one" state_has '"place":4'
  until_true 10 "the reason" state_has '"reason":'
  sleep 1
  picture 5-damaged-song

  # Show Playing Song.
  keys Home ctrl+j
  picture 6-shown
}

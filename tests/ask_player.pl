#!/usr/bin/env perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Sends one request to the running player and prints its answer; player/player_socket_linux.h and
# player/tallow_player_requests.h describe both.
#
# Usage: ask_player.pl SOCKET MESSAGE WPARAM LPARAM   prints a number
#        ask_player.pl SOCKET JSON                    prints JSON
use strict;
use warnings;
use IO::Socket::UNIX;

my ($path, @request) = @ARGV;
my $socket = IO::Socket::UNIX->new(Type => SOCK_STREAM, Peer => $path) or die "$path: $!";

# Reads exactly so many bytes.
sub receive {
  my $count = shift;
  my $bytes = '';
  while (length($bytes) < $count) {
    my $got = sysread($socket, $bytes, $count - length($bytes), length($bytes));
    die "The player closed the connection" unless $got;
  }
  return $bytes;
}

if (@request == 3) {
  my ($message, $wparam, $lparam) = @request;
  syswrite($socket, pack('L L q q', $message, 0, $wparam, $lparam));
  print unpack('q', receive(8)), "\n";
} else {
  my $json = $request[0];
  # 74: WM_COPYDATA; the code is kAsk.
  syswrite($socket, pack('L L q q', 74, length($json), 0, 0x54410002) . $json);
  print receive(unpack('q', receive(8))), "\n";
}

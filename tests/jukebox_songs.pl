#!/usr/bin/env perl
# SPDX-License-Identifier: GPL-3.0-or-later
# Prints the folders of a jukebox file with the names of their songs, one folder per line:
# "Artist/Queen: Bicycle.mp3 Seaside.mp3". Folders and songs are sorted.
#
# Usage: jukebox_songs.pl FILE [--classic]
#   --classic  leaves out what the classic style does not show of the jukebox: songs of other formats
#              than MP3, all but the first of each file name, the folder "Album" of the program, and
#              folders below other folders that hold only such songs, but no decades to "00's"
use strict;
use warnings;
use JSON::PP;

my ($file, $classic) = @ARGV;
open(my $in, '<:raw', $file) or die "$file: $!";
my $jukebox = decode_json(do { local $/; <$in> });
binmode(STDOUT, ':utf8');

# The song of each file name with the lowest number.
my %names = %{$jukebox->{names}};
my %first;
for my $number (sort { $b <=> $a } keys %names) { $first{lc $names{$number}} = $number }
my $is_shown = sub {
  my $number = shift;
  return !$classic || ($names{$number} =~ /\.mp3$/i && $first{lc $names{$number}} == $number);
};

my (%path, %hidden, %songs);
for my $folder (@{$jukebox->{folders}}) {
  my $key = $folder->{key};
  my $above = $folder->{parent};
  $path{$key} = ($above ? "$path{$above}/" : '') . $folder->{text};
  $hidden{$key} = $classic && ($folder->{automatic} || ($above && $hidden{$above}));
  my @shown = grep { $is_shown->($_) } @{$folder->{songs}};
  $songs{$key} = join(' ', sort map { $names{$_} } @shown);
  # The decades of every sample jukebox are always shown.
  my $is_decade = $path{$key} =~ m{^Decades/\d\d's$};
  $hidden{$key} = 1 if $above && !$is_decade && @{$folder->{songs}} && !@shown;
}
print sort map { "$path{$_}: $songs{$_}\n" } grep { !$hidden{$_} } keys %path;

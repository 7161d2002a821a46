// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

class DocumentWindows;
class JukeboxArea;
class Tallow;

/// Makes a new jukebox and shows it. While no jukebox is open, this is the sample jukebox with all
/// songs filed; otherwise a jukebox with the folder "All Songs", see BuildNewJukebox.
void MakeNewJukebox(Tallow& tallow, JukeboxArea& jukeboxes, DocumentWindows& windows);

}  // namespace tallow

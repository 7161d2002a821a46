// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/dialogs/preferences_page.h"

namespace tallow {

class BusyFrame;
class DriveSearches;
class PlayerLink;
class Tallow;

/// What the page Player of the preferences needs of the frame window. The parameters have to
/// outlive the dialog.
PlayerPageContext MakePlayerPageContext(Tallow& tallow, DriveSearches& searches, PlayerLink& link,
                                        BusyFrame& busy);

}  // namespace tallow

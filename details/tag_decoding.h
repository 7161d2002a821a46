// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tallow {

/// Sets how TagLib decodes texts without a declared encoding: as those of ID3v1, see tag_text.h.
/// TagLib has these settings in global variables, so this must be called before it reads a file.
/// Later calls do nothing; may be called on any threads.
void SetTextDecoding();

}  // namespace tallow

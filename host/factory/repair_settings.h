#pragma once

#include "orvel/orvel.h"

namespace orvelhost {

/// What the tools of the repair section do to dialogue at amount 0 and at full amount, as the
/// configuration of that section holds it.
orvel::PropList RepairSettings();

}  // namespace orvelhost

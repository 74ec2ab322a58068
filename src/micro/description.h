#pragma once

#include "micro/animation.h"

#include <QString>

namespace micro {

// What a screen reader says of Picmicro after a step: the reaction, the phase, the bonds cut
// and formed so far, and the bond of this step with its energy.
QString moleculesDescription(int reactionIndex, const DiagramInput& d, bool simultaneous);

// What it says of Picture2: the system's energy in 10⁻¹⁸ J.
QString diagramDescription(float currentEnergy);

} // namespace micro

#pragma once

#include "macro/balance.h"
#include "macro/graph.h"

#include <QString>

namespace macro {

// What a screen reader says of Picture4: the kind of system, the advancement, the energy
// exchanged and the four gauges' levels in percent of their height.
QString systemDescription(bool open, double x, double exchangedEnergy, const GaugeLevels& g);

// What it says of the graph: both axes' spans and the curve's end point.
QString graphDescription(const EnergyGraph& graph);

} // namespace macro

#pragma once

#include "micro/animation.h"
#include "micro/captions.h"

#include <cstdint>
#include <vector>

namespace platform {
class Canvas;
}

namespace micro {

// One shaded atom centred on (x, y): a ball in the element's colour with lighter rings that
// shrink towards the upper left.
// On a zoomed screen it is copied from a picture of the atom made once (the same pixels).
void atome(platform::Canvas& c, std::int16_t kind, std::int16_t x, std::int16_t y);
// The atom drawn shape by shape, whatever the device.
void atomeDirect(platform::Canvas& c, std::int16_t kind, std::int16_t x, std::int16_t y);

// Prints the runs one after another at their positions and fonts.
void printRuns(platform::Canvas& c, const std::vector<TextRun>& runs);

// The banner of the reaction, at its place on Picture3.
void drawBanner(platform::Canvas& c, int reactionIndex);

// Bonds, then atoms over their ends, as one step left them.
void drawMolecules(platform::Canvas& c, const MoleculeFrame& frame);

void drawEnergyDiagram(platform::Canvas& c, const EnergyDiagram& diagram);

void drawDataPanel(platform::Canvas& c, const std::vector<TextRun>& runs);

} // namespace micro

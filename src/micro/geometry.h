#pragma once

#include "mainwindow/appstate.h"

#include <cstdint>
#include <optional>
#include <span>

namespace micro {

// Element codes kept in AppState::AtomKind.
enum Element : std::int16_t {
    Carbon = 1,
    Hydrogen = 2,
    Oxygen = 3,
    Chlorine = 4,
    FifthElement = 5, // drawn in blue; no reaction of the list uses it
};

// One atom of a reaction: where it stands among the reactants and where it ends among the
// products, in Picmicro's units.
struct AtomPlacement {
    std::int16_t kind;
    std::int16_t startX, startY;
    std::int16_t endX, endY;
};

// The atoms of reaction 1..8 in their numbering order; empty for any other index.
std::span<const AtomPlacement> atomLayout(int reactionIndex);

// Loads AtomKind, StartX/StartY and EndX/EndY for atoms 1..n of the reaction. Any other index
// leaves the arrays as they are.
void referencesmicro(AppState& state, std::int16_t reactionIndex);

struct AnimationConstants {
    std::int16_t atomCount;
    std::int16_t breakCount;
    std::int16_t formStartStep;
    std::int16_t formCount;
};

// Step plan of reaction 1..8; nothing for any other index.
std::optional<AnimationConstants> animationConstants(int reactionIndex);

// FormStartStep + FormCount, checked.
std::int16_t finalStep(const AppState& state);

} // namespace micro

#pragma once

#include "chemistry/catalogue.h"

#include <array>
#include <cstdint>
#include <span>

namespace micro {

// One bond of the animation: its type and the centres of the two atoms it joins, left point
// first (top point first for a vertical bond). Cut bonds join atoms of the start layout, formed
// bonds atoms of the end layout.
struct BondLine {
    chemistry::BondType type;
    std::int16_t x1, y1, x2, y2;
};

// Reactant bonds of reaction 1..8 in cutting order (bond k is cut at step k); empty otherwise.
std::span<const BondLine> cutBonds(int reactionIndex);
// Product bonds of reaction 1..8 in forming order (bond k appears at FormStartStep + k).
std::span<const BondLine> formedBonds(int reactionIndex);

// A C–O bond counts 360 kJ/mol while the molecules are taken apart, not the 356 of the bond
// table, so the animation ends its cuts slightly above the reaction's broken-bonds total.
constexpr std::int16_t CarbonOxygenCuttingEnergy = 360;

// kJ/mol added to the system's energy when a bond of this type is cut.
std::int16_t cuttingEnergy(chemistry::BondType type);
// kJ/mol given back when a bond of this type forms.
std::int16_t formingEnergy(chemistry::BondType type);

// How a bond shows on Picmicro: one or two strokes, each a one-unit box (Line ... B) or a
// plain line.
struct BondStroke {
    bool box;
    std::int16_t x1, y1, x2, y2;
    friend bool operator==(const BondStroke&, const BondStroke&) = default;
};

struct BondStrokes {
    std::array<BondStroke, 2> strokes{};
    int count = 0;
};

// Horizontal or vertical single bonds are one box one unit thick along the axis; double bonds
// two such boxes 2 units either side of the axis; slanted bonds two lines one unit apart in x.
BondStrokes bondStrokes(const BondLine& bond);

bool isDoubleBond(chemistry::BondType type);

} // namespace micro

#include "micro/bonds.h"

namespace micro {

namespace {

using enum chemistry::BondType;

// Each fuel molecule is taken apart from its left end: the leftmost C–H, then the carbon
// skeleton (and the C–O of an alcohol), then its remaining C–H and O–H in atom order; the
// oxygen (or chlorine) molecules follow row by row. Products are built carbon dioxide first,
// left oxygen then right oxygen, then the water molecules row by row, upper hydrogen first.

constexpr BondLine kCut1[] = {
    {CH, 125, 110, 155, 110}, {CH, 155, 110, 185, 110}, {CH, 155, 80, 155, 110},
    {CH, 155, 110, 155, 140}, {OO, 90, 240, 120, 240},  {OO, 180, 240, 210, 240},
};
constexpr BondLine kFormed1[] = {
    {CdO, 125, 110, 155, 110}, {CdO, 155, 110, 185, 110}, {OH, 105, 200, 120, 225},
    {OH, 105, 250, 120, 225},  {OH, 195, 200, 210, 225},  {OH, 195, 250, 210, 225},
};

constexpr BondLine kCut2[] = {
    // first ethane
    {CH, 115, 60, 145, 60},
    {CC, 145, 60, 175, 60},
    {CH, 145, 30, 145, 60},
    {CH, 145, 60, 145, 90},
    {CH, 175, 60, 205, 60},
    {CH, 175, 30, 175, 60},
    {CH, 175, 60, 175, 90},
    // second ethane
    {CH, 115, 160, 145, 160},
    {CC, 145, 160, 175, 160},
    {CH, 145, 130, 145, 160},
    {CH, 145, 160, 145, 190},
    {CH, 175, 160, 205, 160},
    {CH, 175, 130, 175, 160},
    {CH, 175, 160, 175, 190},
    // dioxygen
    {OO, 25, 240, 55, 240},
    {OO, 105, 240, 135, 240},
    {OO, 185, 240, 215, 240},
    {OO, 265, 240, 295, 240},
    {OO, 25, 280, 55, 280},
    {OO, 105, 280, 135, 280},
    {OO, 185, 280, 215, 280},
};
constexpr BondLine kFormed2[] = {
    {CdO, 70, 70, 100, 70},    {CdO, 100, 70, 130, 70},   {CdO, 180, 70, 210, 70},
    {CdO, 210, 70, 240, 70},   {CdO, 70, 110, 100, 110},  {CdO, 100, 110, 130, 110},
    {CdO, 180, 110, 210, 110}, {CdO, 210, 110, 240, 110}, {OH, 90, 170, 105, 195},
    {OH, 90, 220, 105, 195},   {OH, 150, 170, 165, 195},  {OH, 150, 220, 165, 195},
    {OH, 210, 170, 225, 195},  {OH, 210, 220, 225, 195},  {OH, 90, 260, 105, 285},
    {OH, 90, 310, 105, 285},   {OH, 150, 260, 165, 285},  {OH, 150, 310, 165, 285},
    {OH, 210, 260, 225, 285},  {OH, 210, 310, 225, 285},
};

constexpr BondLine kCut3[] = {
    {CH, 95, 110, 125, 110},  {CC, 125, 110, 155, 110}, {CC, 155, 110, 185, 110},
    {CH, 125, 80, 125, 110},  {CH, 125, 110, 125, 140}, {CH, 155, 80, 155, 110},
    {CH, 155, 110, 155, 140}, {CH, 185, 80, 185, 110},  {CH, 185, 110, 185, 140},
    {CH, 185, 110, 215, 110}, {OO, 60, 220, 90, 220},   {OO, 140, 220, 170, 220},
    {OO, 220, 220, 250, 220}, {OO, 100, 270, 130, 270}, {OO, 180, 270, 210, 270},
};
constexpr BondLine kFormed3[] = {
    {CdO, 125, 50, 155, 50},  {CdO, 155, 50, 185, 50},   {CdO, 125, 90, 155, 90},
    {CdO, 155, 90, 185, 90},  {CdO, 125, 130, 155, 130}, {CdO, 155, 130, 185, 130},
    {OH, 60, 210, 75, 235},   {OH, 60, 260, 75, 235},    {OH, 120, 210, 135, 235},
    {OH, 120, 260, 135, 235}, {OH, 180, 210, 195, 235},  {OH, 180, 260, 195, 235},
    {OH, 240, 210, 255, 235}, {OH, 240, 260, 255, 235},
};

constexpr BondLine kCut4[] = {
    // first butane
    {CH, 85, 60, 115, 60},
    {CC, 115, 60, 145, 60},
    {CC, 145, 60, 175, 60},
    {CC, 175, 60, 205, 60},
    {CH, 115, 30, 115, 60},
    {CH, 115, 60, 115, 90},
    {CH, 145, 30, 145, 60},
    {CH, 145, 60, 145, 90},
    {CH, 175, 30, 175, 60},
    {CH, 175, 60, 175, 90},
    {CH, 205, 30, 205, 60},
    {CH, 205, 60, 205, 90},
    {CH, 205, 60, 235, 60},
    // second butane
    {CH, 85, 160, 115, 160},
    {CC, 115, 160, 145, 160},
    {CC, 145, 160, 175, 160},
    {CC, 175, 160, 205, 160},
    {CH, 115, 130, 115, 160},
    {CH, 115, 160, 115, 190},
    {CH, 145, 130, 145, 160},
    {CH, 145, 160, 145, 190},
    {CH, 175, 130, 175, 160},
    {CH, 175, 160, 175, 190},
    {CH, 205, 130, 205, 160},
    {CH, 205, 160, 205, 190},
    {CH, 205, 160, 235, 160},
    // dioxygen
    {OO, 25, 200, 55, 200},
    {OO, 25, 240, 55, 240},
    {OO, 105, 240, 135, 240},
    {OO, 185, 240, 215, 240},
    {OO, 265, 240, 295, 240},
    {OO, 25, 280, 55, 280},
    {OO, 105, 280, 135, 280},
    {OO, 185, 280, 215, 280},
    {OO, 265, 280, 295, 280},
    {OO, 25, 320, 55, 320},
    {OO, 105, 320, 135, 320},
    {OO, 185, 320, 215, 320},
    {OO, 265, 320, 295, 320},
};
constexpr BondLine kFormed4[] = {
    {CdO, 70, 30, 100, 30},
    {CdO, 100, 30, 130, 30},
    {CdO, 180, 30, 210, 30},
    {CdO, 210, 30, 240, 30},
    {CdO, 70, 70, 100, 70},
    {CdO, 100, 70, 130, 70},
    {CdO, 180, 70, 210, 70},
    {CdO, 210, 70, 240, 70},
    {CdO, 70, 110, 100, 110},
    {CdO, 100, 110, 130, 110},
    {CdO, 180, 110, 210, 110},
    {CdO, 210, 110, 240, 110},
    {CdO, 70, 150, 100, 150},
    {CdO, 100, 150, 130, 150},
    {CdO, 180, 150, 210, 150},
    {CdO, 210, 150, 240, 150},
    // upper row of water
    {OH, 30, 190, 45, 215},
    {OH, 30, 240, 45, 215},
    {OH, 90, 190, 105, 215},
    {OH, 90, 240, 105, 215},
    {OH, 150, 190, 165, 215},
    {OH, 150, 240, 165, 215},
    {OH, 210, 190, 225, 215},
    {OH, 210, 240, 225, 215},
    {OH, 270, 190, 285, 215},
    {OH, 270, 240, 285, 215},
    // lower row of water
    {OH, 30, 270, 45, 295},
    {OH, 30, 320, 45, 295},
    {OH, 90, 270, 105, 295},
    {OH, 90, 320, 105, 295},
    {OH, 150, 270, 165, 295},
    {OH, 150, 320, 165, 295},
    {OH, 210, 270, 225, 295},
    {OH, 210, 320, 225, 295},
    {OH, 270, 270, 285, 295},
    {OH, 270, 320, 285, 295},
};

constexpr BondLine kCut5[] = {
    {HH, 145, 110, 175, 110},
    {HH, 145, 160, 175, 160},
    {OO, 145, 210, 175, 210},
};
constexpr BondLine kFormed5[] = {
    {OH, 100, 135, 115, 160},
    {OH, 100, 185, 115, 160},
    {OH, 200, 135, 215, 160},
    {OH, 200, 185, 215, 160},
};

constexpr BondLine kCut6[] = {
    {HH, 145, 110, 175, 110},
    {ClCl, 145, 210, 175, 210},
};
constexpr BondLine kFormed6[] = {
    {HCl, 100, 160, 130, 160},
    {HCl, 190, 160, 220, 160},
};

constexpr BondLine kCut7[] = {
    // first methanol
    {CH, 115, 60, 145, 60},
    {CO, 145, 60, 175, 60},
    {CH, 145, 30, 145, 60},
    {CH, 145, 60, 145, 90},
    {OH, 175, 60, 190, 35},
    // second methanol
    {CH, 115, 160, 145, 160},
    {CO, 145, 160, 175, 160},
    {CH, 145, 130, 145, 160},
    {CH, 145, 160, 145, 190},
    {OH, 175, 160, 190, 135},
    // dioxygen
    {OO, 55, 260, 85, 260},
    {OO, 135, 260, 165, 260},
    {OO, 215, 260, 245, 260},
};
constexpr BondLine kFormed7[] = {
    {CdO, 70, 90, 100, 90},   {CdO, 100, 90, 130, 90},  {CdO, 180, 90, 210, 90},
    {CdO, 210, 90, 240, 90},  {OH, 60, 190, 75, 215},   {OH, 60, 240, 75, 215},
    {OH, 120, 190, 135, 215}, {OH, 120, 240, 135, 215}, {OH, 180, 190, 195, 215},
    {OH, 180, 240, 195, 215}, {OH, 240, 190, 255, 215}, {OH, 240, 240, 255, 215},
};

constexpr BondLine kCut8[] = {
    {CH, 105, 110, 135, 110}, {CC, 135, 110, 165, 110}, {CO, 165, 110, 195, 110},
    {CH, 135, 80, 135, 110},  {CH, 135, 110, 135, 140}, {CH, 165, 80, 165, 110},
    {CH, 165, 110, 165, 140}, {OH, 195, 110, 210, 85},  {OO, 60, 240, 90, 240},
    {OO, 140, 240, 170, 240}, {OO, 220, 240, 250, 240},
};
constexpr BondLine kFormed8[] = {
    {CdO, 70, 100, 100, 100},  {CdO, 100, 100, 130, 100}, {CdO, 180, 100, 210, 100},
    {CdO, 210, 100, 240, 100}, {OH, 70, 170, 85, 195},    {OH, 70, 220, 85, 195},
    {OH, 150, 170, 165, 195},  {OH, 150, 220, 165, 195},  {OH, 230, 170, 245, 195},
    {OH, 230, 220, 245, 195},
};

constexpr std::array<std::span<const BondLine>, 8> kCut{
    kCut1, kCut2, kCut3, kCut4, kCut5, kCut6, kCut7, kCut8,
};
constexpr std::array<std::span<const BondLine>, 8> kFormed{
    kFormed1, kFormed2, kFormed3, kFormed4, kFormed5, kFormed6, kFormed7, kFormed8,
};

BondStroke box(int x1, int y1, int x2, int y2) {
    return {true, static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
            static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2)};
}

BondStroke plain(int x1, int y1, int x2, int y2) {
    return {false, static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
            static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2)};
}

} // namespace

std::span<const BondLine> cutBonds(int reactionIndex) {
    if (reactionIndex < 1 || reactionIndex > 8)
        return {};
    return kCut[static_cast<std::size_t>(reactionIndex - 1)];
}

std::span<const BondLine> formedBonds(int reactionIndex) {
    if (reactionIndex < 1 || reactionIndex > 8)
        return {};
    return kFormed[static_cast<std::size_t>(reactionIndex - 1)];
}

std::int16_t cuttingEnergy(chemistry::BondType type) {
    if (type == CO)
        return CarbonOxygenCuttingEnergy;
    return chemistry::bondInfo(type).kjPerMol;
}

std::int16_t formingEnergy(chemistry::BondType type) {
    return chemistry::bondInfo(type).kjPerMol;
}

bool isDoubleBond(chemistry::BondType type) {
    return type == OO || type == CdO;
}

BondStrokes bondStrokes(const BondLine& b) {
    BondStrokes out;
    const bool dbl = isDoubleBond(b.type);
    if (b.y1 == b.y2) {
        if (dbl) {
            out.strokes[0] = box(b.x1, b.y1 - 3, b.x2, b.y2 - 2);
            out.strokes[1] = box(b.x1, b.y1 + 2, b.x2, b.y2 + 3);
            out.count = 2;
        } else {
            out.strokes[0] = box(b.x1, b.y1, b.x2, b.y2 + 1);
            out.count = 1;
        }
    } else if (b.x1 == b.x2) {
        if (dbl) {
            out.strokes[0] = box(b.x1 - 3, b.y1, b.x2 - 2, b.y2);
            out.strokes[1] = box(b.x1 + 2, b.y1, b.x2 + 3, b.y2);
            out.count = 2;
        } else {
            out.strokes[0] = box(b.x1, b.y1, b.x2 + 1, b.y2);
            out.count = 1;
        }
    } else {
        // A one-pixel slanted line looks thinner than the boxes; doubling it in x evens it out.
        const int spread = dbl ? 2 : 0;
        out.strokes[0] = plain(b.x1 - spread, b.y1, b.x2 - spread, b.y2);
        out.strokes[1] = plain(b.x1 + 1 + spread, b.y1, b.x2 + 1 + spread, b.y2);
        out.count = 2;
    }
    return out;
}

} // namespace micro

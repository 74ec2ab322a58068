#include "micro/geometry.h"

#include "platform/checkedint.h"

#include <array>

namespace micro {

namespace {

constexpr std::int16_t C = Carbon;
constexpr std::int16_t H = Hydrogen;
constexpr std::int16_t O = Oxygen;
constexpr std::int16_t Cl = Chlorine;

// Fuel in the upper part, oxidant molecules in rows below; products in rows. Methane's carbon
// keeps its place so that the eye has a fixed point.
constexpr AtomPlacement kLayout1[] = {
    {H, 125, 110, 105, 200}, {C, 155, 110, 155, 110}, {H, 155, 80, 105, 250},
    {H, 155, 140, 195, 200}, {H, 185, 110, 195, 250}, {O, 90, 240, 125, 110},
    {O, 120, 240, 185, 110}, {O, 180, 240, 120, 225}, {O, 210, 240, 210, 225},
};

constexpr AtomPlacement kLayout2[] = {
    {H, 115, 60, 90, 170},   {C, 145, 60, 100, 70},   {H, 145, 30, 90, 220},
    {H, 145, 90, 150, 170},  {C, 175, 60, 210, 70},   {H, 205, 60, 150, 220},
    {H, 175, 30, 210, 170},  {H, 175, 90, 210, 220},  {H, 115, 160, 90, 260},
    {C, 145, 160, 100, 110}, {H, 145, 130, 90, 310},  {H, 145, 190, 150, 260},
    {C, 175, 160, 210, 110}, {H, 205, 160, 150, 310}, {H, 175, 130, 210, 260},
    {H, 175, 190, 210, 310}, {O, 25, 240, 70, 70},    {O, 55, 240, 130, 70},
    {O, 105, 240, 180, 70},  {O, 135, 240, 240, 70},  {O, 185, 240, 70, 110},
    {O, 215, 240, 130, 110}, {O, 265, 240, 180, 110}, {O, 295, 240, 240, 110},
    {O, 25, 280, 105, 195},  {O, 55, 280, 165, 195},  {O, 105, 280, 225, 195},
    {O, 135, 280, 105, 285}, {O, 185, 280, 165, 285}, {O, 215, 280, 225, 285},
};

constexpr AtomPlacement kLayout3[] = {
    {H, 95, 110, 60, 210},   {C, 125, 110, 155, 50},  {H, 125, 80, 60, 260},
    {H, 125, 140, 120, 210}, {C, 155, 110, 155, 90},  {C, 185, 110, 155, 130},
    {H, 155, 80, 120, 260},  {H, 155, 140, 180, 210}, {H, 185, 80, 180, 260},
    {H, 185, 140, 240, 210}, {H, 215, 110, 240, 260}, {O, 60, 220, 125, 50},
    {O, 90, 220, 185, 50},   {O, 140, 220, 125, 90},  {O, 170, 220, 185, 90},
    {O, 220, 220, 125, 130}, {O, 250, 220, 185, 130}, {O, 100, 270, 75, 235},
    {O, 130, 270, 135, 235}, {O, 180, 270, 195, 235}, {O, 210, 270, 255, 235},
};

constexpr AtomPlacement kLayout4[] = {
    {H, 85, 60, 30, 190},    {H, 115, 30, 90, 190},   {H, 115, 90, 150, 190},
    {C, 115, 60, 100, 30},   {C, 145, 60, 210, 30},   {H, 145, 30, 210, 190},
    {H, 145, 90, 270, 190},  {C, 175, 60, 100, 70},   {C, 205, 60, 210, 70},
    {H, 175, 30, 30, 240},   {H, 205, 30, 90, 240},   {H, 175, 90, 150, 240},
    {H, 205, 90, 210, 240},  {H, 235, 60, 270, 240},  {H, 85, 160, 30, 270},
    {H, 115, 130, 30, 320},  {H, 115, 190, 90, 270},  {C, 115, 160, 100, 110},
    {C, 145, 160, 210, 110}, {H, 145, 130, 90, 320},  {H, 145, 190, 150, 270},
    {C, 175, 160, 100, 150}, {C, 205, 160, 210, 150}, {H, 175, 130, 150, 320},
    {H, 205, 130, 210, 270}, {H, 175, 190, 210, 320}, {H, 205, 190, 270, 270},
    {H, 235, 160, 270, 320}, {O, 25, 200, 70, 30},    {O, 55, 200, 130, 30},
    {O, 25, 240, 180, 30},   {O, 55, 240, 240, 30},   {O, 105, 240, 180, 70},
    {O, 135, 240, 240, 70},  {O, 185, 240, 70, 70},   {O, 215, 240, 130, 70},
    {O, 265, 240, 70, 110},  {O, 295, 240, 130, 110}, {O, 25, 280, 180, 110},
    {O, 55, 280, 240, 110},  {O, 105, 280, 70, 150},  {O, 135, 280, 130, 150},
    {O, 185, 280, 180, 150}, {O, 215, 280, 240, 150}, {O, 265, 280, 45, 295},
    {O, 295, 280, 45, 215},  {O, 25, 320, 105, 215},  {O, 55, 320, 105, 295},
    {O, 105, 320, 165, 215}, {O, 135, 320, 165, 295}, {O, 185, 320, 225, 215},
    {O, 215, 320, 225, 295}, {O, 265, 320, 285, 215}, {O, 295, 320, 285, 295},
};

constexpr AtomPlacement kLayout5[] = {
    {H, 145, 110, 100, 135}, {H, 175, 110, 100, 185}, {H, 145, 160, 200, 135},
    {H, 175, 160, 200, 185}, {O, 145, 210, 115, 160}, {O, 175, 210, 215, 160},
};

constexpr AtomPlacement kLayout6[] = {
    {H, 145, 110, 100, 160},
    {H, 175, 110, 190, 160},
    {Cl, 145, 210, 130, 160},
    {Cl, 175, 210, 220, 160},
};

constexpr AtomPlacement kLayout7[] = {
    {H, 115, 60, 60, 190},   {C, 145, 60, 100, 90},   {H, 145, 30, 60, 240},
    {H, 145, 90, 120, 190},  {O, 175, 60, 195, 215},  {H, 190, 35, 120, 240},
    {H, 115, 160, 180, 190}, {C, 145, 160, 210, 90},  {H, 145, 130, 180, 240},
    {H, 145, 190, 240, 190}, {O, 175, 160, 255, 215}, {H, 190, 135, 240, 240},
    {O, 55, 260, 135, 215},  {O, 85, 260, 75, 215},   {O, 135, 260, 180, 90},
    {O, 165, 260, 240, 90},  {O, 215, 260, 70, 90},   {O, 245, 260, 130, 90},
};

constexpr AtomPlacement kLayout8[] = {
    {H, 105, 110, 70, 170},  {C, 135, 110, 100, 100}, {H, 135, 80, 70, 220},
    {H, 135, 140, 150, 170}, {C, 165, 110, 210, 100}, {O, 195, 110, 70, 100},
    {H, 165, 80, 150, 220},  {H, 165, 140, 230, 170}, {H, 210, 85, 230, 220},
    {O, 60, 240, 130, 100},  {O, 90, 240, 180, 100},  {O, 140, 240, 240, 100},
    {O, 170, 240, 85, 195},  {O, 220, 240, 165, 195}, {O, 250, 240, 245, 195},
};

constexpr std::array<std::span<const AtomPlacement>, 8> kLayouts{
    kLayout1, kLayout2, kLayout3, kLayout4, kLayout5, kLayout6, kLayout7, kLayout8,
};

// The drift between the last cut and the first formation has a fixed length per reaction,
// chosen by eye rather than from the distances the atoms travel.
constexpr std::array<AnimationConstants, 8> kConstants{{
    {9, 6, 60, 6},
    {30, 21, 70, 20},
    {21, 15, 63, 14},
    {54, 39, 99, 36},
    {6, 3, 27, 4},
    {4, 2, 18, 2},
    {18, 13, 72, 12},
    {15, 11, 54, 10},
}};

} // namespace

std::span<const AtomPlacement> atomLayout(int reactionIndex) {
    if (reactionIndex < 1 || reactionIndex > 8)
        return {};
    return kLayouts[static_cast<std::size_t>(reactionIndex - 1)];
}

void referencesmicro(AppState& state, std::int16_t reactionIndex) {
    std::size_t i = 1;
    for (const AtomPlacement& a : atomLayout(reactionIndex)) {
        state.AtomKind.at(i) = a.kind;
        state.StartX.at(i) = a.startX;
        state.StartY.at(i) = a.startY;
        state.EndX.at(i) = a.endX;
        state.EndY.at(i) = a.endY;
        ++i;
    }
}

std::optional<AnimationConstants> animationConstants(int reactionIndex) {
    if (reactionIndex < 1 || reactionIndex > 8)
        return std::nullopt;
    return kConstants[static_cast<std::size_t>(reactionIndex - 1)];
}

std::int16_t finalStep(const AppState& state) {
    return platform::add16(state.FormStartStep, state.FormCount);
}

} // namespace micro

#include "chemistry/catalogue.h"

#include "platform/checkedint.h"
#include "platform/numberformat.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace chemistry {

namespace {

using enum BondType;

const std::array<BondInfo, BondTypeCount>& bondTable() {
    static const std::array<BondInfo, BondTypeCount> table{{
        {CH,
         QStringLiteral("C – H"),
         {},
         410,
         QStringLiteral(" = 410 kJ · mol"),
         QStringLiteral(" = 0,681 · 10")},
        {CC,
         QStringLiteral("C – C"),
         {},
         348,
         QStringLiteral(" = 348 kJ · mol"),
         QStringLiteral(" = 0,578 · 10")},
        {OO,
         QStringLiteral("O = O"),
         {},
         494,
         QStringLiteral(" = 494 kJ · mol"),
         QStringLiteral(" = 0,821 · 10")},
        {CO,
         QStringLiteral("C – O"),
         {},
         356,
         QStringLiteral(" = 356 kJ · mol"),
         QStringLiteral(" = 0,591 · 10")},
        {OH,
         QStringLiteral("O – H"),
         {},
         460,
         QStringLiteral(" = 460 kJ · mol"),
         QStringLiteral(" = 0,764 · 10")},
        {CdO, QStringLiteral("C = O (dans CO"), QStringLiteral(")"), 795,
         QStringLiteral(" = 795 kJ · mol"), QStringLiteral(" = 1,32 · 10")},
        {HH,
         QStringLiteral("H – H"),
         {},
         432,
         QStringLiteral(" = 432 kJ · mol"),
         QStringLiteral(" = 0,718 · 10")},
        {ClCl,
         QStringLiteral("Cl – Cl"),
         {},
         240,
         QStringLiteral(" = 240 kJ · mol"),
         QStringLiteral(" = 0,399 · 10")},
        // 428 / 602 is 0,711; the shipped table has always shown 0,712.
        {HCl,
         QStringLiteral("H – Cl"),
         {},
         428,
         QStringLiteral(" = 428 kJ · mol"),
         QStringLiteral(" = 0,712 · 10")},
    }};
    return table;
}

Species sp(const char* formula, std::int16_t coefficient) {
    return Species{QString::fromUtf8(formula), coefficient};
}

const std::array<Reaction, ReactionCount>& catalogue() {
    static const std::array<Reaction, ReactionCount> reactions{{
        {1,
         QStringLiteral("Combustion complète du méthane dans le dioxygène"),
         sp("CH4", 1),
         sp("O2", 2),
         {sp("CO2", 1), sp("H2O", 2)},
         {{CH, 4}, {OO, 2}},
         {{CdO, 2}, {OH, 4}},
         {CH, OO, OH, CdO}},
        {2,
         QStringLiteral("Combustion complète de l'éthane dans le dioxygène"),
         sp("C2H6", 2),
         sp("O2", 7),
         {sp("CO2", 4), sp("H2O", 6)},
         {{CH, 12}, {CC, 2}, {OO, 7}},
         {{CdO, 8}, {OH, 12}},
         {CH, CC, OO, OH, CdO}},
        {3,
         QStringLiteral("Combustion complète du propane dans le dioxygène"),
         sp("C3H8", 1),
         sp("O2", 5),
         {sp("CO2", 3), sp("H2O", 4)},
         {{CH, 8}, {CC, 2}, {OO, 5}},
         {{CdO, 6}, {OH, 8}},
         {CH, CC, OO, OH, CdO}},
        {4,
         QStringLiteral("Combustion complète du butane dans le dioxygène"),
         sp("C4H10", 2),
         sp("O2", 13),
         {sp("CO2", 8), sp("H2O", 10)},
         {{CH, 20}, {CC, 6}, {OO, 13}},
         {{CdO, 16}, {OH, 20}},
         {CH, CC, OO, OH, CdO}},
        {5,
         QStringLiteral("Combustion du dihydrogène dans le dioxygène"),
         sp("H2", 2),
         sp("O2", 1),
         {sp("H2O", 2)},
         {{HH, 2}, {OO, 1}},
         {{OH, 4}},
         {HH, OO, OH}},
        {6,
         QStringLiteral("Combustion du dihydrogène dans le dichlore"),
         sp("H2", 1),
         sp("Cl2", 1),
         {sp("HCl", 2)},
         {{HH, 1}, {ClCl, 1}},
         {{HCl, 2}},
         {HH, ClCl, HCl}},
        {7,
         QStringLiteral("Combustion complète du méthanol dans le dioxygène"),
         sp("CH4O", 2),
         sp("O2", 3),
         {sp("CO2", 2), sp("H2O", 4)},
         {{CH, 6}, {CO, 2}, {OH, 2}, {OO, 3}},
         {{CdO, 4}, {OH, 8}},
         {CH, CO, OO, OH, CdO}},
        {8,
         QStringLiteral("Combustion complète de l'éthanol dans le dioxygène"),
         sp("C2H6O", 1),
         sp("O2", 3),
         {sp("CO2", 2), sp("H2O", 3)},
         {{CH, 5}, {CC, 1}, {CO, 1}, {OH, 1}, {OO, 3}},
         {{CdO, 4}, {OH, 6}},
         {CH, CC, OO, CO, OH, CdO}},
    }};
    return reactions;
}

std::int16_t sumEnergies(const std::vector<BondCount>& bonds) {
    std::int16_t total = 0;
    for (const BondCount& b : bonds)
        total = platform::add16(total, platform::mul16(b.count, bondInfo(b.type).kjPerMol));
    return total;
}

} // namespace

const BondInfo& bondInfo(BondType type) {
    return bondTable().at(static_cast<std::size_t>(type));
}

bool isValidIndex(int index) {
    return index >= 1 && index <= ReactionCount;
}

const Reaction& reaction(int index) {
    if (!isValidIndex(index))
        throw std::out_of_range("reaction index");
    return catalogue()[static_cast<std::size_t>(index - 1)];
}

std::int16_t indexOfLabel(const QString& text) {
    for (const Reaction& r : catalogue())
        if (r.label == text)
            return r.index;
    return 0;
}

BondTotals computeTotals(int index) {
    const Reaction& r = reaction(index);
    return BondTotals{sumEnergies(r.broken), sumEnergies(r.formed)};
}

QString heatAttojouleText(std::int16_t broken, std::int16_t formed) {
    const int heat = std::abs(platform::sub16(broken, formed));
    return platform::formatTrimmed(static_cast<double>(heat) / ATTOJOULE_DIVISOR,
                                   QStringLiteral("### ### ### ##0.0#"));
}

QString heatMolarText(std::int16_t broken, std::int16_t formed) {
    const int heat = std::abs(platform::sub16(broken, formed));
    return platform::formatTrimmed(heat, QStringLiteral("### ### ### ##0"));
}

} // namespace chemistry

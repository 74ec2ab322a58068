#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace chemistry {

// kJ per mole divided by this gives 10^-18 J per entity (Avogadro's 6,02·10^23 and the units).
constexpr int ATTOJOULE_DIVISOR = 602;

enum class BondType { CH, CC, OO, CO, OH, CdO, HH, ClCl, HCl };
constexpr int BondTypeCount = 9;

struct BondInfo {
    BondType type;
    QString label;       // as printed after "D": "C – H", "O = O", "C = O (dans CO" for C=O
    QString labelSuffix; // printed after a further-lowered subscript "2" (C=O only: ")")
    std::int16_t kjPerMol;
    QString molarText;   // " = 410 kJ · mol", followed by a superscript "-1"
    QString perBondText; // " = 0,681 · 10", followed by a superscript "-18" and " J"
};

const BondInfo& bondInfo(BondType type);

struct Species {
    QString formula; // as displayed: "CH4", "C2H6O" (digits become subscripts when drawn)
    std::int16_t coefficient;
};

struct BondCount {
    BondType type;
    std::int16_t count;
};

struct Reaction {
    std::int16_t index; // ReactionIndex, 1..8 in list order
    QString label;      // the text shown in the reaction list
    Species fuel;
    Species oxidant;
    std::vector<Species> products; // one or two
    std::vector<BondCount> broken;
    std::vector<BondCount> formed;
    std::vector<BondType> panelRows; // row order of the data panel
};

constexpr std::int16_t ReactionCount = 8;

// Lookup by ReactionIndex 1..8; throws std::out_of_range otherwise.
const Reaction& reaction(int index);
bool isValidIndex(int index);

// First catalogue entry whose label equals text exactly; 0 when none does.
std::int16_t indexOfLabel(const QString& text);

struct BondTotals {
    std::int16_t broken = 0; // BrokenBondsEnergy
    std::int16_t formed = 0; // FormedBondsEnergy
};

// Sums count × energy over the bonds; throws platform::OverflowError past 16 bits.
BondTotals computeTotals(int index);

// |broken − formed| shown after " = – ": per run of the equation in 10^-18 J ("8,65") or
// per mole of advancement in kJ ("5 210"). The 16-bit difference is checked.
QString heatAttojouleText(std::int16_t broken, std::int16_t formed);
QString heatMolarText(std::int16_t broken, std::int16_t formed);

} // namespace chemistry

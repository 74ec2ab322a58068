#pragma once

#include <QString>
#include <cstdint>
#include <optional>

// The arithmetic behind the Macro tab: amounts entered by the user, the maximum advancement,
// the amounts and the energy at an advancement x, and the levels of the system picture's
// gauges. Pure functions; the panel reads its controls, calls these and draws.
namespace macro {

// Every number of the Macro tab uses this pattern (French comma, literal group blanks).
inline constexpr const char* AmountPattern = "### ### ##0.0##";

inline constexpr float MinAmount = 0.0F;
inline constexpr float MaxAmount = 100000.0F;
inline constexpr std::int16_t SliderMax = 10000;
inline constexpr std::int16_t SliderPageStep = 100;
inline constexpr std::int16_t AnimationStep = 100; // slider units per Timer2 tick
inline constexpr std::int16_t CoolingStart = 10000;
inline constexpr std::int16_t CoolingStep = 100; // CoolingCounter units per Timer3 tick

// Coefficients of the equation as written: reactants A (fuel) and B (oxidant), products C and
// D. d is 0 for the reactions with a single product.
struct Stoichiometry {
    std::int16_t a = 0, b = 0, c = 0, d = 0;
    bool hasSecondProduct() const { return d != 0; }
};

// Coefficients of ReactionIndex 1..8; nothing for any other index.
std::optional<Stoichiometry> stoichiometry(int reactionIndex);

// An amount field's text as a single-precision value; a text that is not a number reads 0.
float readAmount(const QString& text);
// Brought into 0..100000, bounds kept.
float clampAmount(float value);
// What an amount field shows after it is left: read, clamped, formatted without trimming.
QString validatedAmountText(const QString& text);

// The untrimmed pattern ("  0,5"), used where columns must stay aligned.
QString formatAmount(double value);
// The trimmed pattern followed by a unit: "0,5 mol", "-401,0 kJ".
QString formatWithUnit(double value, const QString& unit);

// x_max = min(a/νA, b/νB); when both quotients are equal the first reactant's is taken.
double maxAdvancement(float a, float b, const Stoichiometry& nu);

// x for a slider position: 0 at 0, x_max exactly at the end, x_max/2 exactly halfway.
double advancementAt(double maxAdvancement, int sliderValue, int sliderMax);

// n_A, n_B, n_C, n_D at advancement x (n_D is 0 without a second product).
struct Amounts {
    double n[4] = {0, 0, 0, 0};
};
Amounts amountsAt(float a, float b, const Stoichiometry& nu, double x);

// Energy exchanged with the surroundings at advancement x, kJ: x × (broken − formed), the
// difference taken in checked 16-bit arithmetic (throws platform::OverflowError).
double exchangedEnergy(double x, std::int16_t brokenBondsEnergy, std::int16_t formedBondsEnergy);

// Key filter of the amount fields, on the character code of a key press. keyAscii is what is
// left to type (0 swallows the key); validate asks for the field to be validated first.
struct KeyFilterResult {
    int keyAscii = 0;
    bool validate = false;
};
KeyFilterResult filterAmountKey(int keyAscii);

// What a paste into an amount field inserts: each character through the key filter, as if
// typed, with the control characters (a pasted line break or backspace) dropped, since a paste
// neither validates nor erases.
QString filterPastedAmount(const QString& text);

// One Timer2 tick: the next slider position and whether the animation ends with it.
struct AnimationTick {
    std::int16_t value = 0;
    bool finished = false;
};
AnimationTick animationTick(std::int16_t sliderValue, std::int16_t sliderMax);

// The moving parts of the system picture, as the top y of each gauge in picture pixels.
enum class GaugeMode { Isolated, Open, Cooling };
struct GaugeLevels {
    double systemThermometer = 0;       // top of the red column at x 138
    double systemBar = 0;               // top of the blue bar from x 55 to 85
    double surroundingsThermometer = 0; // top of the red column at x 338
    double surroundingsBar = 0;         // top of the blue bar from x 255 to 285
};
GaugeLevels gaugeLevels(GaugeMode mode, int sliderValue, int coolingCounter);

} // namespace macro

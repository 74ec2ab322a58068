#include "macro/balance.h"

#include "chemistry/catalogue.h"
#include "platform/checkedint.h"
#include "platform/numberformat.h"

#include <cmath>
#include <limits>

namespace macro {

namespace {

const QString& pattern() {
    static const QString p = QString::fromLatin1(AmountPattern);
    return p;
}

} // namespace

std::optional<Stoichiometry> stoichiometry(int reactionIndex) {
    if (!chemistry::isValidIndex(reactionIndex))
        return std::nullopt;
    const chemistry::Reaction& r = chemistry::reaction(reactionIndex);
    Stoichiometry nu;
    nu.a = r.fuel.coefficient;
    nu.b = r.oxidant.coefficient;
    nu.c = r.products.empty() ? std::int16_t{0} : r.products[0].coefficient;
    nu.d = r.products.size() > 1 ? r.products[1].coefficient : std::int16_t{0};
    return nu;
}

float readAmount(const QString& text) {
    double value = 0;
    if (!platform::parseFrench(text, &value) || !std::isfinite(value) ||
        std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max()))
        return 0.0F; // not a number, or too large for a single: read as nothing entered
    return static_cast<float>(value);
}

float clampAmount(float value) {
    if (value < MinAmount)
        return MinAmount;
    if (value > MaxAmount)
        return MaxAmount;
    return value;
}

QString validatedAmountText(const QString& text) {
    return formatAmount(clampAmount(readAmount(text)));
}

QString formatAmount(double value) {
    return platform::formatNumber(value, pattern());
}

QString formatWithUnit(double value, const QString& unit) {
    return platform::formatTrimmed(value, pattern()) + QLatin1Char(' ') + unit;
}

double maxAdvancement(float a, float b, const Stoichiometry& nu) {
    const double byA = static_cast<double>(a) / nu.a;
    const double byB = static_cast<double>(b) / nu.b;
    return byB < byA ? byB : byA;
}

double advancementAt(double maxAdvancement, int sliderValue, int sliderMax) {
    if (sliderMax == 0)
        return 0.0;
    // The fraction first: it is exactly 1 at the end and exactly 0.5 halfway, so x lands on
    // x_max and x_max/2 without a rounding step in between.
    return maxAdvancement * (static_cast<double>(sliderValue) / sliderMax);
}

Amounts amountsAt(float a, float b, const Stoichiometry& nu, double x) {
    Amounts out;
    out.n[0] = static_cast<double>(a) - nu.a * x;
    out.n[1] = static_cast<double>(b) - nu.b * x;
    out.n[2] = nu.c * x;
    out.n[3] = nu.d * x;
    return out;
}

double exchangedEnergy(double x, std::int16_t brokenBondsEnergy, std::int16_t formedBondsEnergy) {
    return x * platform::sub16(brokenBondsEnergy, formedBondsEnergy);
}

KeyFilterResult filterAmountKey(int keyAscii) {
    constexpr int Backspace = 8;
    constexpr int Enter = 13;
    if (keyAscii >= '0' && keyAscii <= '9')
        return {keyAscii, false};
    switch (keyAscii) {
    case '.':
        return {',', false};
    case ',':
    case '-':
    case Backspace:
        return {keyAscii, false};
    case Enter:
        return {0, true};
    default:
        return {0, false};
    }
}

QString filterPastedAmount(const QString& text) {
    QString kept;
    for (const QChar ch : text) {
        const KeyFilterResult r = filterAmountKey(ch.unicode());
        if (r.keyAscii >= ' ')
            kept.append(QChar(r.keyAscii));
    }
    return kept;
}

AnimationTick animationTick(std::int16_t sliderValue, std::int16_t sliderMax) {
    const std::int16_t v = platform::add16(sliderValue, AnimationStep);
    if (v >= sliderMax)
        return {sliderMax, true};
    return {v, false};
}

GaugeLevels gaugeLevels(GaugeMode mode, int sliderValue, int coolingCounter) {
    const double v = sliderValue;
    const double t = coolingCounter;
    GaugeLevels g;
    switch (mode) {
    case GaugeMode::Isolated:
        g.systemThermometer = 105 - v / 140;
        g.systemBar = 138;
        g.surroundingsThermometer = 135;
        g.surroundingsBar = 98;
        break;
    case GaugeMode::Open:
        g.systemThermometer = 105 - v / 210;
        g.systemBar = 138 + v / 300;
        g.surroundingsThermometer = 105;
        g.surroundingsBar = 98 - v / 300;
        break;
    case GaugeMode::Cooling:
        // The temperature falls back while the energy keeps leaving the system.
        g.systemThermometer = 105 - t / 210;
        g.systemBar = 138 + v / 300 + (10000 - t) / 500;
        g.surroundingsThermometer = 105;
        g.surroundingsBar = 98 - v / 300 - (10000 - t) / 500;
        break;
    }
    return g;
}

} // namespace macro

#include "macro/graph.h"

#include "platform/checkedint.h"
#include "platform/numberformat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace macro {

namespace {

constexpr int FirstExponent = -7;
constexpr int LastExponent = 10;
constexpr int FirstMantissa = 3;
constexpr int LastMantissa = 29;

double powerOfTen(int n) {
    double p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10; // exact up to 10^22
    return p;
}

// k × 10^e / divisor as the double nearest to the decimal quotient: one correctly rounded
// division of two integers that doubles hold exactly.
double decimal(long long k, int e, int divisor = 1) {
    if (e >= 0)
        return static_cast<double>(k) * powerOfTen(e) / divisor;
    return static_cast<double>(k) / (static_cast<double>(divisor) * powerOfTen(-e));
}

// A positive finite value as a seven-digit decimal mantissa and exponent:
// value ≈ mantissa × 10^exponent with 1 000 000 ≤ mantissa ≤ 9 999 999.
struct Decimal7 {
    long long mantissa = 0;
    int exponent = 0;
};

Decimal7 toDecimal7(double value) {
    char buf[40];
    const auto res = std::to_chars(buf, buf + sizeof buf - 1, value, std::chars_format::scientific,
                                   6); // d.dddddde±xx
    *res.ptr = '\0';
    Decimal7 out;
    const char* p = buf;
    for (; *p != 'e' && *p != '\0'; ++p)
        if (*p >= '0' && *p <= '9')
            out.mantissa = out.mantissa * 10 + (*p - '0');
    int exp = 0;
    if (*p == 'e')
        std::from_chars(p + 1 + (p[1] == '+' ? 1 : 0), res.ptr, exp);
    out.exponent = exp - 6;
    return out;
}

// m × 10^e ≥ v, in decimal.
bool spanCovers(int m, int e, const Decimal7& v) {
    const int k = e - v.exponent;
    if (k < 0)
        return false; // v's mantissa is at least 10^6, so m would need to be 10^7 or more
    if (k > 9)
        return true; // m × 10^10 ≥ 3 × 10^10 exceeds any seven-digit mantissa
    long long lhs = m;
    for (int i = 0; i < k; ++i)
        lhs *= 10;
    return lhs >= v.mantissa;
}

QString groupedInteger(const QString& digits) {
    QString out;
    const qsizetype n = digits.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out += QLatin1Char(' ');
        out += digits[i];
    }
    return out;
}

const QString& tablePattern() {
    static const QString p = QString::fromLatin1(TablePattern);
    return p;
}

const QString& cursorPattern() {
    static const QString p = QString::fromLatin1(CursorPattern);
    return p;
}

QString withoutBlanks(QString text) {
    text.remove(QLatin1Char(' '));
    return text;
}

} // namespace

double roundSignificant(double value, int digits) {
    if (value == 0 || !std::isfinite(value))
        return value;
    char buf[64];
    const auto res =
        std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, digits - 1);
    double out = value;
    std::from_chars(buf, res.ptr, out);
    return out;
}

std::int16_t unitsPerDivision(int m) {
    if (m <= 9)
        return 1;
    if (m <= 19)
        return 2;
    return 5;
}

double AxisScale::span() const {
    return decimal(m, e);
}

double AxisScale::division() const {
    return decimal(d, e);
}

double AxisScale::tableValue(int k) const {
    return decimal(static_cast<long long>(k) * m, e, StepsPerSpan);
}

QString AxisScale::divisionText() const {
    if (e >= 0)
        return groupedInteger(QString::number(d) + QString(e, QLatin1Char('0')));
    return QStringLiteral("0,") + QString(-e - 1, QLatin1Char('0')) + QString::number(d);
}

AxisScale axisScale(double value) {
    AxisScale a;
    bool found = false;
    if (!(value > 0) || !std::isfinite(value)) {
        found = true; // nothing to cover: the smallest span
    } else {
        const Decimal7 v = toDecimal7(value);
        for (int e = FirstExponent; e <= LastExponent && !found; ++e) {
            for (int m = FirstMantissa; m <= LastMantissa; ++m) {
                if (spanCovers(m, e, v)) {
                    a.m = static_cast<std::int16_t>(m);
                    a.e = static_cast<std::int16_t>(e);
                    found = true;
                    break;
                }
            }
        }
    }
    if (!found) {
        // Beyond the search range (more than any amount allows): the widest span.
        a.m = LastMantissa;
        a.e = LastExponent;
    }
    a.d = unitsPerDivision(a.m);
    if (a.m % a.d != 0)
        a.m = static_cast<std::int16_t>((a.m / a.d + 1) * a.d);
    return a;
}

QString tableCell(double value) {
    return platform::formatNumber(value, tablePattern()) + QStringLiteral("  ");
}

QString tableHeading(int column) {
    return column == 0 ? QStringLiteral("x (mol)") : QStringLiteral("|\u0394E| (kJ)");
}

EnergyGraph::EnergyGraph(const GraphInput& input) {
    x_ = std::isfinite(input.maxAdvancement) && input.maxAdvancement > 0 ? input.maxAdvancement
                                                                         : 0.0;
    if (input.openSystem) {
        try {
            slope_ =
                platform::abs16(platform::sub16(input.brokenBondsEnergy, input.formedBondsEnergy));
        } catch (const std::exception&) {
            slope_ = 0; // the statement fails and the energy stays at nothing
        }
    }
    w_ = x_ * slope_;
    if (w_ < EmptyEnergyLimit)
        w_ = EmptyEnergySpan;

    xAxis_ = axisScale(x_);
    energyAxis_ = axisScale(w_);

    const double steps = roundSignificant(x_ / step());
    rows_ = std::min(static_cast<int>(std::floor(steps)) + 1, PointTableRows);

    // The loop runs a third of a step past X so that a last step that binary rounding puts
    // just beyond X still shows, as X itself.
    for (int i = 0; i < PointTableRows && i <= steps + 1.0 / 3.0; ++i) {
        TableValue v;
        v.x = xAxis_.tableValue(i);
        if (v.x > x_ || static_cast<double>(i) == steps)
            v.x = x_;
        v.energy = energyAt(v.x);
        v.xText = tableCell(v.x);
        v.energyText = tableCell(v.energy);
        v.pixel = toPixel(v.x, v.energy);
        PlotPoint p;
        try {
            p.x = platform::roundToInt16(v.pixel.x());
            p.y = platform::roundToInt16(v.pixel.y());
        } catch (const platform::OverflowError&) {
            // A point that does not fit is never under the cursor.
            p.x = p.y = -1000;
        }
        values_.push_back(std::move(v));
        points_.push_back(p);
    }
}

QPointF EnergyGraph::toPixel(double x, double energy) const {
    return {PlotLeft + x * PlotSide / xAxis_.span(),
            PlotBottom - energy * PlotSide / energyAxis_.span()};
}

std::vector<QPointF> EnergyGraph::curve() const {
    std::vector<QPointF> pts;
    pts.reserve(CurvePoints);
    for (int k = 0; k < CurvePoints; ++k) {
        // The last point is X itself, not 360 accumulated steps.
        const double x = k == CurvePoints - 1 ? x_ : x_ * k / (CurvePoints - 1);
        pts.push_back(toPixel(x, energyAt(x)));
    }
    return pts;
}

QString EnergyGraph::energyLegend() const {
    return QStringLiteral("Une division correspond à ") + energyAxis_.divisionText() +
           QStringLiteral(" kJ");
}

QStringList EnergyGraph::xLegend() const {
    return {QStringLiteral("Une division"), QStringLiteral("correspond à"),
            xAxis_.divisionText() + QStringLiteral(" mol")};
}

bool EnergyGraph::insidePlot(double px, double py) {
    return !(px <= PlotLeft - 1 || px >= PlotRight + 1 || py <= PlotTop - 1 ||
             py >= PlotBottom + 1);
}

QString EnergyGraph::cursorX(double px) const {
    return platform::formatNumber((px - PlotLeft) * xAxis_.span() / PlotSide, cursorPattern());
}

QString EnergyGraph::cursorEnergy(double py) const {
    return platform::formatNumber((PlotBottom - py) * energyAxis_.span() / PlotSide,
                                  cursorPattern());
}

int EnergyGraph::rowNear(double px, double py) const {
    const int n = std::min(rows_, static_cast<int>(points_.size()));
    for (int r = 0; r < n; ++r) {
        const PlotPoint& p = points_[static_cast<std::size_t>(r)];
        if (std::abs(px - p.x) <= PickDistance && std::abs(py - p.y) <= PickDistance)
            return r;
    }
    return -1;
}

QString EnergyGraph::tableText(QChar sep) const {
    const QString eol = QStringLiteral("\r\n");
    QString out = tableHeading(0) + sep + tableHeading(1) + eol;
    const int n = std::min(rows_, static_cast<int>(values_.size()));
    for (int r = 0; r < n; ++r) {
        const TableValue& v = values_[static_cast<std::size_t>(r)];
        out += withoutBlanks(v.xText) + sep + withoutBlanks(v.energyText) + eol;
    }
    return out;
}

} // namespace macro

#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

// The arithmetic of the graph window: the energy against the advancement, the automatic
// scales of both axes, the grid divisions, the values of the table with their texts and the
// pixel positions of the tabulated points. The window draws what this computes.
//
// Spans, divisions and table steps are decimal numbers (0,015 mol, 0,00001 kJ). They are
// computed from their integer digits and decimal exponent, and compared in decimal, so that a
// value that is exactly a span in decimal is not pushed to the next span by binary rounding.
namespace macro {

// Texts of the table cells (each followed by two blanks) and of the cursor readouts.
inline constexpr const char* TablePattern = "### ### ##0.0## ##";
inline constexpr const char* CursorPattern = "#############0.00";

// Below this largest energy the energy axis would be empty: it gets EmptyEnergySpan instead.
inline constexpr double EmptyEnergyLimit = 0.000001;
inline constexpr double EmptyEnergySpan = 0.00001;

// The plot square on Picture1, in pixels: origin at (20, 380), 360 pixels per axis span.
inline constexpr int PlotLeft = 20;
inline constexpr int PlotTop = 20;
inline constexpr int PlotRight = 380;
inline constexpr int PlotBottom = 380;
inline constexpr int PlotSide = 360;

// Twenty table steps per span of the x axis; the table holds at most this many points.
inline constexpr int StepsPerSpan = 20;
inline constexpr int PointTableRows = 31;
// Points of the curve: 360 steps from 0 to the maximum advancement.
inline constexpr int CurvePoints = 361;
// A tabulated point this close to the cursor (in pixels, along both axes) selects its row.
inline constexpr int PickDistance = 3;

// One axis: it spans m × 10^e units over 360 pixels, in m/d divisions of d × 10^e units.
struct AxisScale {
    std::int16_t m = 3;  // 3 to 30
    std::int16_t e = -7; // -7 to 10
    std::int16_t d = 1;  // 1, 2 or 5

    // m × 10^e, k × 10^e, k × m × 10^e / 20 as the doubles nearest to their decimal values.
    double span() const;
    double division() const;
    double tableValue(int k) const; // k table steps
    int divisions() const { return m / d; }
    double divisionPixels() const { return static_cast<double>(PlotSide) * d / m; }
    // d × 10^e written out in French: "0,2", "100", "0,000002", "10 000 000".
    QString divisionText() const;

    friend bool operator==(const AxisScale&, const AxisScale&) = default;
};

// The first span m × 10^e (e from -7 to 10, m from 3 to 29 within each) that is not below
// value, then d from m and m raised to a multiple of d. The value is taken to the seven
// significant digits its single-precision amounts carry. A value beyond 29 × 10^10 keeps the
// last span.
AxisScale axisScale(double value);

// Units per division for a mantissa: 1 up to 9, 2 up to 19, 5 from 20.
std::int16_t unitsPerDivision(int m);

// What the graph is drawn from: the balance as the Macro tab leaves it.
struct GraphInput {
    double maxAdvancement = 0;          // X, mol
    std::int16_t brokenBondsEnergy = 0; // kJ per mole of advancement
    std::int16_t formedBondsEnergy = 0; // kJ per mole of advancement
    bool openSystem = true;             // the system exchanges energy with the surroundings
};

// A value of the table: x and |ΔE|(x), their cell texts, and the point's place on the plot.
struct TableValue {
    double x = 0;
    double energy = 0;
    QString xText;
    QString energyText;
    QPointF pixel;
};

// A tabulated point in the table kept for the mouse: pixel coordinates as 16-bit integers.
struct PlotPoint {
    std::int16_t x = 0;
    std::int16_t y = 0;
};

class EnergyGraph {
public:
    explicit EnergyGraph(const GraphInput& input);

    double maxAdvancement() const { return x_; }
    // |ΔE| per mole of advancement: |broken − formed| for an open system, 0 for an isolated
    // one (and 0 when the difference does not fit in 16 bits, the statement being skipped).
    double slope() const { return slope_; }
    double energyAt(double x) const { return slope_ * x; }
    // W = X × slope, or the empty-axis span when that is below the limit.
    double maxEnergy() const { return w_; }

    const AxisScale& xAxis() const { return xAxis_; }
    const AxisScale& energyAxis() const { return energyAxis_; }

    // Pixel position on Picture1 of (x, |ΔE|).
    QPointF toPixel(double x, double energy) const;
    // The 361 points of the curve, from x = 0 to x = X.
    std::vector<QPointF> curve() const;

    // Table step s = m_x × 10^e_x / 20, and the rows of the grid: Int(X / s) + 1.
    double step() const { return xAxis_.tableValue(1); }
    int rowCount() const { return rows_; }
    // Values at 0, s, 2s, … up to X plus a third of a step, a value past X replaced by X.
    // A last value that falls past the grid's rows (X more than two thirds of a step past the
    // last row) keeps its cross on the plot but has no row to show in.
    const std::vector<TableValue>& values() const { return values_; }
    // The point table: pixel coordinates of each value, for the mouse handler.
    const std::vector<PlotPoint>& points() const { return points_; }

    // "Une division correspond à 100 kJ"
    QString energyLegend() const;
    // "Une division", "correspond à", "0,2 mol"
    QStringList xLegend() const;

    // Cursor readouts at a pixel of Picture1.
    static bool insidePlot(double px, double py);
    QString cursorX(double px) const;
    QString cursorEnergy(double py) const;
    // The first row (below rowCount) whose point lies within PickDistance of the pixel, or -1.
    int rowNear(double px, double py) const;

    // The table as text, headings first: columns separated by sep, numbers with a decimal
    // comma and no group blanks, lines ended by CR LF.
    QString tableText(QChar sep) const;

private:
    double x_ = 0;
    double slope_ = 0;
    double w_ = EmptyEnergySpan;
    AxisScale xAxis_;
    AxisScale energyAxis_;
    int rows_ = 0;
    std::vector<TableValue> values_;
    std::vector<PlotPoint> points_;
};

// The headings of the table's columns, as exported.
QString tableHeading(int column);

// The text of a table cell: the pattern followed by two blanks.
QString tableCell(double value);

// A number taken to about nine significant digits, so that a quotient of decimal values lands
// on the integer it is in decimal before its integer part is taken (0,3 / 0,015 gives 20).
double roundSignificant(double value, int digits = 9);

} // namespace macro

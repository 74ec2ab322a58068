#pragma once

#include "chemistry/catalogue.h"
#include "micro/animation.h"

#include <QString>
#include <optional>
#include <vector>

namespace micro {

// One Print on a picture box, with the font it is printed in. Runs without x continue at
// CurrentX where the previous run ended; a right edge places the text so that it ends there.
struct TextRun {
    QString text;
    double y = 0;
    std::optional<double> x;
    std::optional<double> rightEdge;
    QString fontName = QStringLiteral("Arial");
    double fontSize = 8;
    bool bold = false;
    bool italic = false;
};

// --- Equation banner (Picture3) --------------------------------------------------------------

constexpr double BannerX = 63;
constexpr double BannerY = 15;
constexpr double BannerFontSize = 10;
constexpr double BannerSubscriptSize = 8;
constexpr double BannerSubscriptDrop = 4;

// The equation of reaction 1..8, or the reserve ninth (N2 + 3 H2), as printed: a run of
// blanks at (63, 15), then its pieces. Empty for any other index.
std::vector<TextRun> bannerRuns(int reactionIndex);

// --- Energy diagram (Picture2) ---------------------------------------------------------------

// y = ZeroLine − E / KjPerUnit, E in kJ/mol.
constexpr double DiagramZeroLine = 300;
constexpr double DiagramKjPerUnit = 63;
constexpr double DiagramFontSize = 8;
constexpr double DiagramRightEdge = 48;

struct Box {
    double x1, y1, x2, y2;
};

struct EnergyDiagram {
    Box received;                // the energy taken in while bonds are cut
    std::optional<Box> released; // the energy given back while bonds form
    std::vector<TextRun> runs;   // axis title, then the bar labels
};

// `sinceIntermediate` is the option "Afficher l'énergie libérée depuis l'état intermédiaire".
EnergyDiagram energyDiagram(const DiagramInput& in, bool sinceIntermediate);

// --- Data panel (Picture5) -------------------------------------------------------------------

constexpr double PanelFontSize = 9;
constexpr double HeatFontSize = 10;

struct PanelEntry {
    chemistry::BondType type;
    int x, y;
};

// Where each bond of the reaction is listed: two columns (40, 200), rows 26 apart from 29,
// filled left then right, with C=O always on a row of its own in the left column.
std::vector<PanelEntry> panelEntries(int reactionIndex);

// The whole panel: heading, one entry per bond (per-bond values in 10^-18 J on the Micro tab,
// molar values elsewhere) and, when asked, the heat of reaction.
std::vector<TextRun> dataPanelRuns(int reactionIndex, int activeTab, bool showHeat,
                                   std::int16_t broken, std::int16_t formed);

} // namespace micro

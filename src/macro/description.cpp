#include "macro/description.h"

#include "platform/numberformat.h"

#include <algorithm>
#include <cmath>

namespace macro {

namespace {

// The blue bars stand in frames from y 18 to 218; the red columns rise from 198 to 18.
int percent(double top, double bottom, double height) {
    return static_cast<int>(std::lround(std::clamp((bottom - top) / height, 0.0, 1.0) * 100));
}

QString number(double v) {
    return platform::formatTrimmed(v, QStringLiteral("### ### ##0.0##"));
}

} // namespace

QString systemDescription(bool open, double x, double exchangedEnergy, const GaugeLevels& g) {
    return QStringLiteral("%1. Avancement x = %2 mol. Énergie échangée ΔE = %3 kJ. Système : "
                          "énergie %4 %, température %5 %. Milieu extérieur : énergie %6 %, "
                          "température %7 %.")
        .arg(open ? QStringLiteral("Système ouvert") : QStringLiteral("Système isolé"), number(x),
             number(exchangedEnergy))
        .arg(percent(g.systemBar, 218, 200))
        .arg(percent(g.systemThermometer, 198, 180))
        .arg(percent(g.surroundingsBar, 218, 200))
        .arg(percent(g.surroundingsThermometer, 198, 180));
}

QString graphDescription(const EnergyGraph& graph) {
    const double x = graph.maxAdvancement();
    return QStringLiteral("Graphe de |ΔE| en fonction de l'avancement x. Axe x de 0 à %1 mol, "
                          "axe |ΔE| de 0 à %2 kJ. La droite part de l'origine et finit en x = "
                          "%3 mol, |ΔE| = %4 kJ.")
        .arg(number(graph.xAxis().span()), number(graph.energyAxis().span()), number(x),
             number(graph.energyAt(x)));
}

} // namespace macro

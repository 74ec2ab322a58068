#include "micro/description.h"

#include "chemistry/catalogue.h"
#include "micro/bonds.h"
#include "platform/numberformat.h"

#include <algorithm>

namespace micro {

namespace {

// "C – H", "O = O"; the C=O label's "(dans CO₂)" belongs to the data panel, not to a bond.
QString bondName(chemistry::BondType type) {
    return chemistry::bondInfo(type).label.section(QStringLiteral(" ("), 0, 0).trimmed();
}

QString attojoules(double kj) {
    return platform::formatTrimmed(kj / chemistry::ATTOJOULE_DIVISOR, QStringLiteral("##0.0##")) +
           QStringLiteral(" × 10⁻¹⁸ J");
}

} // namespace

QString moleculesDescription(int reactionIndex, const DiagramInput& d, bool simultaneous) {
    const auto cut = cutBonds(reactionIndex);
    const auto formed = formedBonds(reactionIndex);
    const int cutTotal = static_cast<int>(cut.size());
    const int formTotal = static_cast<int>(formed.size());
    const int s = d.step;
    const int cutNow = std::clamp(s, 0, cutTotal);
    const int formedNow = s >= d.formStartStep ? std::clamp(s - d.formStartStep, 0, formTotal) : 0;

    QString phase;
    if (s <= 0)
        phase = QStringLiteral("état initial, toutes les liaisons des réactifs");
    else if (s >= d.finalStep && formedNow == formTotal)
        phase = QStringLiteral("état final, toutes les liaisons des produits");
    else if (s <= d.breakCount)
        phase = QStringLiteral("rupture des liaisons");
    else if (s < d.formStartStep)
        phase = QStringLiteral("atomes séparés, en mouvement");
    else
        phase = QStringLiteral("formation des liaisons");

    QString text = QStringLiteral("%1. Phase : %2. Liaisons rompues : %3 sur %4. Liaisons "
                                  "formées : %5 sur %6.")
                       .arg(chemistry::reaction(reactionIndex).label, phase)
                       .arg(cutNow)
                       .arg(cutTotal)
                       .arg(formedNow)
                       .arg(formTotal);
    if (simultaneous)
        return text;
    if (s >= 1 && s <= cutTotal && s <= d.breakCount) {
        const chemistry::BondType t = cut[static_cast<std::size_t>(s - 1)].type;
        text += QStringLiteral(" Dernière liaison rompue : %1, %2 kJ/mol reçus.")
                    .arg(bondName(t))
                    .arg(cuttingEnergy(t));
    } else if (formedNow >= 1 && s > d.formStartStep) {
        const chemistry::BondType t = formed[static_cast<std::size_t>(formedNow - 1)].type;
        text += QStringLiteral(" Dernière liaison formée : %1, %2 kJ/mol cédés.")
                    .arg(bondName(t))
                    .arg(formingEnergy(t));
    }
    return text;
}

QString diagramDescription(float currentEnergy) {
    return QStringLiteral("Diagramme énergétique. Énergie du système par rapport à l'état "
                          "initial : %1.")
        .arg(attojoules(currentEnergy));
}

} // namespace micro

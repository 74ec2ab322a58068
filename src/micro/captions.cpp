#include "micro/captions.h"

#include "platform/checkedint.h"
#include "platform/numberformat.h"

#include <array>

namespace micro {

namespace {

// Equations written with {d} for a subscript digit and '>' for the long arrow.
struct Equation {
    int leadingBlanks;
    const char* text;
};

constexpr std::array<Equation, 9> kEquations{{
    {5, "CH{4} + 2 O{2}> CO{2} + 2 H{2}O"},
    {3, "2 C{2}H{6} + 7 O{2}> 4 CO{2} + 6 H{2}O"},
    {5, "C{3}H{8} + 5 O{2}> 3 CO{2} + 4 H{2}O"},
    {1, "2 C{4}H{10} + 13 O{2}> 8 CO{2} + 10 H{2}O"},
    {11, "2 H{2} + O{2}> 2 H{2}O"},
    {12, "H{2} + Cl{2}> 2 HCl"},
    {3, "2 CH{4}O + 3 O{2}> 2 CO{2} + 4 H{2}O"},
    {3, "C{2}H{6}O + 3 O{2}> 2 CO{2} + 3 H{2}O"},
    // Never offered by the reaction list; kept for a future ammonia synthesis.
    {5, "N{2} + 3 H{2}> 2 NH{3}"},
}};

// The Symbol font's blank, arrow extender and arrow head: together one long arrow.
const QString kArrow = QStringLiteral(" \u00BE\u00AE");

const QString kDiagramFormat = QStringLiteral("### ##0.0");

TextRun run(const QString& text, double y, double size, bool bold = false, bool italic = false) {
    TextRun r;
    r.text = text;
    r.y = y;
    r.fontSize = size;
    r.bold = bold;
    r.italic = italic;
    return r;
}

TextRun runAt(const QString& text, double x, double y, double size, bool bold = false,
              bool italic = false) {
    TextRun r = run(text, y, size, bold, italic);
    r.x = x;
    return r;
}

double energyY(double kj) {
    return DiagramZeroLine - kj / DiagramKjPerUnit;
}

QString attojoules(double kj) {
    return platform::formatNumber(kj / chemistry::ATTOJOULE_DIVISOR, kDiagramFormat);
}

} // namespace

std::vector<TextRun> bannerRuns(int reactionIndex) {
    std::vector<TextRun> runs;
    if (reactionIndex < 1 || reactionIndex > static_cast<int>(kEquations.size()))
        return runs;
    const Equation& eq = kEquations[static_cast<std::size_t>(reactionIndex - 1)];
    runs.push_back(
        runAt(QString(eq.leadingBlanks, QLatin1Char(' ')), BannerX, BannerY, BannerFontSize, true));

    const QString text = QString::fromLatin1(eq.text);
    QString plain;
    const auto flush = [&] {
        if (!plain.isEmpty())
            runs.push_back(run(plain, BannerY, BannerFontSize, true));
        plain.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('{')) {
            flush();
            const qsizetype close = text.indexOf(QLatin1Char('}'), i);
            runs.push_back(run(text.mid(i + 1, close - i - 1), BannerY + BannerSubscriptDrop,
                               BannerSubscriptSize, true));
            i = close;
        } else if (c == QLatin1Char('>')) {
            flush();
            TextRun arrow = run(kArrow, BannerY, BannerFontSize, true);
            arrow.fontName = QStringLiteral("Symbol");
            runs.push_back(arrow);
        } else {
            plain += c;
        }
    }
    flush();
    return runs;
}

EnergyDiagram energyDiagram(const DiagramInput& in, bool sinceIntermediate) {
    EnergyDiagram d;
    const double eb = in.broken;
    const double ec = in.current;
    const bool cutsDone = in.step > in.breakCount;
    d.received = Box{5, energyY(cutsDone ? eb : ec), 25, DiagramZeroLine};
    if (in.step >= in.finalStep)
        d.released =
            Box{28, energyY(eb), 48,
                DiagramZeroLine + platform::sub16(in.formed, in.broken) / DiagramKjPerUnit};
    else if (in.step >= in.formStartStep)
        d.released = Box{28, energyY(eb), 48, energyY(ec)};

    d.runs.push_back(runAt(QStringLiteral("E"), 0, 3, DiagramFontSize, false, true));
    d.runs.push_back(run(QStringLiteral(" (10"), 3, DiagramFontSize));
    d.runs.push_back(run(QStringLiteral("-18"), 0, DiagramFontSize));
    d.runs.push_back(run(QStringLiteral(" J)"), 3, DiagramFontSize));

    const double received = cutsDone ? eb : ec;
    d.runs.push_back(runAt(QStringLiteral("+") + attojoules(received), 5, energyY(received) - 15,
                           DiagramFontSize));

    std::optional<TextRun> label;
    if (in.step >= in.finalStep) {
        const std::int16_t balance = platform::sub16(in.broken, in.formed);
        if (sinceIntermediate)
            label =
                run(attojoules(-static_cast<double>(in.formed)), energyY(balance), DiagramFontSize);
        else
            label = run((balance > 0 ? QStringLiteral("+") : QString()) + attojoules(balance),
                        energyY(balance), DiagramFontSize);
    } else if (in.step >= in.formStartStep) {
        if (sinceIntermediate)
            label = run(attojoules(ec - eb), energyY(ec), DiagramFontSize);
        else
            label = run((ec > 0 ? QStringLiteral("+") : QString()) + attojoules(ec), energyY(ec),
                        DiagramFontSize);
    }
    if (label) {
        label->rightEdge = DiagramRightEdge;
        d.runs.push_back(*label);
    }
    return d;
}

std::vector<PanelEntry> panelEntries(int reactionIndex) {
    std::vector<PanelEntry> entries;
    if (!chemistry::isValidIndex(reactionIndex))
        return entries;
    constexpr int columns[2] = {40, 200};
    int row = 0;
    int column = 0;
    for (const chemistry::BondType type : chemistry::reaction(reactionIndex).panelRows) {
        if (type == chemistry::BondType::CdO && column != 0) {
            ++row;
            column = 0;
        }
        entries.push_back(PanelEntry{type, columns[column], 29 + 26 * row});
        if (type == chemistry::BondType::CdO || column == 1) {
            ++row;
            column = 0;
        } else {
            column = 1;
        }
    }
    return entries;
}

std::vector<TextRun> dataPanelRuns(int reactionIndex, int activeTab, bool showHeat,
                                   std::int16_t broken, std::int16_t formed) {
    std::vector<TextRun> runs;
    runs.push_back(runAt(QStringLiteral("Données :"), 10, 3, PanelFontSize, true));
    const bool microTab = activeTab < 2;

    for (const PanelEntry& e : panelEntries(reactionIndex)) {
        const chemistry::BondInfo& info = chemistry::bondInfo(e.type);
        const double y = e.y;
        runs.push_back(runAt(QStringLiteral("D"), e.x, y, PanelFontSize, false, true));
        runs.push_back(run(info.label, y + 7, PanelFontSize));
        if (!info.labelSuffix.isEmpty()) {
            runs.push_back(run(QStringLiteral("2"), y + 10, PanelFontSize));
            runs.push_back(run(info.labelSuffix, y + 7, PanelFontSize));
        }
        if (microTab) {
            runs.push_back(run(info.perBondText, y, PanelFontSize));
            runs.push_back(run(QStringLiteral("-18"), y - 3, PanelFontSize));
            runs.push_back(run(QStringLiteral(" J"), y, PanelFontSize));
        } else {
            runs.push_back(run(info.molarText, y, PanelFontSize));
            runs.push_back(run(QStringLiteral("-1"), y - 3, PanelFontSize));
        }
    }

    if (showHeat && chemistry::isValidIndex(reactionIndex)) {
        constexpr double y = 131;
        runs.push_back(runAt(QStringLiteral("Q"), 90, y, HeatFontSize, true, true));
        runs.push_back(run(QStringLiteral("r"), y + 3, HeatFontSize, true));
        if (microTab) {
            runs.push_back(
                run(QStringLiteral(" = – ") + chemistry::heatAttojouleText(broken, formed), y,
                    HeatFontSize, true));
            runs.push_back(run(QStringLiteral(" · 10"), y, HeatFontSize, true));
            runs.push_back(run(QStringLiteral("-18"), y - 3, 8, true));
            runs.push_back(run(QStringLiteral(" J"), y, HeatFontSize, true));
        } else {
            runs.push_back(run(QStringLiteral(" = – ") + chemistry::heatMolarText(broken, formed),
                               y, HeatFontSize, true));
            runs.push_back(run(QStringLiteral(" kJ · mol"), y, HeatFontSize, true));
            runs.push_back(run(QStringLiteral("-1"), y - 3, 8, true));
        }
    }
    return runs;
}

} // namespace micro

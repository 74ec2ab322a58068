// The exercises shipped in the program folder: their files hold together, their texts follow
// French typography, and every number a correction states is the one Thermivo shows for the
// correction's configuration.
//
// Each exercise NAME.E31 has a companion NAME.valeurs listing "quantity = value" lines, the
// value written as the correction writes it. The quantity is computed here from the engine's
// own catalogue, balance, diagram, graph and calculator functions, in the program's display
// formats, and the value must also appear in the correction's text.

#include "calculator/evaluator.h"
#include "calculator/numbertext.h"
#include "chemistry/catalogue.h"
#include "macro/balance.h"
#include "macro/graph.h"
#include "micro/animation.h"
#include "micro/captions.h"
#include "micro/geometry.h"
#include "platform/checkedint.h"
#include "platform/numberformat.h"
#include "platform/programfolder.h"
#include "platform/recordfile.h"
#include "platform/rtfreader.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QTest>
#include <cmath>
#include <optional>

namespace {

const QString DataFolder = QStringLiteral(THERMIVO_SOURCE_DATA);
const QString ExerciseFolder = DataFolder + QStringLiteral("/exercices");

// What a configuration file restores, read the way the loader reads it.
struct Situation {
    int reaction = 0; // 1..8
    float a = 0;
    float b = 0;
    bool isolated = false;
};

QString recordText(const QString& path, int n) {
    return platform::RecordFile(path).readText(n).value_or(QStringLiteral("<missing>"));
}

// Checks the eight records of a .C10 and returns its situation; empty with a reason otherwise.
std::optional<Situation> readConfiguration(const QString& path, QString* why) {
    const platform::RecordFile file(path);
    if (file.recordCount() != 8) {
        *why = QStringLiteral("eight records expected");
        return std::nullopt;
    }
    QString text[9];
    for (int n = 1; n <= 8; ++n) {
        const auto t = file.readText(n);
        if (!t) {
            *why = QStringLiteral("record %1 unreadable").arg(n);
            return std::nullopt;
        }
        text[n] = *t;
    }
    if (text[1] != QLatin1String("TERVO")) {
        *why = QStringLiteral("no signature");
        return std::nullopt;
    }
    Situation s;
    const double position = calculator::NumberValue(text[2]);
    s.reaction = static_cast<int>(position) + 1;
    // Record 2 is written as the number text of the list position: " 0" to " 7".
    if (!chemistry::isValidIndex(s.reaction) || calculator::NumberText(position) != text[2]) {
        *why = QStringLiteral("record 2 is not a list position: [%1]").arg(text[2]);
        return std::nullopt;
    }
    // The amounts are stored as the Macro tab shows them once validated.
    for (int n : {3, 4}) {
        if (macro::validatedAmountText(text[n]) != text[n]) {
            *why = QStringLiteral("record %1 is not a validated amount: [%2]").arg(n).arg(text[n]);
            return std::nullopt;
        }
    }
    for (int n = 5; n <= 8; ++n) {
        if (text[n] != QLatin1String("0") && text[n] != QLatin1String("1")) {
            *why = QStringLiteral("record %1 is not an option: [%2]").arg(n).arg(text[n]);
            return std::nullopt;
        }
    }
    s.a = macro::readAmount(text[3]);
    s.b = macro::readAmount(text[4]);
    s.isolated = text[8] == QLatin1String("1");
    return s;
}

// "reaction=4 a=1,0 b=10,0 isole=0"
std::optional<Situation> parseSituation(const QString& text) {
    Situation s;
    int seen = 0;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString key = word.section(QLatin1Char('='), 0, 0);
        const QString value = word.section(QLatin1Char('='), 1);
        if (key == QLatin1String("reaction"))
            s.reaction = value.toInt();
        else if (key == QLatin1String("a"))
            s.a = macro::readAmount(value);
        else if (key == QLatin1String("b"))
            s.b = macro::readAmount(value);
        else if (key == QLatin1String("isole"))
            s.isolated = value == QLatin1String("1");
        else
            return std::nullopt;
        ++seen;
    }
    if (seen != 4 || !chemistry::isValidIndex(s.reaction))
        return std::nullopt;
    return s;
}

std::optional<chemistry::BondType> bondType(const QString& id) {
    using enum chemistry::BondType;
    static const QHash<QString, chemistry::BondType> ids{
        {QStringLiteral("CH"), CH}, {QStringLiteral("CC"), CC},     {QStringLiteral("OO"), OO},
        {QStringLiteral("CO"), CO}, {QStringLiteral("OH"), OH},     {QStringLiteral("CdO"), CdO},
        {QStringLiteral("HH"), HH}, {QStringLiteral("ClCl"), ClCl}, {QStringLiteral("HCl"), HCl},
    };
    const auto it = ids.find(id);
    if (it == ids.end())
        return std::nullopt;
    return *it;
}

int bondCount(const std::vector<chemistry::BondCount>& bonds,
              std::optional<chemistry::BondType> t) {
    int n = 0;
    for (const chemistry::BondCount& b : bonds)
        if (!t || b.type == *t)
            n += b.count;
    return n;
}

// The last label of the energy diagram at the final state, blanks removed ("+4,4", "-1,3").
QString diagramLabel(const Situation& s, bool received, bool sinceIntermediate) {
    const chemistry::BondTotals totals = chemistry::computeTotals(s.reaction);
    const micro::AnimationConstants k = *micro::animationConstants(s.reaction);
    micro::DiagramInput in;
    in.breakCount = k.breakCount;
    in.formStartStep = k.formStartStep;
    in.finalStep = platform::add16(k.formStartStep, k.formCount);
    in.step = in.finalStep;
    in.broken = totals.broken;
    in.formed = totals.formed;
    in.current = static_cast<float>(totals.broken - totals.formed);
    const micro::EnergyDiagram d = micro::energyDiagram(in, sinceIntermediate);
    // Runs: the axis title (four pieces), the received bar's label, the released bar's label.
    QString label = d.runs.at(received ? 4 : 5).text;
    label.remove(QLatin1Char(' '));
    return label;
}

// The text Thermivo shows for a quantity in a situation; empty with a reason when the quantity
// is unknown or not shown there.
QString shownText(const Situation& s, const QString& key, QString* why) {
    const chemistry::Reaction& r = chemistry::reaction(s.reaction);
    const chemistry::BondTotals totals = chemistry::computeTotals(s.reaction);
    const macro::Stoichiometry nu = *macro::stoichiometry(s.reaction);
    const double xmax = macro::maxAdvancement(s.a, s.b, nu);
    const QString amountPattern = QString::fromLatin1(macro::AmountPattern);

    // The Macro tab at a slider position: Label5 (x), Label4(0..3) (n1..n4), Label6 (dE).
    static const QRegularExpression atSlider(QStringLiteral("^(x|n[1-4]|dE)@(\\d+|fin)$"));
    if (const auto m = atSlider.match(key); m.hasMatch()) {
        const int value =
            m.captured(2) == QLatin1String("fin") ? macro::SliderMax : m.captured(2).toInt();
        if (value > macro::SliderMax) {
            *why = QStringLiteral("beyond the slider");
            return {};
        }
        const double x = macro::advancementAt(xmax, value, macro::SliderMax);
        const QString what = m.captured(1);
        if (what == QLatin1String("x"))
            return macro::formatWithUnit(x, QStringLiteral("mol"));
        if (what == QLatin1String("dE"))
            return macro::formatWithUnit(
                s.isolated ? 0.0 : macro::exchangedEnergy(x, totals.broken, totals.formed),
                QStringLiteral("kJ"));
        const int species = what.mid(1).toInt();
        if (species == 4 && !nu.hasSecondProduct()) {
            *why = QStringLiteral("no second product");
            return {};
        }
        return macro::formatAmount(macro::amountsAt(s.a, s.b, nu, x).n[species - 1]).trimmed();
    }
    if (key == QLatin1String("x_max"))
        return macro::formatWithUnit(xmax, QStringLiteral("mol"));
    if (key == QLatin1String("limitant")) {
        // The reactants the Macro tab shows at 0,0 once the slider is at its end.
        const macro::Amounts end = macro::amountsAt(s.a, s.b, nu, xmax);
        const QString zero = macro::formatAmount(0.0);
        QStringList spent;
        if (macro::formatAmount(end.n[0]) == zero)
            spent << r.fuel.formula;
        if (macro::formatAmount(end.n[1]) == zero)
            spent << r.oxidant.formula;
        return spent.join(QStringLiteral(" et "));
    }

    // The data panel with "Afficher la chaleur de réaction".
    if (key == QLatin1String("Qr_kJ"))
        return chemistry::heatMolarText(totals.broken, totals.formed);
    if (key == QLatin1String("Qr_aJ"))
        return chemistry::heatAttojouleText(totals.broken, totals.formed);
    // Bond-energy totals in the same kJ·mol-1 format as the heat of reaction.
    if (key == QLatin1String("Erompues_kJ"))
        return chemistry::heatMolarText(totals.broken, 0);
    if (key == QLatin1String("Eformees_kJ"))
        return chemistry::heatMolarText(totals.formed, 0);

    // The energy diagram of the Micro tab at the final state.
    if (key == QLatin1String("diagramme.recue"))
        return diagramLabel(s, true, false);
    if (key == QLatin1String("diagramme.finale"))
        return diagramLabel(s, false, false);
    if (key == QLatin1String("diagramme.formation"))
        return diagramLabel(s, false, true);

    // Bond inventories and the bond energies of the data panel.
    static const QRegularExpression bonds(QStringLiteral("^(rompues|formees|D_kJ|D_aJ)\\.(\\w+)$"));
    if (const auto m = bonds.match(key); m.hasMatch()) {
        const bool total = m.captured(2) == QLatin1String("total");
        const auto type = bondType(m.captured(2));
        if (!type && !(total && !m.captured(1).startsWith(QLatin1Char('D')))) {
            *why = QStringLiteral("unknown bond");
            return {};
        }
        if (m.captured(1) == QLatin1String("rompues"))
            return QString::number(bondCount(r.broken, type));
        if (m.captured(1) == QLatin1String("formees"))
            return QString::number(bondCount(r.formed, type));
        const chemistry::BondInfo& info = chemistry::bondInfo(*type);
        if (std::find(r.panelRows.begin(), r.panelRows.end(), *type) == r.panelRows.end()) {
            *why = QStringLiteral("bond not in this reaction's data panel");
            return {};
        }
        if (m.captured(1) == QLatin1String("D_kJ"))
            return QString::number(info.kjPerMol);
        QString text = info.perBondText; // " = 0,681 · 10"
        return text.remove(QStringLiteral(" = ")).remove(QStringLiteral(" · 10"));
    }

    // The calculator: the standard display after EXE, or that result in a stated pattern.
    if (key.startsWith(QLatin1String("calc:"))) {
        QString expression = key.mid(5).section(QLatin1Char('|'), 0, 0);
        const QString pattern = key.section(QLatin1Char('|'), 1);
        std::int16_t code = 0;
        calculator::EvaluateExpression(expression, code, calculator::Degrees);
        if (code != calculator::EvalOk) {
            *why = QStringLiteral("the calculator fails with code %1").arg(code);
            return {};
        }
        const double value = calculator::NumberValue(expression);
        if (pattern.isEmpty())
            return calculator::trimBlanks(calculator::NumberText(value));
        return platform::formatTrimmed(value, pattern);
    }

    // The graph window: a row of its value table, its division legends, its step.
    macro::GraphInput input;
    input.maxAdvancement = xmax;
    input.brokenBondsEnergy = totals.broken;
    input.formedBondsEnergy = totals.formed;
    input.openSystem = !s.isolated;
    const macro::EnergyGraph graph(input);
    if (key.startsWith(QLatin1String("graphe@"))) {
        const QString x = key.mid(7);
        const auto& values = graph.values();
        for (std::size_t i = 0; i < values.size() && static_cast<int>(i) < graph.rowCount(); ++i)
            if (values[i].xText.trimmed() == x)
                return values[i].energyText.trimmed();
        *why = QStringLiteral("no row x = %1 in the value table").arg(x);
        return {};
    }
    if (key == QLatin1String("graphe.divisionE"))
        return graph.energyAxis().divisionText() + QStringLiteral(" kJ");
    if (key == QLatin1String("graphe.divisionx"))
        return graph.xAxis().divisionText() + QStringLiteral(" mol");
    if (key == QLatin1String("graphe.pas"))
        return graph.values().at(1).xText.trimmed();
    if (key == QLatin1String("graphe.lignes"))
        return QString::number(graph.rowCount());

    *why = QStringLiteral("unknown quantity");
    return {};
}

QByteArray fileBytes(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

// The text of an RTF file as a reader sees it, with the typographic signs a number may carry
// brought back to the program's: no-break spaces to blanks, minus signs and dashes to "-".
QString comparableText(const QString& rtfPath) {
    QString text = platform::rtf::read(fileBytes(rtfPath)).plainText();
    text.replace(QChar(0x00A0), QLatin1Char(' '));
    text.replace(QChar(0x202F), QLatin1Char(' '));
    text.replace(QChar(0x2212), QLatin1Char('-'));
    text.replace(QChar(0x2013), QLatin1Char('-'));
    return text;
}

QStringList exerciseNames() {
    QStringList names;
    for (const QString& file : QDir(ExerciseFolder).entryList({QStringLiteral("*.E31")}))
        names << file.chopped(4);
    return names;
}

// Every text the program shows: the statements, the corrections and the tour.
QStringList allTexts() {
    return QDir(ExerciseFolder).entryList({QStringLiteral("*.rtf")});
}

} // namespace

class TestExerciseContent : public QObject {
    Q_OBJECT
private slots:
    void exerciseFiles_data();
    void exerciseFiles();
    void gettingStarted();
    void values_data();
    void values();
    void typography_data();
    void typography();

private:
    QHash<QString, QString> correctionText_;
};

void TestExerciseContent::exerciseFiles_data() {
    QTest::addColumn<QString>("name");
    const QStringList names = exerciseNames();
    QVERIFY2(names.size() >= 12, "at least twelve exercises ship");
    for (const QString& name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void TestExerciseContent::exerciseFiles() {
    QFETCH(QString, name);
    const QString path = ExerciseFolder + QLatin1Char('/') + name + QStringLiteral(".E31");
    QCOMPARE(platform::RecordFile(path).recordCount(), 11);

    // Statement and correction, each a rich text and a configuration of the same reaction.
    int reaction = 0;
    for (int n : {1, 3}) {
        const QString text = platform::resolveInFolder(ExerciseFolder, recordText(path, n));
        const QString config = platform::resolveInFolder(ExerciseFolder, recordText(path, n + 1));
        platform::rtf::ReadReport report;
        const platform::rtf::Document doc = platform::rtf::read(fileBytes(text), &report);
        QVERIFY2(report.rtfHeader && !report.unterminated, qPrintable(text));
        QVERIFY2(doc.plainText().size() > 200, qPrintable(text));
        QString why;
        const auto s = readConfiguration(config, &why);
        QVERIFY2(s, qPrintable(config + QStringLiteral(": ") + why));
        if (reaction == 0)
            reaction = s->reaction;
        QCOMPARE(s->reaction, reaction);
    }

    const QString level = recordText(path, 5);
    QVERIFY2(level == QLatin1String("1") || level == QLatin1String("2") ||
                 level == QLatin1String("3"),
             qPrintable(level));
    QVERIFY(!recordText(path, 6).trimmed().isEmpty());
    const QString title = recordText(path, 11);
    QVERIFY(!title.trimmed().isEmpty());
    QVERIFY2(title.size() <= 48, qPrintable(title));
    QVERIFY(QFile::exists(ExerciseFolder + QLatin1Char('/') + name + QStringLiteral(".valeurs")));
}

void TestExerciseContent::gettingStarted() {
    // Opened from the program folder itself, so its names carry the exercise folder.
    const QString path = DataFolder + QStringLiteral("/tervox.PEM");
    const QString text = platform::resolveInFolder(DataFolder, recordText(path, 1));
    const QString config = platform::resolveInFolder(DataFolder, recordText(path, 2));
    platform::rtf::ReadReport report;
    const QString tour = platform::rtf::read(fileBytes(text), &report).plainText();
    QVERIFY2(report.rtfHeader && !report.unterminated, qPrintable(text));
    QString why;
    QVERIFY2(readConfiguration(config, &why), qPrintable(config + QStringLiteral(": ") + why));
    // The tour names every control of the main window it walks through.
    for (const char* control :
         {"Réaction étudiée", "Micro",        "Macro",      "Options",     "État initial",
          "Animation",        "Pause",        "État final", "curseur",     "refroidit",
          "Graphe",           "Calculatrice", "Ouvrir",     "Enregistrer", "Imprimer",
          "Copier",           "Aide",         "Fermer",     "Exercices",   "Voir la correction"})
        QVERIFY2(tour.contains(QString::fromUtf8(control)), control);
}

void TestExerciseContent::values_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    for (const QString& name : exerciseNames()) {
        const QString base = ExerciseFolder + QLatin1Char('/') + name;
        correctionText_[name] = comparableText(platform::resolveInFolder(
            ExerciseFolder, recordText(base + QStringLiteral(".E31"), 3)));
        QFile file(base + QStringLiteral(".valeurs"));
        QVERIFY2(file.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(file.fileName()));
        QString situation = QStringLiteral("correction");
        int count = 0;
        for (const QString& raw : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
            const QString line = raw.trimmed();
            if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
                continue;
            if (line.startsWith(QLatin1String("situation "))) {
                situation = line.mid(10).trimmed();
                continue;
            }
            const qsizetype eq = line.lastIndexOf(QLatin1Char('='));
            QVERIFY2(eq > 0, qPrintable(line));
            const QString key = line.left(eq).trimmed();
            QTest::addRow("%s %s [%s]", qPrintable(name), qPrintable(key), qPrintable(situation))
                << name << situation << key << line.mid(eq + 1).trimmed();
            ++count;
        }
        QVERIFY2(count > 0, qPrintable(name));
    }
}

void TestExerciseContent::values() {
    QFETCH(QString, name);
    QFETCH(QString, situation);
    QFETCH(QString, key);
    QFETCH(QString, value);

    std::optional<Situation> s;
    if (situation == QLatin1String("correction")) {
        const QString e31 = ExerciseFolder + QLatin1Char('/') + name + QStringLiteral(".E31");
        QString why;
        s = readConfiguration(platform::resolveInFolder(ExerciseFolder, recordText(e31, 4)), &why);
        QVERIFY2(s, qPrintable(why));
    } else {
        s = parseSituation(situation);
        QVERIFY2(s, qPrintable(QStringLiteral("bad situation: ") + situation));
    }

    QString why;
    const QString shown = shownText(*s, key, &why);
    QVERIFY2(why.isEmpty(), qPrintable(key + QStringLiteral(": ") + why));
    QCOMPARE(value, shown);
    QVERIFY2(correctionText_.value(name).contains(value),
             qPrintable(QStringLiteral("the correction does not write ") + value));
}

void TestExerciseContent::typography_data() {
    QTest::addColumn<QString>("file");
    for (const QString& file : allTexts())
        QTest::newRow(qPrintable(file)) << file;
}

// What a reader sees: formulas with lowered digits, exponents raised, and the French spaces.
void TestExerciseContent::typography() {
    QFETCH(QString, file);
    const platform::rtf::Document doc =
        platform::rtf::read(fileBytes(ExerciseFolder + QLatin1Char('/') + file));
    static const QRegularExpression formulaDigit(
        QStringLiteral("(?<![\\w.])(?:(?:Cl|C|H|O)\\d*)*(?:Cl|C|H|O)\\d"),
        QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression flatExponent(QStringLiteral("(mol|g|10)[-\u2212]\\d|10\\^"));
    for (const platform::rtf::Paragraph& p : doc.paragraphs) {
        for (const platform::rtf::Run& run : p.runs) {
            if (run.format.vertical != platform::rtf::VerticalAlign::Normal)
                continue;
            QVERIFY2(!formulaDigit.match(run.text).hasMatch(), qPrintable(run.text));
            QVERIFY2(!flatExponent.match(run.text).hasMatch(), qPrintable(run.text));
        }
        const QString text = p.text();
        static const QRegularExpression plainSpace(
            QStringLiteral(" [:;!?\u00BB]|\u00AB |\\d (mol|kJ|J|g)(?!\\w)|\\d \\d{3}(?!\\d)"),
            QRegularExpression::UseUnicodePropertiesOption);
        const auto m = plainSpace.match(text);
        QVERIFY2(!m.hasMatch(),
                 qPrintable(QStringLiteral("a breaking space in: ") +
                            text.mid(std::max<qsizetype>(0, m.capturedStart() - 20), 40)));
    }
}

QTEST_GUILESS_MAIN(TestExerciseContent)
#include "tst_exercisecontent.moc"

#include "macro/description.h"
#include "micro/description.h"
#include "micro/geometry.h"

#include <QTest>

// What a screen reader is told of each drawing.
class TestDescriptions : public QObject {
    Q_OBJECT
private slots:
    void molecules_data();
    void molecules();
    void diagram_data();
    void diagram();
    void system_data();
    void system();
    void graph_data();
    void graph();
};

void TestDescriptions::molecules_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("step");
    QTest::addColumn<bool>("simultaneous");
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QString>("absent");
    QTest::newRow("methane start")
        << 1 << 0 << false
        << QStringList{"Combustion complète du méthane dans le dioxygène. Phase : état initial",
                       "Liaisons rompues : 0 sur 6. Liaisons formées : 0 sur 6."}
        << "Dernière";
    QTest::newRow("methane first cut")
        << 1 << 1 << false
        << QStringList{"Phase : rupture des liaisons. Liaisons rompues : 1 sur 6.",
                       "Dernière liaison rompue : C – H, 410 kJ/mol reçus."}
        << "formée :";
    QTest::newRow("methane O=O cut")
        << 1 << 6 << false
        << QStringList{"Liaisons rompues : 6 sur 6.",
                       "Dernière liaison rompue : O = O, 494 kJ/mol reçus."}
        << "formée :";
    QTest::newRow("simultaneous: no single bond")
        << 1 << 1 << true << QStringList{"Phase : rupture des liaisons"} << "Dernière";
}

void TestDescriptions::molecules() {
    QFETCH(int, reaction);
    QFETCH(int, step);
    QFETCH(bool, simultaneous);
    QFETCH(QStringList, parts);
    QFETCH(QString, absent);
    const auto c = micro::animationConstants(reaction);
    QVERIFY(c);
    micro::DiagramInput d;
    d.step = static_cast<std::int16_t>(step);
    d.breakCount = c->breakCount;
    d.formStartStep = c->formStartStep;
    d.finalStep = static_cast<std::int16_t>(c->formStartStep + c->formCount);
    const QString text = micro::moleculesDescription(reaction, d, simultaneous);
    for (const QString& p : parts)
        QVERIFY2(text.contains(p), qPrintable(text));
    QVERIFY2(!text.contains(absent), qPrintable(text));
}

void TestDescriptions::diagram_data() {
    QTest::addColumn<float>("energy");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0f << "0,0 × 10⁻¹⁸ J";
    QTest::newRow("methane cut") << 2628.0f << "4,365 × 10⁻¹⁸ J";
    QTest::newRow("negative") << -460.0f << "-0,764 × 10⁻¹⁸ J";
}

void TestDescriptions::diagram() {
    QFETCH(float, energy);
    QFETCH(QString, text);
    QCOMPARE(micro::diagramDescription(energy),
             QStringLiteral("Diagramme énergétique. Énergie du système par rapport à l'état "
                            "initial : ") +
                 text + QLatin1Char('.'));
}

void TestDescriptions::system_data() {
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("slider");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("energy");
    QTest::addColumn<QString>("text");
    QTest::newRow("isolated start")
        << false << 0 << 0.0 << 0.0
        << "Système isolé. Avancement x = 0,0 mol. Énergie échangée ΔE = 0,0 kJ. Système : "
           "énergie 40 %, température 52 %. Milieu extérieur : énergie 60 %, température 35 %.";
    QTest::newRow("open end")
        << true << 10000 << 0.5 << -401.0
        << "Système ouvert. Avancement x = 0,5 mol. Énergie échangée ΔE = -401,0 kJ. Système : "
           "énergie 23 %, température 78 %. Milieu extérieur : énergie 77 %, température 52 %.";
}

void TestDescriptions::system() {
    QFETCH(bool, open);
    QFETCH(int, slider);
    QFETCH(double, x);
    QFETCH(double, energy);
    QFETCH(QString, text);
    const auto g =
        macro::gaugeLevels(open ? macro::GaugeMode::Open : macro::GaugeMode::Isolated, slider, 0);
    QCOMPARE(macro::systemDescription(open, x, energy, g), text);
}

void TestDescriptions::graph_data() {
    QTest::addColumn<double>("x");
    QTest::addColumn<QString>("text");
    QTest::newRow("butane, 0,5 mol")
        << 0.5
        << "Graphe de |ΔE| en fonction de l'avancement x. Axe x de 0 à 0,5 mol, axe |ΔE| de 0 "
           "à 1 400,0 kJ. La droite part de l'origine et finit en x = 0,5 mol, |ΔE| = "
           "1 329,0 kJ.";
}

void TestDescriptions::graph() {
    QFETCH(double, x);
    QFETCH(QString, text);
    macro::GraphInput in;
    in.maxAdvancement = x;
    in.brokenBondsEnergy = 10000;
    in.formedBondsEnergy = 12658;
    in.openSystem = true;
    QCOMPARE(macro::graphDescription(macro::EnergyGraph(in)), text);
}

QTEST_MAIN(TestDescriptions)
#include "tst_descriptions.moc"

#include "calculator/evaluator.h"
#include "calculator/numbertext.h"

#include <QTest>
#include <cfloat>
#include <cmath>
#include <random>

using namespace calculator;

class TestEvaluator : public QObject {
    Q_OBJECT
private slots:
    void evaluate_data();
    void evaluate();
    void simplifySigns_data();
    void simplifySigns();
    void numberText_data();
    void numberText();
    void numberValue_data();
    void numberValue();
    void roundTrip_data();
    void roundTrip();
    void blankDisplayStopsOperators();
    void randomStringsEndWithACode();
};

void TestEvaluator::evaluate_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("angle");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("result");

    auto row = [](const char* name, const QString& in, int angle, int code, const QString& out) {
        QTest::newRow(name) << in << angle << code << out;
    };
    // Precedence and signs
    row("sum and product", "2+3*4", 0, 0, "14");
    row("division chain", "8/2/2", 0, 0, "2");
    row("difference chain", "1-2-3", 0, 0, "-4");
    row("minus minus", "5 - -3", 0, 0, "8");
    row("plus minus", "5+-3", 0, 0, "2");
    row("power left first", "2^3^2", 0, 0, "64");
    row("sign binds power", "-2^2", 0, 0, "4");
    row("negative exponent", "2^-1", 0, 0, ".5");
    row("times negative", "2*-3", 0, 0, "-6");
    row("leading plus", "+7", 0, 0, "7");
    row("quotient", "1/4", 0, 0, ".25");
    row("exponent sign kept", "1E-3*2", 0, 0, ".002");
    row("exponent plus kept", "2E+3+1", 0, 0, "2001");
    row("D exponent", "1D2+1", 0, 0, "101");
    row("blanks dropped", "1 2 + 3", 0, 0, "15");
    row("big product", "1E200*1E100", 0, 0, "1E+300");
    row("small product", "1E-200*1E-100", 0, 0, "1E-300");
    row("lone number kept as typed", "1E3", 0, 0, "1E3");
    row("empty", "", 0, 0, "");
    // Parentheses
    row("group first", "(2+3)*4", 0, 0, "20");
    row("double wrap", "((7))", 0, 0, "7");
    row("negative wrap", "(-3)*2", 0, 0, "-6");
    row("two groups", "(1+2)*(3+4)", 0, 0, "21");
    row("nested", "(1-(2+3))*2", 0, 0, "-8");
    row("minus a group", "2-(-3)", 0, 0, "5");
    row("exponent in group", "(1E3)+1", 0, 0, "1001");
    row("group ending in sign", "(2+)", 0, 1, "");
    row("empty group", "()", 0, 0, "");
    // Functions, degrees and radians
    row("sin degrees", "sin 30", 0, 0, ".5");
    row("sin unwrapped", "sin(30)", 0, 0, ".5");
    row("tan degrees", "tan 45", 0, 0, "1");
    row("cos radians", "cos 0", 1, 0, "1");
    row("sin of group", "sin(10+20)", 0, 0, ".5");
    row("minus sin", "-sin 30", 0, 0, "-.5");
    row("sin of negative", "sin -30", 0, 0, "-.5");
    row("product of functions", "2*cos 60", 0, 0, "1");
    row("arc sine degrees", "invSIN 1", 0, 0, "90");
    row("arc sine radians", "invSIN 1", 1, 0, "1.5707963267949");
    row("arc sine minus one", "invSIN -1", 0, 0, "-90");
    row("arc cosine minus one", "invCOS -1", 0, 0, "180");
    row("arc cosine radians", "invCOS 0", 1, 0, "1.5707963267949");
    row("arc tangent degrees", "invTAN 1", 0, 0, "45");
    row("arc tangent radians", "invTAN 1", 1, 0, ".785398163397448");
    row("arc sine too big", "invSIN 2", 0, 1, "");
    row("arc cosine too small", "invCOS -1.5", 0, 1, "");
    row("ln 1", "ln 1", 0, 0, "0");
    row("ln 2", "ln 2", 0, 0, ".693147180559945");
    row("log 1000", "log 1000", 0, 0, "3");
    row("exp 1", "exp 1", 0, 0, "2.71828182845905");
    row("square root lower", "sqr 2", 0, 0, "1.4142135623731");
    row("square root key", QString::fromUtf8("ù9"), 0, 0, "3");
    row("ten to the power", "10 ^ 3", 0, 0, "1000");
    row("nested functions", "SQR SQR 16", 0, 0, "2");
    row("function of group", "SQR(3*3)", 0, 0, "3");
    row("ln of group stays", "ln(1+1)", 0, 1, "");
    // Errors
    row("log 0", "log 0", 0, 1, "");
    row("ln negative", "ln -1", 0, 1, "");
    row("root negative", "SQR -4", 0, 1, "");
    row("division by zero", "1/0", 0, 1, "");
    row("zero to negative", "0^-1", 0, 1, "");
    row("root of negative power", "-8^.5", 0, 1, "");
    row("overflow power", "10^400", 0, 1, "");
    row("overflow number", "1E999+1", 0, 1, "");
    row("overflow exp", "exp 1000", 0, 1, "");
    row("unclosed", "(1+2", 0, 2, "");
    row("unopened", "1+2)", 0, 2, "");
    row("unbalanced beats operator", "(2*", 0, 2, "");
    row("product missing", "2*", 0, 3, "");
    row("two operators", "2*/3", 0, 3, "");
    row("power missing", "2^", 0, 3, "");
    row("plus missing", "2+", 0, 1, "");
    row("function alone", "cos", 0, 1, "");
    row("operator first", "*3", 0, 1, "");
    row("reversed groups", ")1+2(", 0, 1, "");
    // Each nested level costs one cycle and the last function one more: 99 levels take
    // exactly the 100 cycles allowed, 100 levels one too many.
    auto nested = [](int depth) {
        QString t = QStringLiteral("1");
        for (int k = 0; k < depth; ++k)
            t = QStringLiteral("SQR(") + t + QStringLiteral("+0)");
        return t;
    };
    row("100 cycles", nested(99), 0, 0, "1");
    row("101 cycles", nested(100), 0, 1, "");
}

void TestEvaluator::evaluate() {
    QFETCH(QString, input);
    QFETCH(int, angle);
    QFETCH(int, code);
    QFETCH(QString, result);
    QString text = input;
    std::int16_t error = -1;
    EvaluateExpression(text, error, static_cast<std::int16_t>(angle));
    QCOMPARE(int(error), code);
    if (code == 0)
        QCOMPARE(text, result);
}

void TestEvaluator::simplifySigns_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    QTest::newRow("spacing") << "2+3*4"
                             << " 2 + 3 * 4 ";
    QTest::newRow("sign glued") << "2*-3"
                                << " 2 * -3 ";
    QTest::newRow("leading sign") << "-2^2"
                                  << " -2 ^ 2 ";
    QTest::newRow("exponent signs") << "1e-3+2E+4"
                                    << " 1E-3 + 2E+4 ";
    QTest::newRow("triple minus") << "1---2"
                                  << " 1 - 2 ";
    QTest::newRow("unwrap") << "(12.5)"
                            << " 12.5 ";
    QTest::newRow("unwrap sign") << "(-3)"
                                 << " -3 ";
    QTest::newRow("keep exponent group") << "(1E3)"
                                         << " (1E3) ";
    QTest::newRow("keep empty group") << "()"
                                      << " () ";
    QTest::newRow("functions") << "sin30*cos(x)"
                               << " SIN 30 * COS (X) ";
    QTest::newRow("inverse functions") << "invSIN 1+invCOS 2+invTAN 3"
                                       << " ISI 1 + ICO 2 + ITA 3 ";
    QTest::newRow("ln becomes LON") << "ln 2"
                                    << " LON 2 ";
    QTest::newRow("LON not respaced") << "LON 2"
                                      << " LON2 ";
    QTest::newRow("other codes respaced") << "EXP2+LOG3+TAN4+SQR5"
                                          << " EXP 2 + LOG 3 + TAN 4 + SQR 5 ";
    QTest::newRow("sign after paren") << "(-2)*(-x"
                                      << " -2 * (-X ";
    QTest::newRow("operator pair") << "2*/3"
                                   << " 2 *  / 3 ";
}

void TestEvaluator::simplifySigns() {
    QFETCH(QString, input);
    QFETCH(QString, output);
    QString t = input;
    SimplifySigns(t);
    QCOMPARE(t, output);
}

void TestEvaluator::numberText_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << " 0";
    QTest::newRow("minus zero") << -0.0 << " 0";
    QTest::newRow("half") << 0.5 << " .5";
    QTest::newRow("minus quarter") << -0.25 << "-.25";
    QTest::newRow("negative") << -4.0 << "-4";
    QTest::newRow("pi") << std::atan(1.0) * 4 << " 3.14159265358979";
    QTest::newRow("tenth") << 0.1 << " .1";
    QTest::newRow("sum of tenths") << 0.1 + 0.2 << " .3";
    QTest::newRow("15 digits") << 123456789012345.0 << " 123456789012345";
    QTest::newRow("rounded to 15") << 1234567890123456.0 << " 1.23456789012346E+15";
    QTest::newRow("rounds up to 1E15") << 999999999999999.9 << " 1E+15";
    QTest::newRow("1E15") << 1e15 << " 1E+15";
    QTest::newRow("1.5E20") << 1.5e20 << " 1.5E+20";
    QTest::newRow("1E100") << 1e100 << " 1E+100";
    QTest::newRow("small plain") << 1.5e-7 << " .00000015";
    QTest::newRow("fifteen places") << 1e-15 << " .000000000000001";
    QTest::newRow("sixteen places") << 1e-16 << " 1E-16";
    QTest::newRow("too many places") << 1.25e-14 << " 1.25E-14";
    QTest::newRow("tiny") << -3e-300 << "-3E-300";
    QTest::newRow("largest") << DBL_MAX << " 1.79769313486231E+308";
    QTest::newRow("smallest normal") << DBL_MIN << " 2.2250738585072E-308";
    QTest::newRow("smallest denormal") << 4.9406564584124654e-324 << " 4.94065645841247E-324";
}

void TestEvaluator::numberText() {
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(NumberText(value), text);
}

void TestEvaluator::numberValue_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("no digits") << "abc" << 0.0;
    QTest::newRow("lone plus") << "+ " << 0.0;
    QTest::newRow("lone point") << "." << 0.0;
    QTest::newRow("point first") << ".5" << 0.5;
    QTest::newRow("negative point") << "-.25" << -0.25;
    QTest::newRow("leading blank") << " 14" << 14.0;
    QTest::newRow("blanks inside") << " - 1 2 . 5" << -12.5;
    QTest::newRow("tab and newline") << "\t1\r\n2" << 12.0;
    QTest::newRow("comma stops") << "1,5" << 1.0;
    QTest::newRow("paren stops") << "3)" << 3.0;
    QTest::newRow("second point stops") << "1.2.3" << 1.2;
    QTest::newRow("double sign") << "--3" << 0.0;
    QTest::newRow("exponent") << "1.5E3" << 1500.0;
    QTest::newRow("lower exponent") << "1.5e-3" << 0.0015;
    QTest::newRow("D exponent") << "2D2" << 200.0;
    QTest::newRow("blank in exponent") << "1E - 2" << 0.01;
    QTest::newRow("exponent without digits") << "7E" << 7.0;
    QTest::newRow("exponent sign only") << "7E+" << 7.0;
    QTest::newRow("exponent ends at point") << "1E2.5" << 100.0;
    QTest::newRow("underflow") << "1E-400" << 0.0;
    QTest::newRow("zero with huge exponent") << "0E99999" << 0.0;
    QTest::newRow("long exponent") << "1E-000000000000000000002" << 0.01;
    QTest::newRow("denormal") << "4.94065645841247E-324" << 4.9406564584124654e-324;
    QTest::newRow("largest") << "1.79769313486231E+308" << 1.79769313486231e308;
}

void TestEvaluator::numberValue() {
    QFETCH(QString, text);
    QFETCH(double, value);
    const double v = NumberValue(text);
    QCOMPARE(v, value);
    QVERIFY(!std::signbit(v) || value < 0);
}

void TestEvaluator::roundTrip_data() {
    QTest::addColumn<double>("value");
    QTest::newRow("largest") << DBL_MAX;
    QTest::newRow("minus largest") << -DBL_MAX;
    QTest::newRow("smallest normal") << DBL_MIN;
    QTest::newRow("smallest denormal") << 4.9406564584124654e-324;
    QTest::newRow("denormal") << 2.2e-310;
    QTest::newRow("1E308") << 1e308;
    QTest::newRow("1E-308") << 1e-308;
    QTest::newRow("third") << 1.0 / 3;
    QTest::newRow("two thirds tiny") << -2.0 / 3 * 1e-200;
    QTest::newRow("just below 1E15") << 999999999999999.0;
    QTest::newRow("just below a tenth") << 0.0999999999999999;
    QTest::newRow("avogadro") << 6.02214076e23;
}

void TestEvaluator::roundTrip() {
    QFETCH(double, value);
    const QString text = NumberText(value);
    const double back = NumberValue(text);
    QVERIFY(std::isfinite(back));
    QCOMPARE(NumberText(back), text);
    // Values that need at most 15 digits come back exactly.
    const double exact = NumberValue(QString::number(back, 'g', 15));
    QCOMPARE(back, exact);
}

void TestEvaluator::blankDisplayStopsOperators() {
    setDisplayBlankProbe([] { return true; });
    QString text = QStringLiteral("2+3");
    std::int16_t error = 0;
    EvaluateExpression(text, error, 0);
    QCOMPARE(int(error), 1);
    text = QStringLiteral("sin 30");
    EvaluateExpression(text, error, 0);
    QCOMPARE(int(error), 0);
    setDisplayBlankProbe({});
    text = QStringLiteral("2+3");
    EvaluateExpression(text, error, 0);
    QCOMPARE(text, QStringLiteral("5"));
}

void TestEvaluator::randomStringsEndWithACode() {
    static const char* const pieces[] = {"0",       "1",       "2",
                                         "3",       "5",       "9",
                                         ".",       "E",       "E+3",
                                         "E-6",     "(",       ")",
                                         " * ",     " / ",     "+",
                                         " + ",     "-",       " - ",
                                         " ^ ",     " ^ 2",    "sin ",
                                         "cos ",    "tan ",    "invSIN ",
                                         "invCOS ", "invTAN ", "ln ",
                                         "log ",    "exp ",    "SQR ",
                                         "10 ^ ",   "1 / ",    "3.14159265358979",
                                         " ",       "D",       "ù"};
    constexpr int pieceCount = sizeof(pieces) / sizeof(pieces[0]);
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> pick(0, pieceCount - 1);
    std::uniform_int_distribution<int> length(0, 8);
    int codes[4] = {0, 0, 0, 0};
    for (int n = 0; n < 200000; ++n) {
        QString text;
        for (int k = length(rng); k > 0; --k)
            text += QString::fromUtf8(pieces[pick(rng)]);
        std::int16_t error = -1;
        EvaluateExpression(text, error, static_cast<std::int16_t>(n & 1));
        QVERIFY2(error >= 0 && error <= 3, qPrintable(text));
        ++codes[error];
    }
    // Every outcome is reached, so the table above exercises all the paths.
    for (int c : codes)
        QVERIFY(c > 0);
}

QTEST_APPLESS_MAIN(TestEvaluator)
#include "tst_evaluator.moc"

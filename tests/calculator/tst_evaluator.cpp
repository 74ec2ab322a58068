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
    void numberText_data();
    void numberText();
    void numberValue_data();
    void numberValue();
    void randomStringsEndWithACode();
};

void TestEvaluator::evaluate_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("angle"); // 0 degrees, 1 radians
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("result");
    auto row = [](const char* in, const char* out, int angle = 0) {
        QTest::addRow("%s %d", in, angle) << QString::fromUtf8(in) << angle << 0 << QString(out);
    };
    // Operators go ^ / * - +, each leftmost first, and a sign belongs to its number.
    row("2+3*4", "14");
    row("2^3^2", "64");
    row("-2^2", "4");
    row("1E200*1E200/1E300", "1E+100"); // "*" first would overflow
    row("1+1E16-1E16", "1");            // "+" first would lose the 1
    row("1-2-3", "-4");
    row("1---2", "-1");
    row("+2*-3", "-6");
    row("1e-3*2D+3", "2"); // exponent signs are not operators
    row("1 2 + 3", "15");
    row("1E3", "1E3"); // nothing to reduce: kept as typed
    row("", "");
    // Groups; parenthesised plain numbers are unwrapped first
    row("((-3))*2", "-6");
    row("2-(-3)", "5");
    row("(1-(2+3))*2", "-8");
    row("(1E3)+1", "1001");
    row("()", "");
    // Functions, in degrees and radians
    row("sin(30)", ".5");
    row("sin(10+20)", ".5");
    row("-sin -30", ".5");
    row("2*cos 60", "1");
    row("cos 3", "-.989992496600445", 1);
    row("tan 45", "1");
    row("invSIN -1", "-90");
    row("invSIN 1", "1.5707963267949", 1);
    row("invCOS -1", "180");
    row("invTAN 1", ".785398163397448", 1);
    row("ln 2", ".693147180559945");
    row("log 1000", "3");
    row("exp 1", "2.71828182845905");
    row("sqr 2", "1.4142135623731");
    row("ù9", "3");
    row("SQR SQR 16", "2");
    // Code 1 for run-time failures and text that does not reduce; 2 wins over 3.
    const QStringList failing[] = {{},
                                   {"ln(1+1)", "invSIN 2", "invCOS -1.5", "log 0", "ln -1",
                                    "SQR -4", "1/0", "0^-1", "-8^.5", "10^400", "1E999+1",
                                    "exp 1000", "2+", "cos", "*3", ")1+2("},
                                   {"(1+2", "(2*"},
                                   {"2*", "2*/3"}};
    for (int code = 1; code <= 3; ++code)
        for (const QString& in : failing[code])
            QTest::addRow("%s", qPrintable(in)) << in << 0 << code << QString();
    // Each nested level costs one cycle and the last function one more: 99 levels take
    // exactly the 100 cycles allowed, 100 levels one too many.
    QString nested = QStringLiteral("1");
    for (int k = 1; k <= 100; ++k) {
        nested = QStringLiteral("SQR(") + nested + QStringLiteral("+0)");
        if (k >= 99)
            QTest::addRow("%d levels", k) << nested << 0 << (k - 99) << QStringLiteral("1");
    }
}

void TestEvaluator::evaluate() {
    QFETCH(QString, input);
    QFETCH(int, angle);
    QFETCH(int, code);
    QFETCH(QString, result);
    std::int16_t error = -1;
    EvaluateExpression(input, error, static_cast<std::int16_t>(angle));
    QCOMPARE(int(error), code);
    if (code == 0)
        QCOMPARE(input, result);
}

void TestEvaluator::numberText_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("minus zero") << -0.0 << " 0";
    QTest::newRow("pi") << std::atan(1.0) * 4 << " 3.14159265358979";
    QTest::newRow("sum of tenths") << 0.1 + 0.2 << " .3";
    QTest::newRow("just below a tenth") << 0.0999999999999999 << " 9.99999999999999E-02";
    QTest::newRow("15 digits") << 123456789012345.0 << " 123456789012345";
    QTest::newRow("rounded to 15") << 1234567890123456.0 << " 1.23456789012346E+15";
    QTest::newRow("rounds up to 1E15") << 999999999999999.9 << " 1E+15";
    QTest::newRow("fifteen places") << 1e-15 << " .000000000000001";
    QTest::newRow("too many places") << 1.25e-14 << " 1.25E-14";
    QTest::newRow("two thirds tiny") << -2.0 / 3 * 1e-200 << "-6.66666666666667E-201";
    QTest::newRow("largest") << DBL_MAX << " 1.79769313486231E+308";
    QTest::newRow("smallest normal") << DBL_MIN << " 2.2250738585072E-308";
    QTest::newRow("denormal") << 2.2e-310 << " 2.19999999999998E-310";
    QTest::newRow("smallest denormal") << 4.9406564584124654e-324 << " 4.94065645841247E-324";
}

// The text reads back to a double that writes the same text, and 15 digits are enough to
// get that double back exactly.
void TestEvaluator::numberText() {
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(NumberText(value), text);
    const double back = NumberValue(text);
    QCOMPARE(NumberText(back), text);
    QCOMPARE(NumberValue(QString::number(back, 'g', 15)), back);
    QVERIFY_THROWS_EXCEPTION(NumberOverflow, NumberText(HUGE_VAL));
    QVERIFY_THROWS_EXCEPTION(NumberOverflow, NumberValue(QStringLiteral("1E309")));
}

void TestEvaluator::numberValue_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    for (const char* zero : {"abc", "+ ", ".", "--3", "1E-400", "0E99999"})
        QTest::newRow(zero) << zero << 0.0;
    QTest::newRow("negative point") << "-.25" << -0.25;
    QTest::newRow("blanks inside") << "\t- 1\r\n2 . 5" << -12.5;
    QTest::newRow("comma stops") << "1,5" << 1.0;
    QTest::newRow("second point stops") << "1.2.3" << 1.2;
    QTest::newRow("lower exponent") << "1.5e-3" << 0.0015;
    QTest::newRow("D exponent, blanks") << "2d - 2" << 0.02;
    QTest::newRow("exponent sign only") << "7E+" << 7.0;
    QTest::newRow("exponent ends at point") << "1E2.5" << 100.0;
    QTest::newRow("long exponent") << "1E-000000000000000000002" << 0.01;
}

void TestEvaluator::numberValue() {
    QFETCH(QString, text);
    QFETCH(double, value);
    const double v = NumberValue(text);
    QCOMPARE(v, value);
    QVERIFY(!std::signbit(v) || value < 0);
}

void TestEvaluator::randomStringsEndWithACode() {
    const QStringList pieces =
        QString::fromUtf8("0|1|2|3|5|9|.|E|E+3|E-6|(|)| * | / |+| + |-| - | ^ | ^ 2|sin |cos |tan "
                          "|invSIN |invCOS |invTAN |ln |log |exp |SQR |10 ^ |1 / "
                          "|3.14159265358979| |D|ù")
            .split(u'|');
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int> pick(0, int(pieces.size()) - 1);
    std::uniform_int_distribution<int> length(0, 8);
    int codes[4] = {0, 0, 0, 0};
    for (int n = 0; n < 200000; ++n) {
        QString text;
        for (int k = length(rng); k > 0; --k)
            text += pieces[pick(rng)];
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

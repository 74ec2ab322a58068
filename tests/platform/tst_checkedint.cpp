#include "platform/checkedint.h"

#include <QTest>
#include <functional>
#include <limits>

using namespace platform;

// Results outside the 16-bit range stand for the two run-time errors.
constexpr int Overflow = 100000;
constexpr int DivByZero = 200000;

class TestCheckedInt : public QObject {
    Q_OBJECT
private slots:
    void operations_data();
    void operations();
    void errorTexts();
};

namespace {
int outcome(const std::function<int()>& f) {
    try {
        return f();
    } catch (const OverflowError&) {
        return Overflow;
    } catch (const DivisionByZeroError&) {
        return DivByZero;
    }
}
} // namespace

// The expression names its row.
#define ROW(expr, expected) QTest::newRow(#expr) << outcome([] { return int(expr); }) << (expected)

void TestCheckedInt::operations_data() {
    QTest::addColumn<int>("got");
    QTest::addColumn<int>("expected");
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();

    ROW(toInt16(32767), 32767);
    ROW(toInt16(32768), Overflow);
    ROW(toInt16(-32768), -32768);
    ROW(toInt16(-32769), Overflow);
    ROW(add16(32767, 1), Overflow);
    ROW(add16(-32768, -1), Overflow);
    ROW(sub16(16710, 21920), -5210);
    ROW(sub16(0, -32768), Overflow);
    ROW(mul16(-256, 128), -32768);
    ROW(mul16(-1, -32768), Overflow);
    ROW(neg16(-32768), Overflow);
    ROW(abs16(-5210), 5210);
    ROW(abs16(-32768), Overflow);
    ROW(div16(-7, 2), -3);
    ROW(div16(-32768, -1), Overflow);
    ROW(div16(1, 0), DivByZero);
    ROW(mod16(-7, 2), -1);
    ROW(mod16(-32768, -1), 0);
    ROW(mod16(1, 0), DivByZero);

    // Conversion rounds half to even.
    ROW(roundToInt16(1.5), 2);
    ROW(roundToInt16(2.5), 2);
    ROW(roundToInt16(-2.5), -2);
    ROW(roundToInt16(-3.5), -4);
    ROW(roundToInt16(2.5000001), 3);
    ROW(roundToInt16(-0.49999999999999994), 0);
    ROW(roundToInt16(32767.5), Overflow);
    ROW(roundToInt16(-32768.5), -32768);
    ROW(roundToInt16(-32768.6), Overflow);
    QTest::newRow("infinity") << outcome([&] { return int(roundToInt16(inf)); }) << Overflow;
    QTest::newRow("NaN") << outcome([&] { return int(roundToInt16(nan)); }) << Overflow;
}

void TestCheckedInt::operations() {
    QFETCH(int, got);
    QFETCH(int, expected);
    QCOMPARE(got, expected);
}

void TestCheckedInt::errorTexts() {
    // The calculator shows these texts as they are.
    QCOMPARE(QString::fromUtf8(OverflowError().what()), QStringLiteral("Dépassement de capacité"));
    QCOMPARE(QString::fromUtf8(DivisionByZeroError().what()), QStringLiteral("Division par zéro"));
}

QTEST_APPLESS_MAIN(TestCheckedInt)
#include "tst_checkedint.moc"

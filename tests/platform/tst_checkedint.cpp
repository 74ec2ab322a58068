#include "platform/checkedint.h"

#include <QTest>
#include <cmath>
#include <limits>

using namespace platform;

// Outcome of one checked operation.
enum class Outcome { Value, Overflow, DivisionByZero };
Q_DECLARE_METATYPE(Outcome)

enum class Op { ToInt16, Add, Sub, Mul, Neg, Abs, Div, Mod };
Q_DECLARE_METATYPE(Op)

class TestCheckedInt : public QObject {
    Q_OBJECT
private slots:
    void arithmetic_data();
    void arithmetic();
    void rounding_data();
    void rounding();
    void errorTexts();
};

namespace {
std::int16_t apply(Op op, long long a, long long b) {
    const auto x = static_cast<std::int16_t>(a);
    const auto y = static_cast<std::int16_t>(b);
    switch (op) {
    case Op::ToInt16:
        return toInt16(a);
    case Op::Add:
        return add16(x, y);
    case Op::Sub:
        return sub16(x, y);
    case Op::Mul:
        return mul16(x, y);
    case Op::Neg:
        return neg16(x);
    case Op::Abs:
        return abs16(x);
    case Op::Div:
        return div16(x, y);
    case Op::Mod:
        return mod16(x, y);
    }
    return 0;
}

template <typename F> Outcome run(F f, int* result) {
    try {
        *result = f();
        return Outcome::Value;
    } catch (const OverflowError&) {
        return Outcome::Overflow;
    } catch (const DivisionByZeroError&) {
        return Outcome::DivisionByZero;
    }
}
} // namespace

void TestCheckedInt::arithmetic_data() {
    QTest::addColumn<Op>("op");
    QTest::addColumn<qlonglong>("a");
    QTest::addColumn<qlonglong>("b");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<int>("expected");

    const auto V = Outcome::Value;
    const auto O = Outcome::Overflow;
    const auto Z = Outcome::DivisionByZero;
    QTest::newRow("narrow 32767") << Op::ToInt16 << 32767LL << 0LL << V << 32767;
    QTest::newRow("narrow 32768") << Op::ToInt16 << 32768LL << 0LL << O << 0;
    QTest::newRow("narrow -32768") << Op::ToInt16 << -32768LL << 0LL << V << -32768;
    QTest::newRow("narrow -32769") << Op::ToInt16 << -32769LL << 0LL << O << 0;
    QTest::newRow("narrow 65536 no wrap") << Op::ToInt16 << 65536LL << 0LL << O << 0;

    QTest::newRow("32767 + 1") << Op::Add << 32767LL << 1LL << O << 0;
    QTest::newRow("32766 + 1") << Op::Add << 32766LL << 1LL << V << 32767;
    QTest::newRow("-32767 + -1") << Op::Add << -32767LL << -1LL << V << -32768;
    QTest::newRow("-32768 + -1") << Op::Add << -32768LL << -1LL << O << 0;
    QTest::newRow("butane totals") << Op::Add << 16710LL << 16710LL << O << 0;

    QTest::newRow("methane difference") << Op::Sub << 2628LL << 3430LL << V << -802;
    QTest::newRow("butane difference") << Op::Sub << 16710LL << 21920LL << V << -5210;
    QTest::newRow("-32768 - 1") << Op::Sub << -32768LL << 1LL << O << 0;
    QTest::newRow("0 - -32768") << Op::Sub << 0LL << -32768LL << O << 0;
    QTest::newRow("-1 - 32767") << Op::Sub << -1LL << 32767LL << V << -32768;
    QTest::newRow("21920 - -16710") << Op::Sub << 21920LL << -16710LL << O << 0;

    QTest::newRow("181 * 181") << Op::Mul << 181LL << 181LL << V << 32761;
    QTest::newRow("182 * 182") << Op::Mul << 182LL << 182LL << O << 0;
    QTest::newRow("-256 * 128") << Op::Mul << -256LL << 128LL << V << -32768;
    QTest::newRow("256 * 128") << Op::Mul << 256LL << 128LL << O << 0;
    QTest::newRow("-1 * -32768") << Op::Mul << -1LL << -32768LL << O << 0;

    QTest::newRow("neg 32767") << Op::Neg << 32767LL << 0LL << V << -32767;
    QTest::newRow("neg -32768") << Op::Neg << -32768LL << 0LL << O << 0;
    QTest::newRow("abs -5210") << Op::Abs << -5210LL << 0LL << V << 5210;
    QTest::newRow("abs -32768") << Op::Abs << -32768LL << 0LL << O << 0;

    QTest::newRow("7 \\ 2") << Op::Div << 7LL << 2LL << V << 3;
    QTest::newRow("-7 \\ 2 truncates") << Op::Div << -7LL << 2LL << V << -3;
    QTest::newRow("-32768 \\ -1") << Op::Div << -32768LL << -1LL << O << 0;
    QTest::newRow("1 \\ 0") << Op::Div << 1LL << 0LL << Z << 0;
    QTest::newRow("-7 mod 2") << Op::Mod << -7LL << 2LL << V << -1;
    QTest::newRow("7 mod -2") << Op::Mod << 7LL << -2LL << V << 1;
    QTest::newRow("-32768 mod -1") << Op::Mod << -32768LL << -1LL << V << 0;
    QTest::newRow("1 mod 0") << Op::Mod << 1LL << 0LL << Z << 0;
}

void TestCheckedInt::arithmetic() {
    QFETCH(Op, op);
    QFETCH(qlonglong, a);
    QFETCH(qlonglong, b);
    QFETCH(Outcome, outcome);
    QFETCH(int, expected);
    int result = 0;
    QCOMPARE(run([&] { return apply(op, a, b); }, &result), outcome);
    QCOMPARE(result, expected);
}

void TestCheckedInt::rounding_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<int>("expected");

    const auto V = Outcome::Value;
    const auto O = Outcome::Overflow;
    const double inf = std::numeric_limits<double>::infinity();
    QTest::newRow("0.5 to even") << 0.5 << V << 0;
    QTest::newRow("1.5 to even") << 1.5 << V << 2;
    QTest::newRow("2.5 to even") << 2.5 << V << 2;
    QTest::newRow("3.5 to even") << 3.5 << V << 4;
    QTest::newRow("-0.5 to even") << -0.5 << V << 0;
    QTest::newRow("-2.5 to even") << -2.5 << V << -2;
    QTest::newRow("-3.5 to even") << -3.5 << V << -4;
    QTest::newRow("2.5000001") << 2.5000001 << V << 3;
    QTest::newRow("-0.49999999999999994") << -0.49999999999999994 << V << 0;
    QTest::newRow("32766.5") << 32766.5 << V << 32766;
    QTest::newRow("32767.4") << 32767.4 << V << 32767;
    QTest::newRow("32767.5 overflows") << 32767.5 << O << 0;
    QTest::newRow("-32768.5 fits") << -32768.5 << V << -32768;
    QTest::newRow("-32768.6 overflows") << -32768.6 << O << 0;
    QTest::newRow("infinity") << inf << O << 0;
    QTest::newRow("-infinity") << -inf << O << 0;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << O << 0;
}

void TestCheckedInt::rounding() {
    QFETCH(double, value);
    QFETCH(Outcome, outcome);
    QFETCH(int, expected);
    int result = 0;
    QCOMPARE(run([&] { return roundToInt16(value); }, &result), outcome);
    QCOMPARE(result, expected);
}

void TestCheckedInt::errorTexts() {
    // The calculator shows the overflow text as it is.
    QCOMPARE(QString::fromUtf8(OverflowError().what()), QStringLiteral("Dépassement de capacité"));
    QCOMPARE(QString::fromUtf8(DivisionByZeroError().what()), QStringLiteral("Division par zéro"));
}

QTEST_APPLESS_MAIN(TestCheckedInt)
#include "tst_checkedint.moc"

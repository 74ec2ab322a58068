#include "calculator/evaluator.h"
#include "calculator/machine.h"
#include "calculator/memory.h"

#include <QApplication>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <memory>

using calculator::Machine;

namespace {

const QString Waiting = QStringLiteral("    Patience... Calculs en cours.     ");
const QString Impossible = QStringLiteral("Calcul impossible");
const QString Parentheses = QStringLiteral("Erreur saisie: revoir les parenthèses");
const QString Operators =
    QStringLiteral("Erreur saisie: incompréhension sur opérateurs: ^ * / + -");

struct Harness {
    std::unique_ptr<Machine> m = std::make_unique<Machine>();
    int beeps = 0;

    Harness() {
        calculator::Memory = 0;
        m->setBeepHandler([this] { ++beeps; });
    }
    QLineEdit* z1() const { return m->findChild<QLineEdit*>(QStringLiteral("z1")); }
    QString display() const { return z1()->text(); }
    template <class T> T* control(const QString& name) const {
        T* w = m->findChild<T*>(name);
        if (!w)
            qFatal("no control %s", qPrintable(name));
        return w;
    }
    // Presses the comma-separated controls in order (keys or option buttons).
    void press(const QString& sequence) const {
        for (const QString& name : sequence.split(u',', Qt::SkipEmptyParts))
            control<QAbstractButton>(name.trimmed())->click();
    }
};

} // namespace

class TestMachine : public QObject {
    Q_OBJECT
private slots:
    void keySequences_data();
    void keySequences();
    void keyCaptions_data();
    void keyCaptions();
    void memoryKeys();
    void scientificDisplay();
    void overflowOnDisplay();
    void keyboard();
    void displayGuard();
    void background();
    void modalAndTitleStrip();
};

void TestMachine::keySequences_data() {
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("display");
    QTest::addColumn<int>("beeps");

    auto row = [](const char* name, const char* keys, const QString& entry, const QString& display,
                  int beeps = 0) {
        QTest::newRow(name) << QString::fromLatin1(keys) << entry << display << beeps;
    };
    // Results
    row("cos 60 degrees", "Bcos,B6,B0,EXE", "", " .5");
    row("answer rule", "Bcos,B6,B0,EXE,plus", ".5 + ", ".5 + ");
    row("empty EXE", "EXE", "", " 0");
    row("negative result", "B2,moins,B5,EXE", "", "-3");
    row("radians read at EXE", "angle_1,bsin,B9,B0,EXE,angle_0", "", " .893996663600558");
    row("radians", "angle_1,Bcos,B3,EXE", "", "-.989992496600445");
    row("degrees", "Bcos,B1,B8,B0,EXE", "", "-1");
    row("result then operator", "B2,plus,B3,EXE,multip,B4,EXE", "", " 20");
    row("result then digit starts anew", "B2,EXE,B7", "7", "7");
    row("result then square", "B3,EXE,btcarre,EXE", "", " 9");
    // Product rule
    row("digit then function", "B2,Bcos", "2 * cos ", "2 * cos ");
    row("paren then function", "Bpo,bsin", "(sin ", "(sin ");
    row("minus then function", "moins,Bln", "-ln ", "-ln ");
    row("paren after paren", "Bpo,B1,bpf,Bpo", "(1) * (", "(1) * (");
    row("pi after digit", "B2,pi", "2 * 3.14159265358979", "2 * 3.14159265358979");
    row("inverse keys", "invsin,invcos,Btoncommande3", "invSIN invCOS invTAN ",
        "invSIN invCOS invTAN ");
    row("picture keys", "Bexp,B10x,racine", "exp 10 ^ SQR ", "exp 10 ^ SQR ");
    row("one over", "B4,Command5", "4 * 1 / ", "4 * 1 / ");
    row("prefixes", "B1,kilo,B1,mil,B1,tera,B1,pico", "1E+31E-31E+121E-12", "1E+31E-31E+121E-12");
    // Operators on a blank display, and the minus rule
    row("times on blank display", "multip", "", "");
    row("plus on blank display", "plus", "", "");
    row("power on blank display", "puissance", " ^ ", " ^ ");
    row("minus alone", "moins", "-", "-");
    row("minus twice", "moins,moins", "- -", "- -");
    row("exponent sign", "B1,BtoEXP,moins,B3", "1E-3", "1E-3");
    row("sign after plus", "B1,plus,moins", "1 + -", "1 + -");
    row("exponent plus", "B1,BtoEXP,plus", "1E+", "1E+");
    row("micro prefix computes", "B5,micro,EXE", "", " .000005");
    // EFFACE
    row("erase spaced power", "B1,B0,puissance,EFFACE", "10", "10");
    row("erase square digit", "B2,btcarre,EFFACE", "2 ^ ", "2 ^ ");
    row("erase word after operator", "B2,Bcos,EFFACE", "2 * ", "2 * ");
    row("erase word after paren", "Bpo,bsin,EFFACE", "(", "(");
    row("erase lone word whole", "Bln,EFFACE", "", "");
    row("erase inverse word", "B3,plus,invcos,EFFACE,EFFACE", "3", "3");
    row("erase on empty", "EFFACE", "", "");
    row("erase digits", "B1,B2,EFFACE", "1", "1");
    row("all clear", "B1,B2,plus,RAZ", "", "");
    // Errors
    row("missing operand", "B2,multip,EXE", "2 * ", Operators, 1);
    row("typing after error", "B2,multip,EXE,B3", "2 * 3", "2 * 3", 1);
    row("fixed after error", "B2,multip,EXE,B3,EXE", "", " 6", 1);
    row("unbalanced", "Bpo,B1,EXE", "(1", Parentheses, 1);
    row("division by zero", "B1,div,B0,EXE", "1 / 0", Impossible, 1);
    row("lone function", "Bcos,EXE", "cos ", Impossible, 1);
    row("ANS after error", "B1,div,B0,EXE,ANS", "1 / 0", "1 / 0", 1);
    row("ANS after success", "B6,EXE,ANS,ANS", "66", "66");
    row("two errors", "B2,multip,EXE,EXE", "2 * ", Operators, 2);
}

void TestMachine::keySequences() {
    QFETCH(QString, keys);
    QFETCH(QString, entry);
    QFETCH(QString, display);
    QFETCH(int, beeps);
    Harness h;
    h.press(keys);
    QCOMPARE(h.m->entry(), entry);
    QCOMPARE(h.display(), display);
    QCOMPARE(h.beeps, beeps);
}

void TestMachine::keyCaptions_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("tip");
    QTest::newRow("sine") << "bsin"
                          << "&SIN"
                          << "Sinus";
    QTest::newRow("arc tangent") << "Btoncommande3"
                                 << "INV T&AN"
                                 << "Inverse tangente";
    QTest::newRow("exponent") << "BtoEXP"
                              << "EXP" << QString::fromUtf8("x 10ª");
    QTest::newRow("mega") << "mega"
                          << "M" << QString::fromUtf8("Méga");
    QTest::newRow("micro") << "micro" << QString::fromUtf8("µ") << "micro";
    QTest::newRow("root") << "racine" << QString::fromUtf8("√")
                          << QString::fromUtf8("Racine carré");
    QTest::newRow("pi") << "pi" << QString::fromUtf8("π") << "3.1415927";
    QTest::newRow("divide") << "div" << QString::fromUtf8("÷") << "";
    QTest::newRow("erase") << "EFFACE" << QString::fromUtf8("←")
                           << QString::fromUtf8("Effacer dernier caractère");
    QTest::newRow("inverse") << "Command5"
                             << "1/x"
                             << "Inverse";
    QTest::newRow("answer") << "ANS"
                            << "ANS" << QString::fromUtf8("Dernière réponse");
    QTest::newRow("memory plus") << "Command1"
                                 << "M+" << QString::fromUtf8("Ajouter à la méoire");
    QTest::newRow("all clear") << "RAZ"
                               << "AC"
                               << "Tout effacer";
    QTest::newRow("power picture") << "puissance"
                                   << ""
                                   << "";
}

void TestMachine::keyCaptions() {
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, tip);
    Harness h;
    auto* key = h.control<QPushButton>(name);
    QCOMPARE(key->text(), caption);
    QCOMPARE(key->toolTip(), tip);
    QCOMPARE(key->focusPolicy(), Qt::NoFocus);
    QCOMPARE(h.m->windowTitle(), QString::fromUtf8("Machine à calculer"));
    QCOMPARE(h.control<QGroupBox>("Frame2")->title(), QStringLiteral("Angles"));
    QCOMPARE(h.control<QGroupBox>("Frame3")->title(), QStringLiteral("Affichage"));
    QVERIFY(h.control<QRadioButton>("angle_0")->isChecked());
    QVERIFY(h.control<QRadioButton>("C_1")->isChecked());
}

void TestMachine::memoryKeys() {
    Harness h;
    h.press("B5,EXE,Command1"); // adds the shown result
    QCOMPARE(calculator::Memory, 5.0);
    h.press("B1,B2,plus,B3,Command1"); // adds the numeric prefix of the typed text
    QCOMPARE(calculator::Memory, 17.0);
    h.press("RAZ,Command3");
    QCOMPARE(h.m->entry(), QStringLiteral("17"));
    h.press("EXE,Command2,Command2"); // 17 - 17 - 17
    QCOMPARE(calculator::Memory, -17.0);
    h.press("B2,Command3");
    QCOMPARE(h.display(), QStringLiteral("2-17")); // no product rule before a recall
    h.press("Command4,RAZ,Command3");
    QCOMPARE(calculator::Memory, 0.0);
    QCOMPARE(h.display(), QStringLiteral("0"));

    // The memory is shared: another window sees what this one stored.
    calculator::Memory = 1.5;
    Harness other;
    calculator::Memory = 1.5;
    other.press("C_0,RAZ,Command3");
    QCOMPARE(other.display(), QStringLiteral("1,5E+00")); // the comma stays here
    other.press("RAZ,C_1,Command3");
    QCOMPARE(other.display(), QStringLiteral("1.5"));
    // An unreadable display leaves the memory as it was.
    other.press("RAZ,B9,BtoEXP,B9,B9,B9,Command1");
    QCOMPARE(calculator::Memory, 1.5);
}

void TestMachine::scientificDisplay() {
    Harness h;
    h.press("C_0,B1,B2,B3,B4,Bpoint,B5,EXE");
    QCOMPARE(h.display(), QStringLiteral("1.2345E+03"));
    h.press("C_1"); // the last result shown again in the other form
    QCOMPARE(h.display(), QStringLiteral(" 1234.5"));
    QCOMPARE(h.m->entry(), QString());
    h.press("C_0");
    QCOMPARE(h.display(), QStringLiteral("1.2345E+03"));
    h.press("moins,B1,B2,div,B1,B0,B0,B0,B0,EXE");
    QCOMPARE(h.display(), QStringLiteral("-1.2E-03"));
    // While typing, the option changes nothing.
    h.press("B7,C_1");
    QCOMPARE(h.display(), QStringLiteral("7"));
    QCOMPARE(h.m->entry(), QStringLiteral("7"));
}

void TestMachine::overflowOnDisplay() {
    Harness h;
    h.press("B9,BtoEXP,B9,B9,B9,EXE");
    QCOMPARE(h.display(), QString::fromUtf8("Dépassement de capacité"));
    QCOMPARE(h.beeps, 1);
    QCOMPARE(int(h.m->errorCode()), 0);
    QCOMPARE(h.m->entry(), QString());
    QCOMPARE(h.m->lastExpression(), QStringLiteral("9E999"));
}

void TestMachine::keyboard() {
    Harness h;
    QLineEdit* z1 = h.z1();
    QTest::keyClicks(z1, "2*3");
    QCOMPARE(h.m->entry(), QStringLiteral("2 * 3"));
    QTest::keyClick(z1, Qt::Key_Return);
    QCOMPARE(h.display(), QStringLiteral(" 6"));
    QTest::keyClicks(z1, "(1d-3)xyz!");
    QCOMPARE(h.m->entry(), QStringLiteral("(1E-3)"));
    QTest::keyClick(z1, Qt::Key_Backspace);
    QTest::keyClicks(z1, "^2e");
    QCOMPARE(h.m->entry(), QStringLiteral("(1E-3 ^ 2E"));
    QTest::keyClicks(z1, "+4/");
    QCOMPARE(h.m->entry(), QStringLiteral("(1E-3 ^ 2E+4 / "));
    QCOMPARE(z1->cursorPosition(), int(h.display().size()));
    // Keys reaching the window rather than the box take the same path.
    QTest::keyClick(h.m.get(), Qt::Key_5);
    QCOMPARE(h.m->entry(), QStringLiteral("(1E-3 ^ 2E+4 / 5"));
    h.m->Form_KeyPress(8);
    h.m->Form_KeyPress('D');
    QCOMPARE(h.m->entry(), QStringLiteral("(1E-3 ^ 2E+4 / E"));
}

void TestMachine::displayGuard() {
    Harness h;
    // With a blank display the evaluator reduces no operator at all.
    QString text = QStringLiteral("2+3");
    std::int16_t code = 0;
    calculator::EvaluateExpression(text, code, 0);
    QCOMPARE(int(code), 1);
    // During EXE the display shows the waiting text, so the guard stays quiet.
    h.press("B2,plus,B3,EXE");
    QCOMPARE(h.display(), QStringLiteral(" 5"));
    QCOMPARE(h.m->lastAnswer(), QStringLiteral(" 5"));
    QCOMPARE(h.m->lastExpression(), QStringLiteral("2 + 3"));
    QCOMPARE(Machine::WaitingText, Waiting);
}

void TestMachine::background() {
    Harness h;
    h.m->show();
    QVERIFY(QTest::qWaitForWindowExposed(h.m.get()));
    const QImage img = h.m->grab().toImage();
    QCOMPARE(img.size(), QSize(302, 430));
    auto px = [&](int x, int y) { return QColor(img.pixel(x, y)); };
    QCOMPARE(px(0, 200), QColor(200, 250, 250));
    QCOMPARE(px(3, 200), QColor(198, 248, 248)); // 198.5 rounds to the even 198
    QCOMPARE(px(5, 200), QColor(198, 248, 248)); // 197.5 too
    QCOMPARE(px(4, 429), QColor(198, 248, 248));
    QCOMPARE(px(301, 200), QColor(50, 100, 100));
    QCOMPARE(px(1, 200), QColor(0, 0, 0));
    QCOMPARE(px(150, 1), QColor(0, 0, 0));
    QCOMPARE(px(299, 200), QColor(255, 255, 255));
    QCOMPARE(px(150, 428), QColor(255, 255, 255));
    QCOMPARE(px(81, 350), QColor(0, 128, 128));
    QCOMPARE(px(206, 350), QColor(255, 255, 255));
    QCOMPARE(px(150, 289), QColor(0, 128, 128));
    QCOMPARE(px(150, 421), QColor(255, 255, 255));
}

void TestMachine::modalAndTitleStrip() {
    Harness h;
    QTest::mouseClick(h.m.get(), Qt::LeftButton, {}, QPoint(40, 4));
    QCOMPARE(h.m->titlePressTwips(), QPoint(600, 60));
    QTest::mouseClick(h.m.get(), Qt::LeftButton, {}, QPoint(40, 60));
    QCOMPARE(h.m->titlePressTwips(), QPoint(600, 60));

    QString seen;
    QTimer::singleShot(0, [&] {
        auto* w = qobject_cast<Machine*>(QApplication::activeModalWidget());
        QVERIFY(w);
        QTest::keyClicks(w->findChild<QLineEdit*>(QStringLiteral("z1")), "7*6");
        QTest::keyClick(w->findChild<QLineEdit*>(QStringLiteral("z1")), Qt::Key_Enter);
        seen = w->findChild<QLineEdit*>(QStringLiteral("z1"))->text();
        QTest::keyClick(w, Qt::Key_Escape);
    });
    QCOMPARE(h.m->exec(), int(QDialog::Rejected));
    QCOMPARE(seen, QStringLiteral(" 42"));
}

QTEST_MAIN(TestMachine)
#include "tst_machine.moc"

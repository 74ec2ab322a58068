#include "calculator/evaluator.h"
#include "calculator/machine.h"
#include "calculator/memory.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <memory>

using calculator::Machine;

namespace {

struct Harness {
    std::unique_ptr<Machine> m = std::make_unique<Machine>();
    int beeps = 0;

    Harness() {
        calculator::Memory = 0;
        m->setBeepHandler([this] { ++beeps; });
    }
    QLineEdit* z1() const { return m->findChild<QLineEdit*>(QStringLiteral("z1")); }
    QString display() const { return z1()->text(); }
    template <class T> T* control(const QString& name) const { return m->findChild<T*>(name); }
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
    void captions();
    void keyboard();
    void displayGuard();
    void messagesShowWhole_data();
    void messagesShowWhole();
    void background();
    void modalAndTitleStrip();
};

void TestMachine::keySequences_data() {
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("display");
    QTest::addColumn<int>("beeps");
    QTest::addColumn<double>("memory");
    // The display shows the entry unless given apart.
    auto row = [](const char* keys, const QString& entry, const QString& display = {},
                  int beeps = 0, double memory = 0) {
        QTest::newRow(keys) << QString::fromLatin1(keys) << entry
                            << (display.isNull() ? entry : display) << beeps << memory;
    };
    // Results; the angle option is read at EXE; a result then an operator goes on from it
    row("Bcos,B6,B0,EXE,plus", ".5 + ");
    row("EXE", "", " 0");
    row("angle_1,bsin,B9,B0,EXE,angle_0", "", " .893996663600558");
    row("B3,EXE,btcarre,EXE", "", " 9");
    row("B2,EXE,B7", "7");
    // Product rule
    row("B2,Bcos", "2 * cos ");
    row("Bpo,bsin", "(sin ");
    row("moins,Bln", "-ln ");
    row("Bpo,B1,bpf,Bpo", "(1) * (");
    row("B2,pi", "2 * 3.14159265358979");
    row("B4,Command5", "4 * 1 / ");
    row("invsin,invcos,Btoncommande3,Bexp,B10x,racine", "invSIN invCOS invTAN exp 10 ^ SQR ");
    row("B1,kilo,B1,mil,B1,tera,B1,pico", "1E+31E-31E+121E-12");
    // Operators on a blank display, and the minus rule
    row("multip", "");
    row("puissance", " ^ ");
    row("moins,moins", "- -");
    row("B1,plus,moins", "1 + -");
    row("B1,BtoEXP,moins,B3", "1E-3");
    row("B1,BtoEXP,plus", "1E+");
    // EFFACE takes a spaced operator or a whole word at once
    row("EFFACE", "");
    row("B1,B0,puissance,EFFACE", "10");
    row("B2,btcarre,EFFACE", "2 ^ ");
    row("B2,Bcos,EFFACE", "2 * ");
    row("Bpo,bsin,EFFACE", "(");
    row("Bln,EFFACE", "");
    row("B3,plus,invcos,EFFACE,EFFACE", "3");
    row("B1,B2,plus,RAZ", "");
    // Errors: a beep each, the entry kept for more typing
    row("B2,multip,EXE", "2 * ", "Erreur saisie: incompréhension sur opérateurs: ^ * / + -", 1);
    row("B2,multip,EXE,B3", "2 * 3", {}, 1);
    row("B2,multip,EXE,B3,EXE", "", " 6", 1);
    row("Bpo,B1,EXE", "(1", "Erreur saisie: revoir les parenthèses", 1);
    row("B1,div,B0,EXE", "1 / 0", "Calcul impossible", 1);
    row("B1,div,B0,EXE,ANS", "1 / 0", {}, 1);
    row("B6,EXE,ANS,ANS", "66");
    row("B9,BtoEXP,B9,B9,B9,EXE", "", "Dépassement de capacité", 1);
    // Memory: M+ takes the shown result or the number the typed text starts with; a recall
    // gets no product rule; an unreadable display leaves the memory alone.
    row("B5,EXE,Command1", "", " 5", 0, 5);
    row("B1,B2,plus,B3,Command1", "12 + 3", {}, 0, 12);
    row("B5,EXE,Command2,B2,Command3", "2-5", {}, 0, -5);
    row("B5,EXE,Command1,Command4,RAZ,Command3", "0");
    row("B2,EXE,Command1,RAZ,B9,BtoEXP,B9,B9,B9,Command1", "9E999", {}, 0, 2);
    row("B1,Bpoint,B5,EXE,Command1,C_0,RAZ,Command3", "1,5E+00", {}, 0, 1.5);
    // Scientifique: results only, the last one shown again when the option changes
    row("C_0,B1,B2,B3,B4,Bpoint,B5,EXE", "", "1.2345E+03");
    row("C_0,B1,B2,B3,B4,Bpoint,B5,EXE,C_1", "", " 1234.5");
    row("C_0,moins,B1,B2,div,B1,B0,B0,B0,B0,EXE", "", "-1.2E-03");
    row("C_0,B7,C_1", "7");
}

void TestMachine::keySequences() {
    QFETCH(QString, keys);
    QFETCH(QString, entry);
    QFETCH(QString, display);
    QFETCH(int, beeps);
    QFETCH(double, memory);
    Harness h;
    h.press(keys);
    QCOMPARE(h.m->entry(), entry);
    QCOMPARE(h.display(), display);
    QCOMPARE(h.beeps, beeps);
    QCOMPARE(calculator::Memory, memory);
}

void TestMachine::captions() {
    Harness h;
    QCOMPARE(h.m->windowTitle(), QString::fromUtf8("Machine à calculer"));
    QVERIFY(h.control<QRadioButton>("angle_0")->isChecked());
    QVERIFY(h.control<QRadioButton>("C_1")->isChecked());
    const char* const keys[][3] = {
        {"bsin", "&SIN", "Sinus"},
        {"BtoEXP", "EXP", "x 10ª"},
        {"micro", "µ", "micro"},
        {"racine", "√", "Racine carré"},
        {"pi", "π", "3.1415927"},
        {"EFFACE", "←", "Effacer dernier caractère"},
        {"Command1", "M+", "Ajouter à la méoire"},
        {"puissance", "", ""},
    };
    for (const auto& k : keys) {
        auto* key = h.control<QPushButton>(QString::fromLatin1(k[0]));
        QCOMPARE(key->text(), QString::fromUtf8(k[1]));
        QCOMPARE(key->toolTip(), QString::fromUtf8(k[2]));
        QCOMPARE(key->focusPolicy(), Qt::NoFocus);
    }
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
}

void TestMachine::displayGuard() {
    QString sum = QStringLiteral("2+3"), sine = QStringLiteral("sin 30");
    std::int16_t code = 0;
    {
        Harness h;
        // A blank display stops the reduction of operators, not of functions...
        calculator::EvaluateExpression(sum, code, 0);
        QCOMPARE(int(code), 1);
        calculator::EvaluateExpression(sine, code, 0);
        QCOMPARE(int(code), 0);
        // ...so during EXE the display shows the waiting text.
        QCOMPARE(Machine::WaitingText, QStringLiteral("    Patience... Calculs en cours.     "));
        h.press("B2,plus,B3,EXE");
        QCOMPARE(h.display(), QStringLiteral(" 5"));
        QCOMPARE(h.m->lastExpression(), QStringLiteral("2 + 3"));
    }
    sum = QStringLiteral("2+3"); // the guard goes with the window
    calculator::EvaluateExpression(sum, code, 0);
    QCOMPARE(sum, QStringLiteral("5"));
}

void TestMachine::messagesShowWhole_data() {
    QTest::addColumn<QString>("keys"); // typed before EXE; empty: the text is set directly
    QTest::addColumn<QString>("text");
    QTest::newRow("parentheses") << "(1+2" << Machine::ParenthesesMessage;
    QTest::newRow("operators") << "2*" << Machine::OperatorsMessage;
    QTest::newRow("impossible") << "" << Machine::ImpossibleMessage;
    QTest::newRow("overflow") << "" << Machine::OverflowMessage;
    QTest::newRow("waiting") << "" << Machine::WaitingText;
    QTest::newRow("short result keeps the large font") << "2" << QStringLiteral(" 2");
}

void TestMachine::messagesShowWhole() {
    QFETCH(QString, keys);
    QFETCH(QString, text);
    Harness h;
    h.m->show();
    QVERIFY(QTest::qWaitForWindowExposed(h.m.get()));
    QLineEdit* z1 = h.z1();
    if (keys.isEmpty()) {
        z1->setText(text);
    } else {
        QTest::keyClicks(z1, keys);
        QTest::keyClick(z1, Qt::Key_Return);
    }
    QCOMPARE(z1->text(), text);
    QCOMPARE(z1->cursorPosition(), int(text.size()));
    // With the caret after the last character, the line has not scrolled when the caret stands
    // at least a whole text width from the left edge, and still inside the box.
    const int width = QFontMetrics(z1->font()).horizontalAdvance(text);
    const QRect caret = z1->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    QVERIFY2(caret.center().x() >= width, qPrintable(QStringLiteral("%1 %2 %3 %4")
                                                         .arg(width)
                                                         .arg(caret.left())
                                                         .arg(caret.right())
                                                         .arg(z1->width())));
    QVERIFY(caret.right() < z1->width());
    if (text == QStringLiteral(" 2"))
        QCOMPARE(z1->font().pixelSize(), 16);
    else
        QVERIFY(z1->font().pixelSize() >= 9); // still readable
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
    QCOMPARE(px(301, 200), QColor(50, 100, 100));
    QCOMPARE(px(299, 200), QColor(255, 255, 255));
    QCOMPARE(px(81, 350), QColor(0, 128, 128));
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
        auto* z1 = w->findChild<QLineEdit*>(QStringLiteral("z1"));
        QTest::keyClicks(z1, "7*6");
        QTest::keyClick(z1, Qt::Key_Enter);
        QTest::keyClicks(z1, "1+");
        // Escape would lose the typed entry: only the close button closes the window.
        QTest::keyClick(z1, Qt::Key_Escape);
        QTest::keyClick(w, Qt::Key_Escape);
        QVERIFY(w->isVisible());
        seen = w->entry();
        w->close();
    });
    QCOMPARE(h.m->exec(), int(QDialog::Rejected));
    QCOMPARE(seen, QStringLiteral("1 + "));
}

QTEST_MAIN(TestMachine)
#include "tst_machine.moc"

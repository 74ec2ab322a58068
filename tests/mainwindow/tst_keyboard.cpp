#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/helpwindow.h"
#include "micro/micropanel.h"
#include "platform/imagebutton.h"
#include "platform/surface.h"
#include "support/answerboxes.h"
#include "support/mainwindowfixture.h"

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <functional>
#include <memory>

class TestKeyboard : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void tabKeys_data();
    void tabKeys();
    void tabChain_data();
    void tabChain();
    void imageButtonKeys_data();
    void imageButtonKeys();
    void focusFrames_data();
    void focusFrames();
    void f1OpensHelp();

private:
    QStringList tabThrough(int presses);

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestKeyboard::init() {
    QVERIFY(openMainWindow(dir_, w_));
    w_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w_.get()));
}

void TestKeyboard::cleanup() {
    closeMainWindow(dir_, w_);
}

void TestKeyboard::tabKeys_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("focus"); // where the keyboard is when the key is pressed
    QTest::addColumn<int>("to");
    const int ctrl = Qt::ControlModifier, shift = Qt::ShiftModifier, alt = Qt::AltModifier;
    QTest::newRow("Ctrl+Tab Micro") << 1 << int(Qt::Key_Tab) << ctrl << "Combo1" << 2;
    QTest::newRow("Ctrl+Tab Options") << 3 << int(Qt::Key_Tab) << ctrl << "Combo1" << 1;
    QTest::newRow("Ctrl+Shift+Tab Micro")
        << 1 << int(Qt::Key_Backtab) << ctrl + shift << "Combo1" << 3;
    QTest::newRow("Ctrl+Shift+Tab Options")
        << 3 << int(Qt::Key_Backtab) << ctrl + shift << "Combo1" << 2;
    QTest::newRow("Ctrl+PgDn Macro") << 2 << int(Qt::Key_PageDown) << ctrl << "Combo1" << 3;
    QTest::newRow("Ctrl+PgUp Micro") << 1 << int(Qt::Key_PageUp) << ctrl << "Combo1" << 3;
    QTest::newRow("Ctrl+PgUp Macro") << 2 << int(Qt::Key_PageUp) << ctrl << "Combo1" << 1;
    QTest::newRow("Alt+1") << 3 << int(Qt::Key_1) << alt << "Combo1" << 1;
    QTest::newRow("Alt+2") << 1 << int(Qt::Key_2) << alt << "Combo1" << 2;
    QTest::newRow("Alt+3") << 2 << int(Qt::Key_3) << alt << "Combo1" << 3;
    QTest::newRow("Ctrl+Tab in the statement") << 1 << int(Qt::Key_Tab) << ctrl << "supertext" << 2;
    QTest::newRow("Ctrl+Tab on the slider") << 2 << int(Qt::Key_Tab) << ctrl << "HScroll1" << 3;
    QTest::newRow("Ctrl+PgDn in a field") << 2 << int(Qt::Key_PageDown) << ctrl << "Text1_0" << 3;
}

void TestKeyboard::tabKeys() {
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, focus);
    QFETCH(int, to);
    w_->selectTab(from);
    auto* target = w_->findChild<QWidget*>(focus);
    QVERIFY(target);
    if (auto* statement = qobject_cast<QTextEdit*>(target))
        statement->setReadOnly(false); // an exercise's statement, open for editing
    target->setFocus(Qt::TabFocusReason);
    QCOMPARE(QApplication::focusWidget(), target);
    QTest::keyClick(target, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(int(w_->state().ActiveTab), to);
    QCOMPARE(w_->micro()->picture3()->isVisible(), to == 1);
    QCOMPARE(w_->macro()->frame2()->isVisible(), to == 2);
}

QStringList TestKeyboard::tabThrough(int presses) {
    QStringList reached;
    for (int i = 0; i < presses; ++i) {
        QWidget* f = QApplication::focusWidget();
        if (!f)
            break;
        QTest::keyClick(f, Qt::Key_Tab);
        QWidget* now = QApplication::focusWidget();
        if (!now)
            break;
        // No invisible or disabled control takes the keyboard.
        if (!now->isVisible() || !now->isEnabled())
            reached << QStringLiteral("!") + now->objectName();
        else
            reached << now->objectName();
    }
    return reached;
}

void TestKeyboard::tabChain_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<QStringList>("buttons"); // in the order Tab reaches them
    QTest::newRow("Micro") << 1 << QStringList{"Image5", "Image4", "Image7", "Image6"};
    QTest::newRow("Macro") << 2 << QStringList{"Image8", "Image9", "Image11", "Image10"};
    QTest::newRow("Options") << 3 << QStringList{};
}

void TestKeyboard::tabChain() {
    QFETCH(int, tab);
    QFETCH(QStringList, buttons);
    w_->selectTab(tab);
    w_->findChild<QComboBox*>(QStringLiteral("Combo1"))->setFocus(Qt::TabFocusReason);
    const QStringList reached = tabThrough(40);
    for (const QString& name : reached)
        QVERIFY2(!name.startsWith(QLatin1Char('!')), qPrintable(name));
    // Round the whole window back to the reaction list.
    QVERIFY2(reached.contains(QStringLiteral("Combo1")), qPrintable(reached.join(' ')));
    qsizetype last = -1;
    for (const QString& b : buttons) {
        const qsizetype at = reached.indexOf(b);
        QVERIFY2(at > last, qPrintable(b + QStringLiteral(": ") + reached.join(' ')));
        last = at;
    }
    for (const char* hidden : {"Image4", "Image8", "HScroll1", "Chec_0", "Label2", "Picture4"})
        if (!buttons.contains(QString::fromLatin1(hidden)) &&
            !(tab == 2 && QByteArray(hidden) == "HScroll1") &&
            !(tab == 3 && QByteArray(hidden) == "Chec_0"))
            QVERIFY2(!reached.contains(QString::fromLatin1(hidden)), hidden);
    if (tab == 2)
        QVERIFY(reached.contains(QStringLiteral("HScroll1")));
}

void TestKeyboard::imageButtonKeys_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("key");
    QTest::newRow("Space on Image5") << "Image5" << int(Qt::Key_Space);
    QTest::newRow("Enter on Image5") << "Image5" << int(Qt::Key_Return);
    QTest::newRow("Space on Image4") << "Image4" << int(Qt::Key_Space);
    QTest::newRow("keypad Enter on Image4") << "Image4" << int(Qt::Key_Enter);
    QTest::newRow("Space on Image7") << "Image7" << int(Qt::Key_Space);
    QTest::newRow("Space on Image6") << "Image6" << int(Qt::Key_Space);
    QTest::newRow("Space on Image9") << "Image9" << int(Qt::Key_Space);
    QTest::newRow("Enter on Image8") << "Image8" << int(Qt::Key_Return);
    QTest::newRow("Space on Image11") << "Image11" << int(Qt::Key_Space);
    QTest::newRow("Space on Image10") << "Image10" << int(Qt::Key_Space);
}

void TestKeyboard::imageButtonKeys() {
    QFETCH(QString, button);
    QFETCH(int, key);
    const bool micro = button.mid(5).toInt() <= 7;
    w_->selectReaction(4);
    w_->selectTab(micro ? 1 : 2);
    MicroPanel* m = w_->micro();
    MacroPanel* M = w_->macro();
    // A state each button visibly changes.
    if (button == QLatin1String("Image5") || button == QLatin1String("Image7"))
        m->Image6_Click();
    if (button == QLatin1String("Image7"))
        m->Image4_Click();
    if (button == QLatin1String("Image8") || button == QLatin1String("Image10"))
        M->Image9_Click();
    if (button == QLatin1String("Image10"))
        M->Image11_Click();
    auto* b = w_->findChild<platform::ImageButton*>(button);
    QVERIFY(b);
    b->setFocus(Qt::TabFocusReason);
    QTest::keyClick(b, Qt::Key(key));
    QCOMPARE(QApplication::focusWidget(), b); // the keyboard keeps its place
    const int step = w_->state().AnimStep;
    if (button == QLatin1String("Image5")) {
        QVERIFY(step <= 1);
        QVERIFY(!m->timer1()->isActive());
    } else if (button == QLatin1String("Image4")) {
        QVERIFY(m->timer1()->isActive());
    } else if (button == QLatin1String("Image7")) {
        QVERIFY(!m->timer1()->isActive());
    } else if (button == QLatin1String("Image6")) {
        QVERIFY(step > 10);
    } else if (button == QLatin1String("Image9")) {
        QCOMPARE(M->hscroll1()->value(), M->hscroll1()->maximum());
    } else if (button == QLatin1String("Image8")) {
        QCOMPARE(M->hscroll1()->value(), 0);
    } else if (button == QLatin1String("Image11")) {
        QVERIFY(M->timer2()->isActive());
    } else if (button == QLatin1String("Image10")) {
        QVERIFY(!M->timer2()->isActive());
    }
    m->timer1()->stop();
    M->timer2()->stop();
}

void TestKeyboard::focusFrames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("tab");
    QTest::newRow("Image5") << "Image5" << 1;
    QTest::newRow("Image10") << "Image10" << 2;
    QTest::newRow("slider") << "HScroll1" << 2;
}

void TestKeyboard::focusFrames() {
    QFETCH(QString, name);
    QFETCH(int, tab);
    w_->selectTab(tab);
    auto* target = w_->findChild<QWidget*>(name);
    QVERIFY(target);
    w_->findChild<QComboBox*>(QStringLiteral("Combo1"))->setFocus();
    const QImage without = target->grab().toImage();
    target->setFocus(Qt::TabFocusReason);
    const QImage with = target->grab().toImage();
    QCOMPARE(with.size(), without.size());
    // A dotted frame in black: pixels on the frame's line turn black.
    int changed = 0;
    for (int y = 0; y < with.height(); ++y)
        for (int x = 0; x < with.width(); ++x)
            if (with.pixel(x, y) != without.pixel(x, y) && qGray(with.pixel(x, y)) == 0)
                ++changed;
    QVERIFY2(changed >= 10, qPrintable(QString::number(changed)));
}

void TestKeyboard::f1OpensHelp() {
    qputenv("THERMIVO_PROGRAM_FOLDER", QCoreApplication::applicationDirPath().toUtf8());
    QString opened;
    whenModal([&](QWidget* m) {
        if (auto* help = qobject_cast<HelpWindow*>(m)) {
            opened = QStringLiteral("help");
            help->reject();
        } else if (auto* box = qobject_cast<QMessageBox*>(m)) {
            opened = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        }
    });
    QWidget* combo = w_->findChild<QComboBox*>(QStringLiteral("Combo1"));
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_F1);
    QCOMPARE(opened, QStringLiteral("help"));
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"

#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/tabstrip.h"
#include "micro/micropanel.h"
#include "platform/canvas.h"
#include "platform/surface.h"
#include "support/mainwindowfixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <memory>

// Answers the next message boxes in order; records their titles and texts.
class BoxAnswerer : public QObject {
public:
    explicit BoxAnswerer(QList<QMessageBox::StandardButton> answers)
        : answers_(std::move(answers)) {
        arm();
    }
    QStringList titles, texts;

private:
    void arm() {
        QTimer::singleShot(0, this, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) {
                arm();
                return;
            }
            titles << box->windowTitle();
            texts << box->text();
            QVERIFY(box->icon() == QMessageBox::Question);
            const auto answer = answers_.takeFirst();
            box->button(answer)->click();
            if (!answers_.isEmpty())
                arm();
        });
    }
    QList<QMessageBox::StandardButton> answers_;
};

class TestFeuilleP : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void startUp();
    void controlNames_data();
    void controlNames();
    void sizingRuleOnShow();
    void welcomeText();
    void statementLoadIsNotAnEdit();
    void closing_data();
    void closing();
    void fermerClosesThroughTheSamePath();
    void tabGeometry();
    void tabHitTest_data();
    void tabHitTest();
    void optionsHeadings();
    void unknownLabelKeepsIndex();
    void reselectingResets();
    void bannerAfterTabRoundTrip_data();
    void bannerAfterTabRoundTrip();
    void activeLabelSitsLower();
    void comboFocusHint();
    void exerciseHandOverOnce();
    void calculatorOpensModally();

private:
    QByteArray record18() const;
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestFeuilleP::init() {
    QVERIFY(openMainWindow(dir_, w_));
}

void TestFeuilleP::cleanup() {
    closeMainWindow(dir_, w_);
}

QByteArray TestFeuilleP::record18() const {
    QFile f(dir_->path() + QStringLiteral("/TEMPKN.TMP"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    f.seek(17 * 128);
    return f.read(5);
}

void TestFeuilleP::startUp() {
    QVERIFY(w_->loaded());
    QCOMPARE(w_->state().ProgramFolder, dir_->path() + QLatin1Char('/'));
    QCOMPARE(record18(), QByteArray("\x03\x00OUI", 5));
    auto* combo = w_->findChild<QComboBox*>(QStringLiteral("Combo1"));
    QVERIFY(combo);
    QCOMPARE(combo->count(), 8);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(combo->property("Tag").toString(), QStringLiteral("1"));
    QCOMPARE(w_->state().BrokenBondsEnergy, 2628);
    QCOMPARE(w_->state().FormedBondsEnergy, 3430);
    auto* info = w_->findChild<QLabel*>(QStringLiteral("info"));
    QCOMPARE(
        info->property("Caption").toString(),
        QStringLiteral(
            "Vous pouvez modifier les paramètres,\r\nouvrir une configuration ou un exercice"));
    QCOMPARE(
        w_->state().CopyMessage,
        QStringLiteral("L'image est copiée : vous pouvez la retrouver depuis toute application "
                       "Windows (coller)"));
    QVERIFY(w_->findChild<QRadioButton*>(QStringLiteral("Option1_1"))->isChecked());
    QCOMPARE(w_->state().StatementModified, 0);

    // Gradient from white at the top to (200, 200, 180) at the bottom, shadow behind the text.
    const QImage shot = w_->grab().toImage();
    QCOMPARE(QColor(shot.pixel(2, 0)), QColor(255, 255, 255));
    QCOMPARE(QColor(shot.pixel(2, 599)), QColor(200, 200, 180));
    QCOMPARE(QColor(shot.pixel(2, 300)), QColor(228, 228, 218));
    auto* supertext = w_->findChild<QTextEdit*>(QStringLiteral("supertext"));
    const QRect st = supertext->geometry();
    QCOMPARE(QColor(shot.pixel(st.right() + 2, st.bottom() + 2)), QColor(128, 128, 128));
}

void TestFeuilleP::controlNames_data() {
    QTest::addColumn<QString>("name");
    for (const char* n :
         {"Label1",   "Combo1",    "Onglets",  "Picture1", "Picture3",  "Picmicro",  "Picture2",
          "Picture5", "Label2",    "Image4",   "Image5",   "Image6",    "Image7",    "Timer1",
          "Frame2",   "Text1_0",   "Text1_3",  "Label4_0", "Label4_3",  "Label5",    "Label6",
          "HScroll1", "Image8",    "Image9",   "Image10",  "Image11",   "Command3",  "Timer2",
          "Timer3",   "Picture4",  "Check1_0", "Check1_2", "Option1_0", "Option1_1", "info",
          "fich",     "supertext", "btexo",    "Command1", "Command2",  "Command4",  "Command7",
          "Command8", "Command10", "Command11"})
        QTest::newRow(n) << QString::fromLatin1(n);
}

void TestFeuilleP::controlNames() {
    // Other windows and tests find the controls by these names.
    QFETCH(QString, name);
    QCOMPARE(w_->findChildren<QObject*>(name).size(), 1);
}

void TestFeuilleP::sizingRuleOnShow() {
    feuilleP narrow;
    narrow.setScreenSizeOverride(QSize(851, 700));
    narrow.move(3, 4);
    narrow.show();
    QVERIFY(QTest::qWaitForWindowExposed(&narrow));
    QCOMPARE(narrow.pos(), QPoint(25, 50));
    QCOMPARE(narrow.size(), QSize(800, 600));
    narrow.setQuietShutdown(true);
    narrow.close();
}

void TestFeuilleP::welcomeText() {
    auto* supertext = w_->findChild<QTextEdit*>(QStringLiteral("supertext"));
    QVERIFY(supertext->isVisible());
    const QTextDocument* doc = supertext->document();
    const QTextBlock title = doc->firstBlock();
    QCOMPARE(title.text(), QStringLiteral("Thermivo"));
    QCOMPARE(title.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    QCOMPARE(title.begin().fragment().charFormat().fontPointSize(), 18.0);
    const QTextBlock body = title.next().next();
    QVERIFY(body.text().startsWith(QStringLiteral("Cette application")));
    QCOMPARE(body.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft);

    // "Exercices" and "Prise en main " are blue, the sentence around them black.
    const QString plain = doc->toPlainText();
    const auto colourAt = [&](const QString& needle) {
        QTextCursor c(const_cast<QTextDocument*>(doc));
        c.setPosition(static_cast<int>(plain.indexOf(needle)) + 1);
        return c.charFormat().foreground().color();
    };
    QCOMPARE(colourAt(QStringLiteral("Exercices.")), QColor(0, 0, 200));
    QCOMPARE(colourAt(QStringLiteral("Prise en main")), QColor(0, 0, 200));
    QCOMPARE(colourAt(QStringLiteral("dans le menu")), QColor(0, 0, 0));
    QCOMPARE(w_->state().StatementModified, 0);
}

void TestFeuilleP::statementLoadIsNotAnEdit() {
    auto* supertext = w_->findChild<QTextEdit*>(QStringLiteral("supertext"));
    QCOMPARE(w_->supertext(), supertext);
    const QString path = dir_->filePath(QStringLiteral("enonce.rtf"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(
        R"({\rtf1\ansi{\fonttbl{\f0 Arial;}}\f0 Le m\'e9thane CH\sub 4\nosupersub  br\'fble.\par})");
    f.close();

    QVERIFY(w_->loadStatement(path));
    QCOMPARE(supertext->toPlainText(), QStringLiteral("Le méthane CH4 brûle."));
    QCOMPARE(w_->state().StatementModified, 0); // the program's write is not an edit
    QVERIFY(!supertext->isReadOnly());

    // An unreadable file leaves the statement as it is.
    QVERIFY(!w_->loadStatement(dir_->filePath(QStringLiteral("absent.rtf"))));
    QCOMPARE(supertext->toPlainText(), QStringLiteral("Le méthane CH4 brûle."));

    // The user's typing is an edit; what is saved reloads, again without counting as one.
    supertext->setFocus();
    supertext->moveCursor(QTextCursor::End);
    QTest::keyClicks(supertext, QStringLiteral(" Oui"));
    QCOMPARE(w_->state().StatementModified, 1);
    const QString saved = dir_->filePath(QStringLiteral("copie.rtf"));
    QVERIFY(w_->saveStatement(saved));
    w_->state().StatementModified = 0;
    QVERIFY(w_->loadStatement(saved));
    QCOMPARE(supertext->toPlainText(), QStringLiteral("Le méthane CH4 brûle. Oui"));
    QCOMPARE(w_->state().StatementModified, 0);
    QVERIFY(!w_->saveStatement(dir_->filePath(QStringLiteral("no/such/folder/x.rtf"))));

    w_->ShowWelcomeText();
    QVERIFY(supertext->isReadOnly());
    QCOMPARE(w_->state().StatementModified, 0);
}

void TestFeuilleP::closing_data() {
    QTest::addColumn<int>("modified");
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<bool>("closed");
    using B = QMessageBox::StandardButton;
    QTest::newRow("cancel") << 0 << QList<B>{B::Cancel} << QStringList{"Fermer"} << false;
    QTest::newRow("ok") << 0 << QList<B>{B::Ok} << QStringList{"Fermer"} << true;
    QTest::newRow("edited, cancel first")
        << 1 << QList<B>{B::Cancel} << QStringList{"Abandon des données?"} << false;
    QTest::newRow("edited, cancel second")
        << 1 << QList<B>{B::Ok, B::Cancel} << QStringList{"Abandon des données?", "Fermer"}
        << false;
    QTest::newRow("edited, ok twice")
        << 1 << QList<B>{B::Ok, B::Ok} << QStringList{"Abandon des données?", "Fermer"} << true;
}

void TestFeuilleP::closing() {
    QFETCH(int, modified);
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    QFETCH(QStringList, titles);
    QFETCH(bool, closed);
    w_->state().StatementModified = static_cast<std::int16_t>(modified);
    BoxAnswerer answerer(answers);
    w_->close();
    QCOMPARE(answerer.titles, titles);
    if (modified)
        QCOMPARE(answerer.texts.first(),
                 QStringLiteral("Attention: perte des modifications du texte."));
    if (titles.last() == QLatin1String("Fermer"))
        QCOMPARE(answerer.texts.last(), QStringLiteral("Quitter vraiment Thermivo ?"));
    QCOMPARE(!w_->isVisible(), closed);
    QCOMPARE(record18(), closed ? QByteArray("\x03\x00NON", 5) : QByteArray("\x03\x00OUI", 5));
    QCOMPARE(w_->state().StatementModified, modified); // a cancel keeps everything
}

void TestFeuilleP::fermerClosesThroughTheSamePath() {
    auto* fermer = w_->findChild<QPushButton*>(QStringLiteral("Command1"));
    QCOMPARE(fermer->text(), QStringLiteral("&Fermer"));
    {
        BoxAnswerer answerer({QMessageBox::Cancel});
        fermer->click();
        QCOMPARE(answerer.titles, QStringList{"Fermer"});
        QVERIFY(w_->isVisible());
    }
    BoxAnswerer answerer({QMessageBox::Ok});
    fermer->click();
    QVERIFY(!w_->isVisible());
    QCOMPARE(record18(), QByteArray("\x03\x00NON", 5));
}

void TestFeuilleP::tabGeometry() {
    auto* onglets = w_->findChild<platform::Surface*>(QStringLiteral("Onglets"));
    TabStrip* tabs = w_->tabs();
    onglets->refresh();
    const auto& e = tabs->tabEdges();
    const int W = onglets->width();
    QCOMPARE(e[0], -1);
    QVERIFY(e[0] < e[1] && e[1] < e[2] && e[2] < e[3]);
    QCOMPARE(int(e[3]), W);
    QCOMPARE(e[4], 0);

    // Each tab is its label plus a gap on each side; the active label is measured in bold.
    QImage scratch(10, 10, QImage::Format_RGB32);
    QPainter p(&scratch);
    platform::DrawState st;
    platform::Canvas c(p, st, scratch.size());
    st.fontSize = 8;
    st.fontBold = true;
    const double micro = c.textWidth(QStringLiteral("Micro"));
    st.fontBold = false;
    const double macro = c.textWidth(QStringLiteral("Macro"));
    QVERIFY(qAbs(e[1] - (-1 + micro + 2 * tabs->gap())) <= 0.5);
    QVERIFY(qAbs(e[2] - e[1] - (macro + 2 * tabs->gap())) <= 1.0);

    // The base line opens under the active tab and runs white under the others.
    const int h = tabs->labelHeight();
    const QImage img = onglets->image();
    QCOMPARE(QColor(img.pixel((e[0] + e[1]) / 2, h + 1)), onglets->backColor());
    QCOMPARE(QColor(img.pixel((e[1] + e[2]) / 2, h + 1)), QColor(255, 255, 255));
    QCOMPARE(QColor(img.pixel(e[1], 0)), QColor(255, 255, 255));
    QCOMPARE(QColor(img.pixel(e[1] - 1, 1)), QColor(128, 128, 128));
    // Inset frame of the panel area.
    QCOMPARE(QColor(img.pixel(1, h + 10)), QColor(210, 205, 200));
    QCOMPARE(QColor(img.pixel(3, h + 10)), QColor(128, 128, 128));
}

void TestFeuilleP::tabHitTest_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("expected");
    QTest::newRow("Macro") << 2 << 5.0 << 2;
    QTest::newRow("Options") << 3 << 0.0 << 3;
    QTest::newRow("Options at 15") << 3 << 15.0 << 3;
    QTest::newRow("below 15 never switches") << 3 << 16.0 << 1;
    QTest::newRow("negative y") << 2 << -1.0 << 1;
}

void TestFeuilleP::tabHitTest() {
    QFETCH(int, tab);
    QFETCH(double, y);
    QFETCH(int, expected);
    auto* onglets = w_->findChild<platform::Surface*>(QStringLiteral("Onglets"));
    TabStrip* tabs = w_->tabs();
    onglets->refresh();
    const auto& e = tabs->tabEdges();
    const double x = (e[tab - 1] + e[tab]) / 2.0;
    tabs->Onglets_MouseUp(Qt::LeftButton, Qt::NoModifier, x, y);
    QCOMPARE(int(w_->state().ActiveTab), expected);
    auto* options = w_->findChild<platform::Surface*>(QStringLiteral("Picture1"));
    QCOMPARE(options->isVisible(), expected == 3);
    if (expected == 3) {
        const int h = tabs->labelHeight();
        QCOMPARE(options->geometry(),
                 QRect(4, h + 5, onglets->width() - 8, onglets->height() - 4 - (h + 5)));
    }
}

void TestFeuilleP::optionsHeadings() {
    auto* onglets = w_->findChild<platform::Surface*>(QStringLiteral("Onglets"));
    onglets->refresh();
    const auto& e = w_->tabs()->tabEdges();
    w_->tabs()->Onglets_MouseUp(Qt::LeftButton, Qt::NoModifier, e[2] + 3, 4);
    auto* options = w_->findChild<platform::Surface*>(QStringLiteral("Picture1"));
    options->refresh();
    const QImage img = options->image();
    QCOMPARE(QColor(img.pixel(5, 5)), QColor(240, 235, 230));
    // A heading stands 27 units above each group; some dark ink must be in its row.
    auto* check = w_->findChild<QCheckBox*>(QStringLiteral("Check1_2"));
    QCOMPARE(check->text(), QStringLiteral("Afficher la chaleur de réaction"));
    int ink = 0;
    for (int x = 18; x < 80; ++x)
        for (int y = check->y() - 27; y < check->y() - 15; ++y)
            ink += qGray(img.pixel(x, y)) < 100;
    QVERIFY(ink > 10);
}

void TestFeuilleP::unknownLabelKeepsIndex() {
    auto* combo = w_->findChild<QComboBox*>(QStringLiteral("Combo1"));
    combo->setCurrentIndex(3);
    w_->Combo1_Click();
    QCOMPARE(combo->property("Tag").toString(), QStringLiteral("4"));
    QCOMPARE(w_->state().FormedBondsEnergy, 21920);
    combo->addItem(QStringLiteral("Combustion inconnue"));
    combo->setCurrentIndex(8);
    w_->state().AnimStep = 12;
    w_->Combo1_Click();
    QCOMPARE(combo->property("Tag").toString(), QStringLiteral("4"));
    QCOMPARE(w_->state().BrokenBondsEnergy, 16710);
    // The rest of the change still runs: the animation is back at its start.
    QVERIFY(w_->state().AnimStep <= 1);
}

void TestFeuilleP::reselectingResets() {
    auto* slider = w_->findChild<QScrollBar*>(QStringLiteral("HScroll1"));
    auto* combo = w_->findChild<QComboBox*>(QStringLiteral("Combo1"));
    slider->setValue(5000);
    w_->micro()->Image6_Click();
    QVERIFY(w_->state().AnimStep > 60);
    // The user picks the reaction already shown.
    emit combo->activated(combo->currentIndex());
    QCOMPARE(slider->value(), 0);
    QCOMPARE(w_->state().AnimStep, 1); // the initial state drawn, the next step waiting
    QCOMPARE(w_->findChild<QLabel*>(QStringLiteral("Label5"))->text(), QStringLiteral("0,0 mol"));
}

void TestFeuilleP::bannerAfterTabRoundTrip_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("chosenOn");
    for (int r = 1; r <= 8; ++r)
        for (int tab : {2, 3})
            QTest::addRow("reaction %d chosen on tab %d", r, tab) << r << tab;
}

void TestFeuilleP::bannerAfterTabRoundTrip() {
    QFETCH(int, reaction);
    QFETCH(int, chosenOn);
    // The equation banner: Picture3 above the molecules, as the screen shows it.
    const auto banner = [this] {
        QApplication::processEvents();
        return w_->micro()->picture3()->grab(QRect(0, 0, 334, 38)).toImage();
    };
    w_->selectTab(1);
    w_->selectReaction(reaction);
    const QImage expected = banner();
    const int other = reaction == 1 ? 2 : 1;
    w_->selectReaction(other);
    QVERIFY(banner() != expected);

    w_->selectTab(chosenOn);
    w_->selectReaction(reaction);
    w_->selectTab(1);
    QCOMPARE(banner(), expected);
}

void TestFeuilleP::activeLabelSitsLower() {
    auto* onglets = w_->findChild<platform::Surface*>(QStringLiteral("Onglets"));
    onglets->refresh();
    const auto& e = w_->tabs()->tabEdges();
    const QImage img = onglets->image();
    // First row with dark ink between two edges.
    const auto inkTop = [&](int from, int to) {
        for (int y = 0; y < 20; ++y)
            for (int x = from + 2; x < to - 2; ++x)
                if (qGray(img.pixel(x, y)) < 100)
                    return y;
        return -1;
    };
    const int active = inkTop(e[0], e[1]);
    QVERIFY(active > 0);
    QCOMPARE(inkTop(e[1], e[2]), active - 1);
    QCOMPARE(inkTop(e[2], e[3]), active - 1);
}

void TestFeuilleP::comboFocusHint() {
    auto* combo = w_->findChild<QComboBox*>(QStringLiteral("Combo1"));
    w_->activateWindow();
    combo->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    auto* info = w_->findChild<QLabel*>(QStringLiteral("info"));
    QCOMPARE(info->property("Caption").toString(),
             QStringLiteral("Choisir la réaction dans le liste"));
}

void TestFeuilleP::exerciseHandOverOnce() {
    // The suite's main module writes an exercise name into record 31.
    {
        QFile f(dir_->path() + QStringLiteral("/TEMPKN.TMP"));
        QVERIFY(f.open(QIODevice::ReadWrite));
        f.seek(30 * 128);
        f.write(QByteArray("\x0c\x00 exos\\e1.E31", 14));
    }
    QStringList opened;
    bool enabledDuring = true;
    w_->setExerciseOpener([&](const QString& path) {
        opened << path;
        enabledDuring = w_->isEnabled();
    });
    w_->Form_Activate();
    w_->Form_Activate();
    QCOMPARE(opened, QStringList{dir_->path() + QStringLiteral("/exos/e1.E31")});
    QVERIFY(!enabledDuring);
    QVERIFY(w_->isEnabled());
    QCOMPARE(w_->state().ExerciseOpened, 0); // the opener sets it when an exercise opened
}

void TestFeuilleP::calculatorOpensModally() {
    auto* button = w_->findChild<QPushButton*>(QStringLiteral("Command8"));
    QCOMPARE(button->text(), QStringLiteral("&Calculatrice"));
    QVERIFY(button->isEnabled());
    QString seen;
    bool modal = false;
    QTimer::singleShot(0, this, [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box)
            return;
        seen = box->objectName();
        modal = box->isModal();
        box->close();
    });
    button->click();
    QCOMPARE(seen, QStringLiteral("Machine"));
    QVERIFY(modal);
}

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    setUpApplication(app);
    TestFeuilleP t;
    return QTest::qExec(&t, argc, argv);
}
#include "tst_feuillep.moc"

#include "macro/macropanel.h"
#include "mainwindow/copymenu.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/helpwindow.h"
#include "micro/micropanel.h"
#include "platform/canvas.h"
#include "platform/surface.h"
#include "support/answerboxes.h"
#include "support/mainwindowfixture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <functional>
#include <memory>

namespace {

const QString CopyMessage = QStringLiteral(
    "L'image est copiée : vous pouvez la retrouver depuis toute application Windows (coller)");

} // namespace

class TestButtonRow : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void buttons_data();
    void buttons();
    void hints_data();
    void hints();
    void copyMenuPopsUp();
    void copy_data();
    void copy();
    void helpKeepsTheDiagram_data();
    void helpKeepsTheDiagram();
    void printOpensConfimp();

private:
    QLabel* info() const { return w_->findChild<QLabel*>(QStringLiteral("info")); }
    QString caption() const { return info()->property("Caption").toString(); }
    void hover(QWidget* target, QPoint at = {5, 5});

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestButtonRow::init() {
    QVERIFY(openMainWindow(dir_, w_));
}

void TestButtonRow::cleanup() {
    closeMainWindow(dir_, w_);
}

// A mouse move without a button, as the window system delivers it.
void TestButtonRow::hover(QWidget* target, QPoint at) {
    QTest::mouseMove(target, at);
    QApplication::processEvents();
}

void TestButtonRow::buttons_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("Command1") << "Command1"
                              << "&Fermer"
                              << "Quitter cette application" << true;
    QTest::newRow("Command7") << "Command7"
                              << "&Aide"
                              << "Aide pour utiliser cette application" << true;
    QTest::newRow("Command8") << "Command8"
                              << "&Calculatrice"
                              << "Machine à calculer" << true;
    QTest::newRow("Command10") << "Command10"
                               << "&Imprimer"
                               << "Imprimer l'image" << true;
    QTest::newRow("Command4") << "Command4"
                              << "Co&pier"
                              << "Placer l'image dans le presse-papiers" << true;
    QTest::newRow("Command11") << "Command11"
                               << "&Enregistrer"
                               << "Enregistrer la configuration actuelle" << true;
    QTest::newRow("Command2") << "Command2"
                              << "&Ouvrir"
                              << "Retrouver une configuration" << true;
}

void TestButtonRow::buttons() {
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, tip);
    QFETCH(bool, enabled);
    auto* b = w_->findChild<QPushButton*>(name);
    QVERIFY(b);
    QCOMPARE(b->text(), caption);
    QCOMPARE(b->toolTip(), tip);
    QCOMPARE(b->isEnabled(), enabled);
}

void TestButtonRow::hints_data() {
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("hint");
    const auto row = [](const char* control, const char* hint) {
        QTest::newRow(control) << QString::fromLatin1(control) << QString::fromUtf8(hint);
    };
    row("Command1", "Pour retrouver le module principal et quitter cette application");
    row("Command10", "Pour configurer l'imprimante et imprimer l'image");
    row("Command11", "Pour conserver la configuration en cours");
    row("Command2", "Pour retrouver une situation enregistrée");
    row("Command4", "Copier pour placer une image dans le presse- papiers puis coller depuis "
                    "Word, Paint...");
    row("Command7", "Si vous rencontrez une difficulté avec cette application");
    row("Command8", "Machine à calculer");
    row("feuilleP", "Vous pouvez modifier les paramètres,\r\nouvrir une configuration ou un "
                    "exercice");
    row("Frame2", "Vous pouvez modifier les quantités de matière et l'avancement de la réaction");
    row("Picmicro", "Utiliser les boutons pour activer l'animation");
    row("Picture3", "Utiliser les boutons pour activer l'animation");
    row("Picture1", "Vous pouvez modifier ces paramètres");
    row("Picture5", "Les données affichées dépendesnt de la réaction et des options choisies");
    row("btexo", "Ouvrir un énoncé, enregistrer le texte, obtenir la correction, imprimer ou "
                 "fermer.");
    row("Combo1", "Choisir la réaction dans le liste");
}

void TestButtonRow::hints() {
    QFETCH(QString, control);
    QFETCH(QString, hint);
    QWidget* target =
        control == QLatin1String("feuilleP") ? w_.get() : w_->findChild<QWidget*>(control);
    QVERIFY(target);
    // The panels of the other tabs are hidden until their tab is chosen.
    if (control == QLatin1String("Frame2"))
        w_->selectTab(2);
    if (control == QLatin1String("Picture1"))
        w_->selectTab(3);
    info()->setProperty("Caption", QStringLiteral("-"));
    if (control == QLatin1String("Combo1")) {
        QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
        QApplication::sendEvent(target, &in);
    } else if (!target->isEnabled()) {
        // Buttons whose windows are not there yet take no mouse; their hint is ready.
        QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(target, &move);
    } else if (control == QLatin1String("feuilleP")) {
        hover(w_.get(), QPoint(472, 300)); // the bare background between the tabs and the text
    } else if (control == QLatin1String("Picture3")) {
        hover(target, QPoint(440, 370)); // below the buttons, beside the molecules
    } else {
        hover(target);
    }
    QCOMPARE(caption(), hint);
    QCOMPARE(info()->text(), QString(hint).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void TestButtonRow::copyMenuPopsUp() {
    auto* button = w_->findChild<QPushButton*>(QStringLiteral("Command4"));
    QTest::mouseClick(button, Qt::LeftButton);
    auto* menu = w_->findChild<QMenu*>(QStringLiteral("menucop"));
    QVERIFY(menu);
    QVERIFY(menu->isVisible());
    const QList<QAction*> items = menu->actions();
    QCOMPARE(items.size(), 6);
    const char* const names[6] = {"copmicro", "copdiagmic", "kh", "copmac", "", "exporter"};
    const char* const captions[6] = {"L'illustration de l'aspect microscopique",
                                     "Le bilan énergétique de l'aspect microscopique",
                                     "",
                                     "L'illustration de l'aspect macroscopique",
                                     "",
                                     "Exporter l'illustration…"};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(items[i]->objectName(), QString::fromLatin1(names[i]));
        QCOMPARE(items[i]->text(), QString::fromUtf8(captions[i]));
        QCOMPARE(items[i]->isSeparator(), i == 2 || i == 4);
    }
    menu->close();
}

void TestButtonRow::copy_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("picture");
    QTest::newRow("copmicro") << "copmicro"
                              << "Picmicro";
    QTest::newRow("copdiagmic") << "copdiagmic"
                                << "Picture2";
    QTest::newRow("copmac") << "copmac"
                            << "Picture4";
}

void TestButtonRow::copy() {
    QFETCH(QString, item);
    QFETCH(QString, picture);
    w_->micro()->Image6_Click(); // molecules and diagram at their final state
    w_->macro()->hscroll1()->setValue(6000);
    QGuiApplication::clipboard()->setText(QStringLiteral("avant"));
    auto* menu = w_->findChild<QMenu*>(QStringLiteral("menucop"));
    menu->findChild<QAction*>(item)->trigger();

    const QImage expected = w_->findChild<platform::Surface*>(picture)->image();
    const QImage copied = QGuiApplication::clipboard()->image();
    QCOMPARE(copied.size(), expected.size());
    QCOMPARE(copied.convertToFormat(QImage::Format_RGB32),
             expected.convertToFormat(QImage::Format_RGB32));
    QVERIFY(QGuiApplication::clipboard()->text().isEmpty());
    QCOMPARE(caption(), CopyMessage);
    QCOMPARE(w_->state().CopyMessage, CopyMessage);

    // The confirmation stays while the mouse rests on the copy button...
    hover(w_->findChild<QWidget*>(QStringLiteral("Command4")));
    hover(w_->findChild<QWidget*>(QStringLiteral("Command4")), QPoint(20, 10));
    QCOMPARE(caption(), CopyMessage);
    // ...and any other control replaces it.
    hover(w_->findChild<QWidget*>(QStringLiteral("Command8")));
    QCOMPARE(caption(), QStringLiteral("Machine à calculer"));
    hover(w_->findChild<QWidget*>(QStringLiteral("Command4")));
    QCOMPARE(caption(), QStringLiteral("Copier pour placer une image dans le presse- papiers puis "
                                       "coller depuis Word, Paint..."));
}

void TestButtonRow::helpKeepsTheDiagram_data() {
    QTest::addColumn<bool>("shipped");
    QTest::newRow("shipped help") << true;
    QTest::newRow("no help folder") << false;
}

void TestButtonRow::helpKeepsTheDiagram() {
    QFETCH(bool, shipped);
    if (shipped)
        qputenv("THERMIVO_PROGRAM_FOLDER", QCoreApplication::applicationDirPath().toUtf8());
    w_->micro()->Image6_Click();
    platform::Surface* diagram = w_->micro()->picture2();
    const QImage before = diagram->image();
    QString opened;
    whenModal([&](QWidget* m) {
        // Whatever happens to the diagram while help is open, it comes back as it was.
        diagram->canvas().line(0, 0, 60, 400, QColor(255, 0, 255), platform::LineKind::FilledBox);
        if (auto* help = qobject_cast<HelpWindow*>(m)) {
            opened = QFileInfo(help->browser()->source().toLocalFile()).fileName();
            help->reject();
        } else if (auto* box = qobject_cast<QMessageBox*>(m)) {
            opened = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        }
    });
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Command7")), Qt::LeftButton);
    QCOMPARE(opened, shipped ? QStringLiteral("index.html") : QStringLiteral("Aide"));
    QCOMPARE(diagram->image(), before);
}

void TestButtonRow::printOpensConfimp() {
    const QString pdf = dir_->filePath(QStringLiteral("fiche.pdf"));
    w_->printer().setOutputFormat(QPrinter::PdfFormat);
    w_->printer().setOutputFileName(pdf);
    bool modal = false;
    whenModal([&](QWidget* m) {
        QCOMPARE(m->objectName(), QStringLiteral("confimp"));
        modal = m->isModal();
        // Twenty pixels below the main window's top.
        QCOMPARE(m->frameGeometry().top(), w_->frameGeometry().top() + 20);
        m->findChild<QCheckBox*>(QStringLiteral("Chec_1"))->setChecked(true);
        m->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    });
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Command10")), Qt::LeftButton);
    QVERIFY(modal);
    QVERIFY(QFile::exists(pdf));
    // The printer keeps its choice for the next print.
    QCOMPARE(w_->printer().outputFileName(), pdf);
}

QTEST_MAIN(TestButtonRow)
#include "tst_buttonrow.moc"

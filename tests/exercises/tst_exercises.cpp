#include "exercises/exercisefile.h"
#include "exercises/exercisemenu.h"
#include "exercises/fichexo.h"
#include "mainwindow/feuillep.h"
#include "platform/filelist.h"
#include "support/answerboxes.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <memory>

using exercises::Fichexo;

namespace {

using Boxes = AnswerBoxes;

QByteArray records(const QList<QByteArray>& texts) {
    QByteArray out;
    for (const QByteArray& t : texts) {
        QByteArray r(128, '\0');
        r[0] = static_cast<char>(t.size());
        r.replace(2, t.size(), t);
        out += r;
    }
    return out;
}

void store(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

const QByteArray Fourth = records({"TERVO", " 3", "  2,5", "  1,0", "0", "0", "1", "1"});
const QString Locked = QStringLiteral("Lecture impossible|Vérifier:\n- le nom du fichier,\n- "
                                      "l'état du lecteur.");

} // namespace

class TestExercises : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void preview_data();
    void preview();
    void folderWithoutExercises();
    void open_data();
    void open();
    void modificationQuestion_data();
    void modificationQuestion();
    void menuItemsGreyed();
    void handOverOpensOnce();
    void failures_data();
    void failures();
    void gettingStarted();

private:
    QString exos() const { return dir_->path() + QStringLiteral("/exos/"); }
    QString statementText() const { return w_->supertext()->toPlainText(); }
    QAction* item(const char* name) const {
        return w_->exerciseMenu()->optionexo()->findChild<QAction*>(QLatin1String(name));
    }
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestExercises::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    qputenv("THERMIVO_PROGRAM_FOLDER", dir_->path().toUtf8());
    QVERIFY(QDir().mkpath(exos()));
    store(exos() + QStringLiteral("enonce.rtf"), "{\\rtf1 Enonce un}");
    store(exos() + QStringLiteral("corr.rtf"), "{\\rtf1 Corrige un}");
    store(exos() + QStringLiteral("quatre.C10"), Fourth);
    w_ = std::make_unique<feuilleP>();
    w_->setScreenSizeOverride(QSize(1024, 768));
    w_->show();
    QVERIFY(QTest::qWaitForWindowExposed(w_.get()));
}

void TestExercises::cleanup() {
    w_->setQuietShutdown(true);
    w_->close();
    w_.reset();
    dir_.reset();
}

void TestExercises::preview_data() {
    QTest::addColumn<QList<QByteArray>>("file");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("lit");
    QTest::addColumn<QString>("topics");
    QTest::addColumn<QString>("title");
    QTest::newRow("corrected") << QList<QByteArray>{"enonce.rtf", "",        "corr.rtf", "",
                                                    "2",          "Energie", "  ",       "Liaisons",
                                                    "",           "",        "Le butane"}
                               << "Exercice corrigé" << 2 << "Energie\nLiaisons"
                               << "Le butane";
    QTest::newRow("config only") << QList<QByteArray>{"e", "", " ", "c.C10", " 3 "}
                                 << "Exercice corrigé" << 3 << ""
                                 << "";
    QTest::newRow("not corrected")
        << QList<QByteArray>{"e", "", " ", "", "9", "", "", "", "", "A", "Titre"} << "Non corrigé"
        << 3 << "A"
        << "Titre";
    QTest::newRow("no level") << QList<QByteArray>{"e"} << "Non corrigé" << 0 << ""
                              << "";
}

void TestExercises::preview() {
    QFETCH(QList<QByteArray>, file);
    QFETCH(QString, caption);
    QFETCH(int, lit);
    store(exos() + QStringLiteral("a.E31"), records(file));
    store(exos() + QStringLiteral("notes.txt"), "not an exercise");
    Fichexo window(*w_, exos());
    window.Form_Activate();
    QCOMPARE(window.file1()->listCount(), 1);
    QCOMPARE(window.fichierexo()->text(), exos() + QStringLiteral("a.E31"));
    QCOMPARE(window.findChild<QLabel*>(QStringLiteral("Label2"))->text(), caption);
    QCOMPARE(window.findChild<QLabel*>(QStringLiteral("Label3"))->text(), caption);
    const QImage on = window.findChild<QLabel*>(QStringLiteral("Imagalu"))->pixmap().toImage();
    const QImage off = window.findChild<QLabel*>(QStringLiteral("Imagenoir"))->pixmap().toImage();
    QVERIFY(on != off);
    for (int i = 0; i < 3; ++i) {
        const QImage mark =
            window.findChild<QLabel*>(QStringLiteral("Image4_%1").arg(i))->pixmap().toImage();
        QCOMPARE(mark, i < lit ? on : off);
    }
    QTEST(window.findChild<QPlainTextEdit*>(QStringLiteral("Text1"))->toPlainText(), "topics");
    QTEST(window.findChild<QLabel*>(QStringLiteral("titratexo"))->text(), "title");
    QVERIFY(window.findChild<QPushButton*>(QStringLiteral("ouvreur"))->isVisibleTo(&window));
    QVERIFY(!window.findChild<QLabel*>(QStringLiteral("intratro"))->isVisibleTo(&window));
    if (const QString shots = qEnvironmentVariable("THERMIVO_SNAPSHOT_DIR"); !shots.isEmpty())
        window.grab().save(shots + QStringLiteral("/fichexo_%1.png").arg(QTest::currentDataTag()));
}

void TestExercises::folderWithoutExercises() {
    store(exos() + QStringLiteral("notes.txt"), "no exercise here");
    Fichexo window(*w_, exos());
    window.Form_Activate();
    QCOMPARE(window.file1()->listCount(), 0);
    QCOMPARE(window.fichierexo()->text(), QString());
    QVERIFY(!window.findChild<QPushButton*>(QStringLiteral("ouvreur"))->isVisibleTo(&window));
    QVERIFY(window.findChild<QLabel*>(QStringLiteral("intratro"))->isVisibleTo(&window));
    QCOMPARE(window.findChild<QLabel*>(QStringLiteral("intratro"))->text(),
             QStringLiteral("Sélectionner un fichier"));
}

void TestExercises::open_data() {
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QByteArray>("correction");
    QTest::addColumn<int>("opened");
    QTest::addColumn<int>("reaction");
    QTest::newRow("with correction")
        << QByteArray("quatre.C10") << QByteArray("corr.rtf") << 1 << 4;
    QTest::newRow("blank config") << QByteArray("   ") << QByteArray("corr.rtf") << 1 << 1;
    QTest::newRow("no correction") << QByteArray("quatre.C10") << QByteArray("") << 0 << 4;
}

void TestExercises::open() {
    QFETCH(QByteArray, config);
    QFETCH(QByteArray, correction);
    QFETCH(int, opened);
    // An earlier exercise with a correction must not leave "Voir la correction" enabled.
    w_->state().ExerciseOpened = 1;
    const QString path = exos() + QStringLiteral("x.E31");
    store(path, records({"enonce.rtf", config, correction, "", "1"}));
    QVERIFY(w_->exerciseMenu()->openExercise(path));
    QCOMPARE(statementText(), QStringLiteral("Enonce un"));
    QCOMPARE(w_->fich()->text(), path);
    QCOMPARE(w_->state().ExerciseOpened, opened);
    QTEST(static_cast<int>(w_->context().reactionIndex()), "reaction");
    w_->exerciseMenu()->updateItems();
    QCOMPARE(item("opencor")->isEnabled(), opened == 1);
    QVERIFY(item("Closexo")->isEnabled());
    if (opened == 1) {
        w_->exerciseMenu()->opencor_Click();
        QCOMPARE(statementText(), QStringLiteral("Corrige un"));
    }
}

void TestExercises::modificationQuestion_data() {
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::newRow("OK") << QMessageBox::Ok;
    QTest::newRow("Cancel") << QMessageBox::Cancel;
}

void TestExercises::modificationQuestion() {
    QFETCH(QMessageBox::StandardButton, answer);
    const QString path = exos() + QStringLiteral("x.E31");
    store(path, records({"enonce.rtf", "", "corr.rtf"}));
    QVERIFY(w_->exerciseMenu()->openExercise(path));
    w_->supertext()->setPlainText(QStringLiteral("Edité"));
    QCOMPARE(w_->state().StatementModified, 1);
    Boxes boxes({answer});
    w_->exerciseMenu()->Closexo_Click();
    QCOMPARE(boxes.seen, QStringList{QStringLiteral(
                             "Abandon des données?|Attention: perte des modifications du texte.")});
    if (answer == QMessageBox::Cancel) {
        QCOMPARE(statementText(), QStringLiteral("Edité"));
        QCOMPARE(w_->fich()->text(), path);
        QCOMPARE(w_->state().StatementModified, 1);
    } else {
        QVERIFY(statementText() != QStringLiteral("Edité"));
        QCOMPARE(w_->fich()->text(), QString());
        QCOMPARE(w_->state().ExerciseOpened, 0);
        QCOMPARE(w_->state().StatementModified, 0);
    }
}

void TestExercises::menuItemsGreyed() {
    auto* btexo = w_->findChild<QPushButton*>(QStringLiteral("btexo"));
    QVERIFY(btexo->isEnabled());
    QStringList captions;
    for (QAction* a : w_->exerciseMenu()->optionexo()->actions())
        captions << (a->isSeparator() ? QStringLiteral("-") : a->objectName() + '=' + a->text());
    QCOMPARE(captions,
             (QStringList{"PRISENMAIN=Prise en main", "-",
                          "openexo=Ouvrir un exercice (énoncé + configuration)",
                          "opencor=Voir la correction", "-",
                          "savetexte=Enregistrer le contenu de la fenêtre exercice",
                          "opentexte=Retrouver un texte",
                          "imprimetexte=Imprimer le contenu de la fenêtre exercice", "-",
                          "Closexo=Fermer l'exercice", "-", "CreerExercice=Créer un exercice…"}));
    w_->btexo_Click();
    QVERIFY(w_->exerciseMenu()->optionexo()->isVisible());
    // Just under the button (the screen may push it sideways).
    QCOMPARE(w_->exerciseMenu()->optionexo()->pos().y(),
             w_->mapToGlobal(QPoint(btexo->x(), btexo->y() + btexo->height())).y());
    QVERIFY(!item("opencor")->isEnabled());
    QVERIFY(!item("Closexo")->isEnabled());
    w_->exerciseMenu()->optionexo()->close();
}

void TestExercises::handOverOpensOnce() {
    store(exos() + QStringLiteral("h.E31"), records({"enonce.rtf", "quatre.C10", "corr.rtf"}));
    {
        QFile f(dir_->path() + QStringLiteral("/TEMPKN.TMP"));
        QVERIFY(f.open(QIODevice::ReadWrite));
        f.seek(30 * 128);
        f.write(records({"exos\\h.E31"}));
    }
    w_->Form_Activate();
    QCOMPARE(statementText(), QStringLiteral("Enonce un"));
    QCOMPARE(w_->fich()->text(), exos() + QStringLiteral("h.E31"));
    QCOMPARE(w_->state().ExerciseOpened, 1);
    QCOMPARE(static_cast<int>(w_->context().reactionIndex()), 4); // from the exercise's folder
    w_->supertext()->setPlainText(QStringLiteral("Edité"));
    w_->Form_Activate();
    QCOMPARE(statementText(), QStringLiteral("Edité"));
}

void TestExercises::failures_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing statement")
        << records({"absent.rtf"})
        << QStringLiteral("Fichier absent|Le fichier %1absent.rtf est introuvable");
    QTest::newRow("blank statement")
        << records({" "}) << QStringLiteral("Fichier absent|Le fichier %1 est introuvable");
    QTest::newRow("broken record") << QByteArray("\xc8\x00 trop long", 11) << Locked;
}

void TestExercises::failures() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString path = exos() + QStringLiteral("bad.E31");
    store(path, bytes);
    const QString before = statementText();
    Boxes boxes;
    QVERIFY(!w_->exerciseMenu()->openExercise(path));
    QCOMPARE(boxes.seen,
             QStringList{message.contains(QLatin1String("%1")) ? message.arg(exos()) : message});
    QCOMPARE(statementText(), before);
    QCOMPARE(w_->fich()->text(), QString());
    QCOMPARE(w_->state().ExerciseOpened, 0);
}

void TestExercises::gettingStarted() {
    Boxes boxes;
    w_->exerciseMenu()->PRISENMAIN_Click();
    QCOMPARE(boxes.seen,
             QStringList{QStringLiteral("Erreur lors du chargement|Fichier introuvable. Revoir "
                                        "l'installation du logiciel.")});
    store(dir_->path() + QStringLiteral("/tervox.PEM"),
          records({"exos/enonce.rtf", "exos/quatre.C10", "exos/corr.rtf"}));
    w_->state().ExerciseOpened = 1;
    w_->exerciseMenu()->PRISENMAIN_Click();
    QCOMPARE(statementText(), QStringLiteral("Enonce un"));
    QVERIFY(w_->fich()->text().endsWith(QLatin1String("tervox.PEM")));
    QCOMPARE(w_->state().ExerciseOpened, 0);
    QCOMPARE(static_cast<int>(w_->context().reactionIndex()), 4);
}

QTEST_MAIN(TestExercises)
#include "tst_exercises.moc"

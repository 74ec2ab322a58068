#include "chemistry/catalogue.h"
#include "configurations/configurationfile.h"
#include "configurations/configurations.h"
#include "exercises/creerexo.h"
#include "exercises/exercisefile.h"
#include "exercises/exercisemenu.h"
#include "exercises/fichexo.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "mainwindow/feuillep.h"
#include "platform/filelist.h"
#include "platform/richtext.h"
#include "support/answerboxes.h"
#include "support/mainwindowfixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextEdit>
#include <functional>

using exercises::CreerExo;
using exercises::Fichexo;

namespace {

QByteArray contentOf(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void store(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

// The folder's files as "name=content" (folders as "name/").
QStringList folderContent(const QString& folder) {
    QStringList out;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& e : entries)
        out << (e.isDir() ? e.fileName() + QLatin1Char('/')
                          : e.fileName() + QLatin1Char('=') +
                                QString::fromLatin1(contentOf(e.filePath()).toHex()));
    return out;
}

// The reaction an exercise's title is about, found by the names the catalogue gives the fuel
// and the oxidant in the reaction list ("Combustion complète du méthane dans le dioxygène"):
// the title's subject (before the no-break space and ":") starts with the fuel; when two
// reactions burn that fuel, the subject also names the oxidant.
int reactionNamedBy(const QString& title) {
    static const QRegularExpression names(
        QStringLiteral("(?:du |de l'|de la )(\\S+) dans le (\\S+)$"));
    const QStringList subject =
        title.section(QChar(0x00A0), 0, 0).toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (subject.isEmpty())
        return 0;
    QList<int> burning;
    QList<int> both;
    for (int i = 1; i <= chemistry::ReactionCount; ++i) {
        const QRegularExpressionMatch m = names.match(chemistry::reaction(i).label);
        if (!m.hasMatch() || m.captured(1) != subject.first())
            continue;
        burning << i;
        if (subject.contains(m.captured(2)))
            both << i;
    }
    if (burning.size() == 1)
        return burning.first();
    return both.size() == 1 ? both.first() : 0;
}

} // namespace

class TestAuthoring : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void titleNamesReaction_data();
    void titleNamesReaction();
    void roundTrip_data();
    void roundTrip();
    void overwrite_data();
    void overwrite();
    void refused_data();
    void refused();
    void writeFailure();
    void keyboard_data();
    void keyboard();
    void browseButtons();
    void shippedExercises_data();
    void shippedExercises();

private:
    // Opens the authoring window from the exercise menu; `drive` runs inside it.
    void runCreer(const std::function<void(CreerExo&)>& drive);
    // Opens the browser from the exercise menu; `drive` runs inside it.
    void runBrowser(const std::function<void(Fichexo&)>& drive);
    // Fills the window: "Name=value" for line edits, "EnonceActuel=0" for the check box,
    // "Niveau=2" for the level; %src stands for the source folder.
    void fill(CreerExo& d, const QStringList& edits) const;
    void setSituation(int reaction, const QString& a, const QString& b, bool check2);
    QAction* item(const char* name) const {
        return w_->exerciseMenu()->optionexo()->findChild<QAction*>(QLatin1String(name));
    }
    QString out() const { return dir_->path() + QStringLiteral("/exercices/"); }
    QString src() const { return dir_->path() + QStringLiteral("/sources/"); }

    QString shipped_;
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestAuthoring::initTestCase() {
    // ctest points the program folder at the build's copy of data/; each test then gets a
    // fresh one of its own.
    shipped_ = qEnvironmentVariable("THERMIVO_PROGRAM_FOLDER");
}

void TestAuthoring::init() {
    QVERIFY(openMainWindow(dir_, w_));
    QVERIFY(QDir().mkpath(out()));
    QVERIFY(QDir().mkpath(src()));
    store(src() + QStringLiteral("corr.rtf"), "{\\rtf1\\ansi Corrig\\'e9 : 890 kJ}");
    store(src() + QStringLiteral("autre.rtf"), "{\\rtf1\\ansi Autre \\'e9nonc\\'e9}");
    configurations::ConfigurationData c;
    c.listIndex = 5;
    c.amounts = {QStringLiteral("  0,5"), QStringLiteral("  3,0")};
    c.checked = {true, false, true};
    c.isolated = true;
    store(src() + QStringLiteral("corr.C10"), *configurations::encodeConfiguration(c));
    store(src() + QStringLiteral("texte.txt"), "pas du RTF");
    store(src() + QStringLiteral("faux.C10"), "TERVA");
}

void TestAuthoring::cleanup() {
    closeMainWindow(dir_, w_);
}

void TestAuthoring::runCreer(const std::function<void(CreerExo&)>& drive) {
    bool ran = false;
    QTimer::singleShot(0, w_.get(), [&] {
        auto* d = qobject_cast<CreerExo*>(QApplication::activeModalWidget());
        if (d) {
            ran = true;
            drive(*d);
            if (d->isVisible())
                d->reject();
        }
    });
    item("CreerExercice")->trigger();
    QVERIFY(ran);
}

void TestAuthoring::runBrowser(const std::function<void(Fichexo&)>& drive) {
    bool ran = false;
    QTimer::singleShot(0, w_.get(), [&] {
        auto* f = qobject_cast<Fichexo*>(QApplication::activeModalWidget());
        if (f) {
            ran = true;
            drive(*f);
            if (f->isVisible())
                f->reject();
        }
    });
    item("openexo")->trigger();
    QVERIFY(ran);
}

void TestAuthoring::fill(CreerExo& d, const QStringList& edits) const {
    for (const QString& e : edits) {
        const QString name = e.section(QLatin1Char('='), 0, 0);
        QString value = e.section(QLatin1Char('='), 1);
        value.replace(QLatin1String("%src"), src());
        if (auto* box = d.findChild<QCheckBox*>(name))
            box->setChecked(value == QLatin1String("1"));
        else if (auto* combo = d.findChild<QComboBox*>(name))
            combo->setCurrentIndex(combo->findData(value.toInt()));
        else if (auto* edit = d.findChild<QLineEdit*>(name))
            edit->setText(value);
        else
            QFAIL(qPrintable(QStringLiteral("no control ") + name));
    }
}

void TestAuthoring::setSituation(int reaction, const QString& a, const QString& b, bool check2) {
    w_->selectReaction(reaction);
    w_->macro()->text1(0)->setText(a);
    w_->macro()->text1(1)->setText(b);
    w_->context().Check1[2]->setChecked(check2);
}

void TestAuthoring::titleNamesReaction_data() {
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("reaction");
    QTest::newRow("methane") << QStringLiteral("Méthane\u00a0: graphe") << 1;
    QTest::newRow("not methanol") << QStringLiteral("Méthanol\u00a0: bilan") << 7;
    QTest::newRow("capital accent") << QStringLiteral("Éthane\u00a0: limitant\u00a0?") << 2;
    QTest::newRow("oxidant decides") << QStringLiteral("Dihydrogène et dichlore\u00a0: bilan") << 6;
    QTest::newRow("oxidant missing") << QStringLiteral("Dihydrogène\u00a0: bilan") << 0;
    QTest::newRow("unknown") << QStringLiteral("Octane\u00a0: bilan") << 0;
}

// The helper the shipped-exercise check relies on.
void TestAuthoring::titleNamesReaction() {
    QFETCH(QString, title);
    QTEST(reactionNamedBy(title), "reaction");
}

void TestAuthoring::roundTrip_data() {
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("topics");
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QStringList>("written");
    QTest::addColumn<QString>("caption");
    QTest::newRow("with correction")
        << QStringLiteral("Butane\u00a0: système isolé\u00a0?") << 3
        << QStringList{"Énergie de liaison", "", "Réactif limitant", "", "Œuvre à 5 €"}
        << QStringList{"TexteCorrection=%srccorr.rtf", "SituationCorrection=%srccorr.C10"}
        << QStringList{"essai.E31", "essai_correction.C10", "essai_correction.rtf",
                       "essai_enonce.C10", "essai_enonce.rtf"}
        << "Exercice corrigé";
    QTest::newRow("without correction")
        << QStringLiteral("Propane") << 1 << QStringList{"", "", "", "", ""} << QStringList{}
        << QStringList{"essai.E31", "essai_enonce.C10", "essai_enonce.rtf"} << "Non corrigé";
    QTest::newRow("correction text only")
        << QString(126, QChar(0xE9)) << 2 << QStringList{"", "", "", "", QString(126, 'x')}
        << QStringList{"TexteCorrection=%srccorr.rtf"}
        << QStringList{"essai.E31", "essai_correction.rtf", "essai_enonce.C10", "essai_enonce.rtf"}
        << "Exercice corrigé";
    QTest::newRow("statement and situation from files")
        << QStringLiteral("Chlorure") << 2 << QStringList{"Un", "", "", "", ""}
        << QStringList{"EnonceActuel=0", "TexteEnonce=%srcautre.rtf",
                       "SituationEnonce=%srccorr.C10"}
        << QStringList{"essai.E31", "essai_enonce.C10", "essai_enonce.rtf"} << "Non corrigé";
    QTest::newRow("statement from a file, no situation")
        << QStringLiteral("Texte seul") << 2 << QStringList{"", "", "", "", ""}
        << QStringList{"EnonceActuel=0", "TexteEnonce=%srcautre.rtf",
                       "TexteCorrection=%srccorr.rtf"}
        << QStringList{"essai.E31", "essai_correction.rtf", "essai_enonce.rtf"}
        << "Exercice corrigé";
}

void TestAuthoring::roundTrip() {
    QFETCH(QString, title);
    QFETCH(int, level);
    QFETCH(QStringList, topics);
    QFETCH(QStringList, edits);
    QFETCH(QStringList, written);
    QFETCH(QString, caption);
    setSituation(4, QStringLiteral("  2,5"), QStringLiteral("  1,0"), true);
    w_->supertext()->setHtml(QStringLiteral(
        "<p>Le <b>butane</b> C<sub>4</sub>H<sub>10</sub> brûle\u00a0: 2 658 kJ.</p><p>Suite</p>"));
    w_->state().StatementModified = 0;
    const QString statement = w_->supertext()->toPlainText();
    const QByteArray statementRtf = platform::toRtf(*w_->supertext()->document());
    const configurations::ConfigurationData situation =
        w_->configurations()->currentConfiguration();

    AnswerBoxes boxes;
    runCreer([&](CreerExo& d) {
        QStringList all{QStringLiteral("Titre=") + title, QStringLiteral("Niveau=%1").arg(level),
                        QStringLiteral("Dossier=") + out(), QStringLiteral("NomFichier=essai")};
        for (int i = 0; i < 5; ++i)
            all << QStringLiteral("Notion_%1=").arg(i) + topics[i];
        fill(d, all + edits);
        d.findChild<QPushButton*>(QStringLiteral("Creer"))->click();
        QVERIFY(!d.isVisible());
        QCOMPARE(d.created(), out() + QStringLiteral("essai.E31"));
    });
    QCOMPARE(boxes.seen, QStringList());
    QCOMPARE(QDir(out()).entryList(QDir::Files, QDir::Name), written);
    if (written.contains(QStringLiteral("essai_correction.rtf")))
        QCOMPARE(contentOf(out() + QStringLiteral("essai_correction.rtf")),
                 contentOf(src() + QStringLiteral("corr.rtf")));

    // Another situation and text, so that opening has something to restore.
    setSituation(8, QStringLiteral("  9,0"), QStringLiteral("  9,0"), false);
    w_->supertext()->setPlainText(QStringLiteral("Autre chose"));
    w_->state().StatementModified = 0;
    const configurations::ConfigurationData teacherFile =
        *configurations::decodeConfiguration(contentOf(src() + QStringLiteral("corr.C10")));
    const bool fromFiles = edits.contains(QStringLiteral("EnonceActuel=0"));
    const bool withSituation = written.contains(QStringLiteral("essai_enonce.C10"));
    const configurations::ConfigurationData opened =
        !fromFiles      ? situation
        : withSituation ? teacherFile
                        : w_->configurations()->currentConfiguration();

    QStringList nonBlank;
    for (const QString& t : topics)
        if (!t.isEmpty())
            nonBlank << t;
    runBrowser([&](Fichexo& f) {
        QCOMPARE(f.fichierexo()->text(), out() + QStringLiteral("essai.E31"));
        QCOMPARE(f.findChild<QLabel*>(QStringLiteral("titratexo"))->text(), title);
        QCOMPARE(f.findChild<QPlainTextEdit*>(QStringLiteral("Text1"))->toPlainText(),
                 nonBlank.join(QLatin1Char('\n')));
        QCOMPARE(f.findChild<QLabel*>(QStringLiteral("Label2"))->text(), caption);
        const QImage on = f.findChild<QLabel*>(QStringLiteral("Imagalu"))->pixmap().toImage();
        for (int i = 0; i < 3; ++i) {
            const QImage mark =
                f.findChild<QLabel*>(QStringLiteral("Image4_%1").arg(i))->pixmap().toImage();
            QCOMPARE(mark == on, i < level);
        }
        QTest::keyClick(f.file1(), Qt::Key_Return);
    });
    if (fromFiles) {
        QCOMPARE(w_->supertext()->toPlainText(), QStringLiteral("Autre énoncé"));
        QCOMPARE(contentOf(out() + QStringLiteral("essai_enonce.rtf")),
                 contentOf(src() + QStringLiteral("autre.rtf")));
    } else {
        QCOMPARE(w_->supertext()->toPlainText(), statement);
        QCOMPARE(platform::toRtf(*w_->supertext()->document()), statementRtf);
    }
    QCOMPARE(w_->configurations()->currentConfiguration(), opened);
    QCOMPARE(w_->context().Combo1->currentIndex(), static_cast<int>(opened.listIndex));
    QCOMPARE(w_->fich()->text(), out() + QStringLiteral("essai.E31"));
    const bool corrected = caption == QStringLiteral("Exercice corrigé");
    QCOMPARE(w_->state().ExerciseOpened, corrected ? 1 : 0);
    if (!corrected)
        return;
    w_->exerciseMenu()->opencor_Click();
    QCOMPARE(w_->supertext()->toPlainText(), QStringLiteral("Corrigé : 890 kJ"));
    if (written.contains(QStringLiteral("essai_correction.C10")))
        QCOMPARE(w_->configurations()->currentConfiguration(),
                 *configurations::decodeConfiguration(contentOf(src() + "corr.C10")));
    else
        QCOMPARE(w_->configurations()->currentConfiguration(), opened);
}

void TestAuthoring::overwrite_data() {
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("question");
    const QString one = QStringLiteral("Ecraser le fichier?|Le fichier essai.E31 existe "
                                       "déjà.\nEcraser l'ancien?");
    const QString all = QStringLiteral(
        "Ecraser le fichier?|Les fichiers essai_enonce.rtf, essai_enonce.C10, essai.E31 "
        "existent déjà.\nEcraser les anciens?");
    QTest::newRow("No keeps every file") << QMessageBox::No << "essai" << all;
    QTest::newRow("Yes replaces them") << QMessageBox::Yes << "essai" << all;
    QTest::newRow("typed extension, one file") << QMessageBox::No << "essai.e31" << one;
}

void TestAuthoring::overwrite() {
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(QString, name);
    QFETCH(QString, question);
    if (question.contains(QLatin1String("Les fichiers"))) {
        runCreer([&](CreerExo& d) {
            fill(d, {"Titre=Premier", "Dossier=" + out(), "NomFichier=essai"});
            d.findChild<QPushButton*>(QStringLiteral("Creer"))->click();
        });
    } else {
        store(out() + QStringLiteral("essai.E31"), "ancien");
    }
    const QStringList before = folderContent(out());
    QVERIFY(!before.isEmpty());
    setSituation(2, QStringLiteral("  4,0"), QStringLiteral("  4,0"), false);
    w_->supertext()->setPlainText(QStringLiteral("Nouveau"));
    AnswerBoxes boxes({answer});
    runCreer([&](CreerExo& d) {
        fill(d, {"Titre=Second", "Dossier=" + out(), "NomFichier=" + name});
        d.findChild<QPushButton*>(QStringLiteral("Creer"))->click();
        QCOMPARE(d.isVisible(), answer == QMessageBox::No); // No: back to the window
    });
    QCOMPARE(boxes.seen, QStringList{question});
    if (answer == QMessageBox::No) {
        QCOMPARE(folderContent(out()), before);
        return;
    }
    const exercises::ExerciseRead read = exercises::readExerciseFile(
        out() + QStringLiteral("essai.E31"), exercises::ExerciseRecords::Preview);
    QCOMPARE(read.file.title, QStringLiteral("Second"));
    QCOMPARE(
        configurations::decodeConfiguration(contentOf(out() + QStringLiteral("essai_enonce.C10")))
            ->listIndex,
        1);
}

void TestAuthoring::refused_data() {
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("message");
    auto row = [](const char* tag, const QStringList& edits, const QString& field,
                  const QString& message) { QTest::newRow(tag) << edits << field << message; };
    const QString cannot =
        QStringLiteral(" ne peut pas être enregistré dans un fichier d'exercice.");
    row("blank title", {"Titre=   "}, "Titre", "Titre manquant|Donner un titre à l'exercice.");
    row("title too long", {"Titre=" + QString(127, QChar(0xE9))}, "Titre",
        "Texte trop long|Le titre ne doit pas dépasser 126 caractères.");
    row("title with a snowman", {"Titre=Froid \u2603"}, "Titre",
        "Caractère non valide|Le caractère « \u2603 » du titre" + cannot);
    row("arrow in the third topic", {"Notion_0=a", "Notion_2=b \u2192 c"}, "Notion_2",
        "Caractère non valide|Le caractère « \u2192 » de la notion n° 3" + cannot);
    row("fifth topic too long, blanks above", {"Notion_4=" + QString(127, 'x')}, "Notion_4",
        "Texte trop long|La notion n° 5 ne doit pas dépasser 126 caractères.");
    row("no name", {"NomFichier= "}, "NomFichier",
        "Nom manquant|Donner un nom au fichier de l'exercice.");
    const QString badName = QStringLiteral("Nom non valide|Le nom du fichier ne doit pas "
                                           "commencer par un point ni contenir l'un des "
                                           "caractères \\ / : * ? \" < > |");
    row("slash in the name", {"NomFichier=a/b"}, "NomFichier", badName);
    row("colon in the name", {"NomFichier=a:b"}, "NomFichier", badName);
    row("hidden name", {"NomFichier=.cache"}, "NomFichier", badName);
    row("name too long", {"NomFichier=" + QString(112, 'n')}, "NomFichier",
        "Texte trop long|Le nom du fichier ne doit pas dépasser 111 caractères.");
    row("name with a snowman", {"NomFichier=exo\u2603"}, "NomFichier",
        "Caractère non valide|Le caractère « \u2603 » du nom du fichier" + cannot);
    row("missing folder", {"Dossier=/nulle/part"}, "Dossier",
        "Dossier introuvable|Le dossier « /nulle/part » n'existe pas.");
    row("missing correction", {"TexteCorrection=%srcabsent.rtf"}, "TexteCorrection",
        "Fichier absent|Le fichier %srcabsent.rtf est introuvable");
    row("correction not RTF", {"TexteCorrection=%srctexte.txt"}, "TexteCorrection",
        "Fichier non valide|Le fichier %srctexte.txt n'est pas un texte au format RTF");
    row("correction situation not a configuration", {"SituationCorrection=%srcfaux.C10"},
        "SituationCorrection",
        "Fichier non valide|Le fichier %srcfaux.C10 ne correspond pas à cette application");
    row("statement from files, none given", {"EnonceActuel=0"}, "TexteEnonce",
        "Énoncé manquant|Choisir le texte de l'énoncé (fichier RTF).");
    row("statement situation missing",
        {"EnonceActuel=0", "TexteEnonce=%srcautre.rtf", "SituationEnonce=%srcabsent.C10"},
        "SituationEnonce", "Fichier absent|Le fichier %srcabsent.C10 est introuvable");
}

void TestAuthoring::refused() {
    QFETCH(QStringList, edits);
    QFETCH(QString, field);
    QFETCH(QString, message);
    message.replace(QLatin1String("%src"), src());
    AnswerBoxes boxes;
    runCreer([&](CreerExo& d) {
        fill(d, QStringList{"Titre=Titre", "Dossier=" + out(), "NomFichier=essai"} + edits);
        d.findChild<QPushButton*>(QStringLiteral("Creer"))->click();
        QVERIFY(d.isVisible());
        QCOMPARE(d.created(), QString());
        QCOMPARE(d.focusWidget()->objectName(), field);
    });
    QCOMPARE(boxes.seen, QStringList{message});
    QCOMPARE(folderContent(out()), QStringList());
}

void TestAuthoring::writeFailure() {
    // A folder where the situation's file would go: the files are written beside their places
    // first, so nothing at all replaces or adds to what the folder held.
    QVERIFY(QDir().mkpath(out() + QStringLiteral("essai_enonce.C10")));
    AnswerBoxes boxes({QMessageBox::Yes});
    runCreer([&](CreerExo& d) {
        fill(d, {"Titre=Titre", "Dossier=" + out(), "NomFichier=essai"});
        d.findChild<QPushButton*>(QStringLiteral("Creer"))->click();
        QVERIFY(d.isVisible());
    });
    QCOMPARE(boxes.seen,
             (QStringList{QStringLiteral("Ecraser le fichier?|Le fichier essai_enonce.C10 "
                                         "existe déjà.\nEcraser l'ancien?"),
                          QStringLiteral("Enregistrement impossible|Ecriture impossible sur "
                                         "disque\n") +
                              out() + QStringLiteral("essai_enonce.C10")}));
    QCOMPARE(folderContent(out()), QStringList{"essai_enonce.C10/"});
}

void TestAuthoring::keyboard_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("written");
    QTest::newRow("Enter creates") << int(Qt::Key_Return) << true;
    QTest::newRow("keypad Enter creates") << int(Qt::Key_Enter) << true;
    QTest::newRow("Escape cancels") << int(Qt::Key_Escape) << false;
}

void TestAuthoring::keyboard() {
    QFETCH(int, key);
    QFETCH(bool, written);
    runCreer([&](CreerExo& d) {
        QCOMPARE(d.focusWidget()->objectName(), QStringLiteral("Titre"));
        fill(d, {"Dossier=" + out(), "NomFichier=clavier"});
        QTest::keyClicks(d.focusWidget(), QStringLiteral("Au clavier"));
        // Tab walks down the window: the level, then the first topic line.
        QTest::keyClick(d.focusWidget(), Qt::Key_Tab);
        QCOMPARE(d.focusWidget()->objectName(), QStringLiteral("Niveau"));
        QTest::keyClick(d.focusWidget(), Qt::Key_Down);
        QTest::keyClick(d.focusWidget(), Qt::Key_Tab);
        QCOMPARE(d.focusWidget()->objectName(), QStringLiteral("Notion_0"));
        QTest::keyClick(d.focusWidget(), static_cast<Qt::Key>(key));
        QCOMPARE(d.isVisible(), false);
        QCOMPARE(d.result(), written ? int(QDialog::Accepted) : int(QDialog::Rejected));
    });
    QCOMPARE(QFileInfo::exists(out() + QStringLiteral("clavier.E31")), written);
    if (written) {
        const exercises::ExerciseRead read = exercises::readExerciseFile(
            out() + QStringLiteral("clavier.E31"), exercises::ExerciseRecords::Preview);
        QCOMPARE(read.file.title, QStringLiteral("Au clavier"));
        QCOMPARE(read.file.level, 2);
    }
}

void TestAuthoring::browseButtons() {
    QStringList asked;
    runCreer([&](CreerExo& d) {
        d.setFileChooser([&](const QString& kind) {
            asked << kind;
            return kind == QLatin1String("Dossier") ? out() : QString();
        });
        d.findChild<QLineEdit*>(QStringLiteral("Dossier"))->clear();
        d.findChild<QLineEdit*>(QStringLiteral("TexteCorrection"))->setText(QStringLiteral("x"));
        d.findChild<QPushButton*>(QStringLiteral("ParcourirDossier"))->click();
        d.findChild<QPushButton*>(QStringLiteral("ParcourirTexteCorrection"))->click();
        QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("Dossier"))->text(),
                 QDir::toNativeSeparators(out()));
        // Cancelling a file dialog keeps what was there.
        QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("TexteCorrection"))->text(),
                 QStringLiteral("x"));
        // The statement's own files count only when the situation is not the statement.
        QVERIFY(!d.findChild<QLineEdit*>(QStringLiteral("TexteEnonce"))->isEnabled());
        d.findChild<QCheckBox*>(QStringLiteral("EnonceActuel"))->click();
        QVERIFY(d.findChild<QLineEdit*>(QStringLiteral("TexteEnonce"))->isEnabled());
    });
    QCOMPARE(asked, (QStringList{"Dossier", "TexteCorrection"}));
}

void TestAuthoring::shippedExercises_data() {
    QTest::addColumn<QString>("name");
    const QStringList names =
        QDir(shipped_ + QStringLiteral("/exercices")).entryList({"*.E31"}, QDir::Files);
    QVERIFY(!names.isEmpty());
    for (const QString& n : names)
        QTest::newRow(qPrintable(n)) << n;
}

void TestAuthoring::shippedExercises() {
    QFETCH(QString, name);
    // The shipped folder, copied where the browser opens.
    const QDir from(shipped_ + QStringLiteral("/exercices"));
    for (const QString& f : from.entryList(QDir::Files))
        QVERIFY(QFile::copy(from.filePath(f), out() + f));
    const exercises::ExerciseRead read =
        exercises::readExerciseFile(out() + name, exercises::ExerciseRecords::Preview);
    const exercises::ExerciseRead names =
        exercises::readExerciseFile(out() + name, exercises::ExerciseRecords::Statement);
    QVERIFY(read.ok && names.ok);
    const int reaction = reactionNamedBy(read.file.title);
    QVERIFY2(reaction > 0, qPrintable(read.file.title));
    // Start away from it, so that the configuration has to choose it.
    w_->selectReaction(reaction % chemistry::ReactionCount + 1);

    runBrowser([&](Fichexo& f) {
        platform::FileList* list = f.file1();
        int row = -1;
        for (int i = 0; i < list->listCount(); ++i)
            if (list->list(i) == name)
                row = i;
        QVERIFY(row >= 0);
        list->setListIndex(row);
        emit list->Click();
        QCOMPARE(f.findChild<QLabel*>(QStringLiteral("titratexo"))->text(), read.file.title);
        QTest::keyClick(list, Qt::Key_Return);
    });
    QCOMPARE(w_->fich()->text(), out() + name);

    QTextDocument expected;
    platform::setRtf(expected, contentOf(out() + names.file.statement));
    QVERIFY(!expected.toPlainText().trimmed().isEmpty());
    QCOMPARE(w_->supertext()->toPlainText(), expected.toPlainText());
    const std::optional<configurations::ConfigurationData> config =
        configurations::decodeConfiguration(contentOf(out() + names.file.statementConfig));
    QVERIFY(config);
    QCOMPARE(w_->configurations()->currentConfiguration(), *config);
    QCOMPARE(w_->context().Combo1->currentIndex(), reaction - 1);
}

QTEST_MAIN(TestAuthoring)
#include "tst_authoring.moc"

#include "configurations/configurations.h"
#include "configurations/enregistrer.h"
#include "configurations/ouvrir.h"
#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "micro/micropanel.h"
#include "platform/dirlist.h"
#include "platform/filelist.h"
#include "support/answerboxes.h"
#include "support/mainwindowfixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QUrl>
#include <csignal>
#include <memory>
#include <sys/resource.h>

using configurations::enregistrer;
using configurations::ouvrir;

namespace {

const QString Lecture =
    QStringLiteral("Erreur lors du chargement du fichier|Lecture impossible sur disque");
const QString Invalid =
    QStringLiteral("Fichier non valide|Ce fichier ne correspond pas à cette application");
const QString NoFile =
    QStringLiteral("impossible d'ouvrir ce fichier|Nom de fichier incorrect ou chemin non valide");
const QString NoName =
    QStringLiteral("Enregistrement impossible|Il faut donner un nom au fichier!");
const QString Overwrite = QStringLiteral("Ce fichier existe déjà!|Ecraser le fichier existant?");
const QString CannotWrite =
    QStringLiteral("Enregistrement impossible|Ecriture impossible sur disque");

const QByteArray Folder = "<folder>";   // a folder stands where the file should be
const QByteArray Missing = "<missing>"; // nothing there

using Boxes = AnswerBoxes;

QByteArray record(const QByteArray& text) {
    QByteArray r(128, '\0');
    r[0] = static_cast<char>(text.size());
    r.replace(2, text.size(), text);
    return r;
}

QByteArray records(const QList<QByteArray>& texts) {
    QByteArray out;
    for (const QByteArray& t : texts)
        out += record(t);
    return out;
}

// The fourth reaction, 2,5 and 1,0, only the third box, the isolated system.
const QByteArray Butane = records({"TERVO", " 3", "  2,5", "  1,0", "0", "0", "1", "1"});
const QString ButaneState = QStringLiteral("3|  2,5|  1,0|001|isolated");

void store(const QString& path, const QByteArray& bytes) {
    if (bytes == Missing)
        return;
    if (bytes == Folder) {
        QVERIFY(QDir().mkpath(path));
        return;
    }
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

QByteArray load(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : Missing;
}

// Restores the current folder that a test changes.
struct CurrentFolderGuard {
    QString saved = QDir::currentPath();
    ~CurrentFolderGuard() { QDir::setCurrent(saved); }
};

} // namespace

class TestConfigurations : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void saveAndReload_data();
    void saveAndReload();
    void corruptFiles_data();
    void corruptFiles();
    void isolatedZeroLeavesNeitherOption();
    void saveDialogNames_data();
    void saveDialogNames();
    void saveDialogFileByteForByte();
    void doubleClickOverwritesAfterYes();
    void folderChangeKeepsBareName();
    void saveDialogLeavesReadOnlyFolder();
    void failedSaveKeepsOldFile_data();
    void failedSaveKeepsOldFile();
    void openDialog_data();
    void openDialog();
    void openDialogFileClick();
    void ouvrirButtonStopsAnimationsFirst();
    void enregistrerButtonAndEnter();
    void relativePathFromCurrentFolder();
    void droppedFile_data();
    void droppedFile();

private:
    QString stateOf() const;
    void setState(const QString& state);
    QString path(const QString& name) const { return dir_->filePath(name); }

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestConfigurations::init() {
    QVERIFY(openMainWindow(dir_, w_));
}

void TestConfigurations::cleanup() {
    closeMainWindow(dir_, w_);
}

// "list position|amount 0|amount 1|three boxes|option": the situation a configuration holds.
QString TestConfigurations::stateOf() const {
    MainContext& ctx = w_->context();
    QString boxes;
    for (const QCheckBox* c : ctx.Check1)
        boxes += c->isChecked() ? QLatin1Char('1') : QLatin1Char('0');
    const bool isolated = ctx.Option1[0]->isChecked();
    const bool open = ctx.Option1[1]->isChecked();
    const QString option = isolated && open ? QStringLiteral("both")
                           : isolated       ? QStringLiteral("isolated")
                           : open           ? QStringLiteral("open")
                                            : QStringLiteral("neither");
    return QStringLiteral("%1|%2|%3|%4|%5")
        .arg(ctx.Combo1->currentIndex())
        .arg(w_->macro()->text1(0)->text(), w_->macro()->text1(1)->text(), boxes, option);
}

void TestConfigurations::setState(const QString& state) {
    const QStringList p = state.split(QLatin1Char('|'));
    w_->selectReaction(p[0].toInt() + 1);
    w_->macro()->text1(0)->setText(p[1]);
    w_->macro()->text1(1)->setText(p[2]);
    for (int i = 0; i < 3; ++i)
        w_->context().Check1[static_cast<std::size_t>(i)]->setChecked(p[3][i] == QLatin1Char('1'));
    w_->context().Option1[p[4] == QLatin1String("isolated") ? 0 : 1]->setChecked(true);
    QCOMPARE(stateOf(), state);
}

void TestConfigurations::saveAndReload_data() {
    QTest::addColumn<QString>("state");
    QTest::newRow("fourth reaction, isolated") << ButaneState;
    QTest::newRow("start-up values, open system") << "0|  1,0|  1,0|000|open";
    QTest::newRow("last reaction, group blank, every box") << "7| 100 000,0|  0,125|111|open";
    QTest::newRow("hydrogen, isolated") << "4|  2,0|  1,0|100|isolated";
}

void TestConfigurations::saveAndReload() {
    QFETCH(QString, state);
    setState(state);
    const QString file = path(QStringLiteral("situation.C10"));
    w_->state().ConfigFilePath = file;
    Boxes boxes;
    QVERIFY(w_->configurations()->writeConfiguration());
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + file);

    setState(QStringLiteral("1|  7,0|  8,0|010|open"));
    w_->setWindowTitle(QStringLiteral("Thermivo"));
    w_->configurations()->LoadConfiguration();
    QCOMPARE(boxes.seen, QStringList());
    QCOMPARE(stateOf(), state);
    QCOMPARE(w_->context().Combo1->property("Tag").toString(),
             QString::number(state.section(QLatin1Char('|'), 0, 0).toInt() + 1));
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + file);
}

void TestConfigurations::corruptFiles_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("throughLoader"); // else as the open dialog's OUVRIR does
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("after"); // from "1|  3,0|  4,0|110|open"
    QTest::addColumn<bool>("caption");

    const QString start = QStringLiteral("1|  3,0|  4,0|110|open");
    QByteArray longRecord3 = Butane;
    longRecord3[2 * 128] = static_cast<char>(200);
    QByteArray hugeRecord4 = Butane;
    hugeRecord4[3 * 128] = static_cast<char>(0xFF);
    hugeRecord4[3 * 128 + 1] = static_cast<char>(0xFF);
    QByteArray record1Over126 =
        QByteArray::fromHex("7f00") + QByteArray(126, 'T') + Butane.mid(128);

    QTest::newRow("valid") << Butane << false << QStringList() << ButaneState << true;
    QTest::newRow("more than eight records")
        << Butane + records({"junk", "1"}) << false << QStringList() << ButaneState << true;
    QTest::newRow("empty") << QByteArray() << false << QStringList({Lecture, Invalid}) << start
                           << false;
    QTest::newRow("one byte") << QByteArray("\x05") << false << QStringList({Lecture, Invalid})
                              << start << false;
    QTest::newRow("shorter than a record, signature whole")
        << Butane.left(60) << false << QStringList({Lecture}) << start << true;
    QTest::newRow("length over 126 in record 1")
        << record1Over126 << false << QStringList({Lecture, Invalid}) << start << false;
    QTest::newRow("length over 126 in record 3")
        << longRecord3 << false << QStringList({Lecture}) << "3|  3,0|  4,0|110|open" << true;
    QTest::newRow("length 65535 in record 4")
        << hugeRecord4 << false << QStringList({Lecture}) << "3|  2,5|  4,0|110|open" << true;
    QTest::newRow("wrong signature")
        << records({"TERVA", " 3", "  2,5", "  1,0", "0", "0", "1", "1"}) << false
        << QStringList({Invalid}) << start << false;
    QTest::newRow("lower-case signature")
        << records({"tervo", " 3", "  2,5", "  1,0", "0", "0", "1", "1"}) << false
        << QStringList({Invalid}) << start << false;
    QTest::newRow("signature with a blank after")
        << records({"TERVO ", " 3"}) << false << QStringList({Invalid}) << start << false;
    QTest::newRow("five records") << Butane.left(5 * 128) << false << QStringList({Lecture})
                                  << "3|  2,5|  1,0|010|open" << true;
    QTest::newRow("list position past the list")
        << records({"TERVO", " 8", "  2,5", "  1,0", "0", "0", "1", "1"}) << false
        << QStringList({Lecture}) << start << true;
    QTest::newRow("byte 0x80 in the signature")
        << records({"TERVO\x80", " 3"}) << false << QStringList({Invalid}) << start << false;
    QTest::newRow("bytes 0x80-0x9F in the amounts")
        << records({"TERVO", " 3", "2,5\x80", "\x96\x9f", "0", "0", "1", "1"}) << false
        << QStringList() << "3|  0,0|  0,0|001|isolated" << true;
    QTest::newRow("NUL in the signature") << records({QByteArray("TER\0VO", 6), " 3"}) << false
                                          << QStringList({Invalid}) << start << false;
    QTest::newRow("NUL bytes in list position and amount")
        << records(
               {"TERVO", QByteArray("\0 3", 3), QByteArray("\0\0", 2), "  1,0", "1", "0", "0", "0"})
        << false << QStringList() << "0|  0,0|  1,0|100|open" << true;
    QTest::newRow("folder named like the file")
        << Folder << false << QStringList({NoFile}) << start << false;
    QTest::newRow("missing file") << Missing << false << QStringList({NoFile}) << start << false;
    QTest::newRow("folder, straight to the loader")
        << Folder << true << QStringList({Lecture, Invalid}) << start << false;
    QTest::newRow("missing file, straight to the loader")
        << Missing << true << QStringList({Lecture, Invalid}) << start << false;
}

void TestConfigurations::corruptFiles() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, throughLoader);
    QFETCH(QStringList, boxes);
    QFETCH(QString, after);
    QFETCH(bool, caption);

    setState(QStringLiteral("1|  3,0|  4,0|110|open"));
    w_->setWindowTitle(QStringLiteral("Thermivo"));
    const QString file = path(QStringLiteral("essai.C10"));
    store(file, bytes);

    Boxes answered;
    if (throughLoader) {
        w_->state().ConfigFilePath = file;
        w_->configurations()->LoadConfiguration();
    } else {
        w_->openConfiguration(file);
    }
    QCOMPARE(answered.seen, boxes);
    for (QMessageBox::Icon icon : answered.icons)
        QCOMPARE(icon, QMessageBox::Critical);
    QCOMPARE(stateOf(), after);
    QCOMPARE(w_->context().Combo1->property("Tag").toString(),
             QString::number(after.section(QLatin1Char('|'), 0, 0).toInt() + 1));
    QCOMPARE(w_->windowTitle(),
             caption ? QStringLiteral("Thermivo - ") + file : QStringLiteral("Thermivo"));
    // Reading never writes: the file (or folder) is as it was.
    if (bytes != Folder)
        QCOMPARE(load(file), bytes);
}

void TestConfigurations::isolatedZeroLeavesNeitherOption() {
    setState(ButaneState);
    const QString file = path(QStringLiteral("ouvert.C10"));
    store(file, records({"TERVO", " 3", "  2,5", "  1,0", "0", "0", "1", "0"}));
    Boxes boxes;
    w_->openConfiguration(file);
    QCOMPARE(boxes.seen, QStringList());
    QCOMPARE(stateOf(), QStringLiteral("3|  2,5|  1,0|001|neither"));

    // The next click on either button selects it alone again.
    QRadioButton* isolated = w_->context().Option1[0];
    QRadioButton* open = w_->context().Option1[1];
    open->click();
    QVERIFY(open->isChecked() && !isolated->isChecked());
    isolated->click();
    QVERIFY(isolated->isChecked() && !open->isChecked());
    isolated->click();
    QVERIFY(isolated->isChecked() && !open->isChecked());
}

void TestConfigurations::saveDialogNames_data() {
    QTest::addColumn<QString>("typed");    // "<dir>" stands for the temporary folder
    QTest::addColumn<QByteArray>("there"); // what essai.C10 is before the save
    QTest::addColumn<QList<QMessageBox::StandardButton>>("answers");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("written"); // the file written, "" for none
    QTest::addColumn<QString>("text1");   // the name box afterwards

    using B = QList<QMessageBox::StandardButton>;
    QTest::newRow("extension dropped, in the folder list's folder")
        << "essai.txt" << Missing << B() << QStringList() << "<dir>/listed/essai.C10"
        << "<dir>/listed/essai.C10";
    QTest::newRow("full path kept") << "<dir>/autre.dossier/plan" << Missing << B() << QStringList()
                                    << "<dir>/autre.dossier/plan.C10"
                                    << "<dir>/autre.dossier/plan.C10";
    QTest::newRow("empty name") << "   " << Missing << B() << QStringList({NoName}) << ""
                                << "";
    QTest::newRow("existing file kept on No")
        << "<dir>/essai" << QByteArray("old") << B({QMessageBox::No}) << QStringList({Overwrite})
        << ""
        << "<dir>/essai.C10";
    QTest::newRow("existing file replaced on Yes")
        << "<dir>/essai.C10" << QByteArray("old") << B({QMessageBox::Yes})
        << QStringList({Overwrite}) << "<dir>/essai.C10"
        << "<dir>/essai.C10";
    QTest::newRow("a folder of that name: no question, the write fails")
        << "<dir>/essai" << Folder << B() << QStringList({CannotWrite}) << ""
        << "<dir>/essai.C10";
}

void TestConfigurations::saveDialogNames() {
    QFETCH(QString, typed);
    QFETCH(QByteArray, there);
    QFETCH(QList<QMessageBox::StandardButton>, answers);
    QFETCH(QStringList, boxes);
    QFETCH(QString, written);
    QFETCH(QString, text1);
    const auto fill = [this](QString s) { return s.replace(QLatin1String("<dir>"), dir_->path()); };
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("listed")));
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("autre.dossier")));
    store(path(QStringLiteral("essai.C10")), there);
    setState(ButaneState);
    w_->setWindowTitle(QStringLiteral("Thermivo"));

    enregistrer dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(dialog.dir1()->setPath(path(QStringLiteral("listed"))));
    QCOMPARE(dialog.file1()->path(), path(QStringLiteral("listed")));
    dialog.text1()->setText(fill(typed));
    {
        Boxes answered(answers);
        dialog.Command1_Click();
        QCOMPARE(answered.seen, boxes);
    }
    QCOMPARE(dialog.text1()->text(), fill(text1));
    if (written.isEmpty()) {
        QVERIFY(dialog.isVisible()); // the dialog stays for another try
        QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo"));
        QVERIFY(there == Folder || load(path(QStringLiteral("essai.C10"))) == there);
    } else {
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(w_->state().ConfigFilePath, fill(written));
        QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + fill(written));
        QCOMPARE(load(fill(written)), Butane);
    }
}

void TestConfigurations::saveDialogFileByteForByte() {
    // Typed as the user would: the fourth reaction, 2.5 and 1 in the fields, the third box,
    // the isolated system.
    w_->selectReaction(4);
    w_->selectTab(2);
    QLineEdit* a = w_->macro()->text1(0);
    QLineEdit* b = w_->macro()->text1(1);
    a->setFocus();
    a->selectAll();
    QTest::keyClicks(a, QStringLiteral("2.5"));
    QTest::keyClick(a, Qt::Key_Return);
    b->setFocus();
    b->selectAll();
    QTest::keyClicks(b, QStringLiteral("1"));
    QTest::keyClick(b, Qt::Key_Return);
    w_->context().Check1[2]->setChecked(true);
    w_->context().Option1[0]->setChecked(true);

    enregistrer dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(dialog.dir1()->setPath(dir_->path()));
    dialog.text1()->setText(QStringLiteral("butane"));
    Boxes boxes;
    dialog.Command1_Click();
    QCOMPARE(boxes.seen, QStringList());
    const QByteArray expected = QByteArray::fromHex("0500544552564f") + QByteArray(121, '\0') +
                                QByteArray::fromHex("02002033") + QByteArray(124, '\0') +
                                QByteArray::fromHex("05002020322c35") + QByteArray(121, '\0') +
                                QByteArray::fromHex("05002020312c30") + QByteArray(121, '\0') +
                                QByteArray::fromHex("010030") + QByteArray(125, '\0') +
                                QByteArray::fromHex("010030") + QByteArray(125, '\0') +
                                QByteArray::fromHex("010031") + QByteArray(125, '\0') +
                                QByteArray::fromHex("010031") + QByteArray(125, '\0');
    QCOMPARE(load(path(QStringLiteral("butane.C10"))).toHex(), expected.toHex());
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + path(QStringLiteral("butane.C10")));
}

void TestConfigurations::doubleClickOverwritesAfterYes() {
    store(path(QStringLiteral("ancien.C10")), "old");
    store(path(QStringLiteral("notes.txt")), "not listed");
    setState(ButaneState);
    enregistrer dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(dialog.dir1()->setPath(dir_->path()));
    QCOMPARE(dialog.file1()->listCount(), 1);
    dialog.file1()->setListIndex(0);

    {
        Boxes no({QMessageBox::No});
        dialog.File1_DblClick();
        QCOMPARE(no.seen, QStringList({Overwrite}));
    }
    QCOMPARE(load(path(QStringLiteral("ancien.C10"))), QByteArray("old"));
    QVERIFY(dialog.isVisible());

    Boxes yes({QMessageBox::Yes});
    dialog.File1_DblClick();
    QCOMPARE(yes.seen, QStringList({Overwrite}));
    QCOMPARE(load(path(QStringLiteral("ancien.C10"))), Butane);
    QVERIFY(!dialog.isVisible());
}

void TestConfigurations::folderChangeKeepsBareName() {
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("a/b")));
    w_->state().ConfigFilePath = QStringLiteral("/ailleurs/dossier.x/essai.C10");
    enregistrer dialog(*w_->configurations(), w_.get());
    QCOMPARE(dialog.text1()->text(), QStringLiteral("/ailleurs/dossier.x/essai.C10"));
    QVERIFY(dialog.dir1()->setPath(path(QStringLiteral("a"))));
    QCOMPARE(dialog.text1()->text(), QStringLiteral("essai.C10"));
    QVERIFY(dialog.dir1()->setPath(path(QStringLiteral("a/b"))));
    QCOMPARE(dialog.text1()->text(), QStringLiteral("essai.C10"));
}

// After browsing the installed exercises the current folder is read-only: the save dialog
// shows the documents folder instead; a folder one can write into is kept.
void TestConfigurations::saveDialogLeavesReadOnlyFolder() {
    const QString locked = path(QStringLiteral("verrouille"));
    QVERIFY(QDir().mkpath(locked));
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    QString readOnly = locked;
    if (QFileInfo(locked).isWritable()) // the superuser writes anywhere
        readOnly = QStringLiteral("/proc/1");
    if (QFileInfo(readOnly).isWritable() || !QFileInfo(readOnly).isDir())
        QSKIP("no read-only folder to start in");
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", path(QStringLiteral("prof")).toUtf8());
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(readOnly));
    {
        enregistrer dialog(*w_->configurations(), w_.get());
        QCOMPARE(dialog.dir1()->path(), path(QStringLiteral("prof/Documents")));
    }
    QVERIFY(QDir::setCurrent(dir_->path()));
    {
        enregistrer dialog(*w_->configurations(), w_.get());
        QCOMPARE(dialog.dir1()->path(), dir_->path());
    }
    QDir::setCurrent(before);
    qputenv("HOME", home);
    QFile::setPermissions(locked,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

void TestConfigurations::failedSaveKeepsOldFile_data() {
    // The disk fills up while record N is written (0: an amount text too long for its record).
    QTest::addColumn<int>("fullAtRecord");
    QTest::newRow("amount text over 126 characters") << 0;
    for (int record = 1; record <= 8; ++record)
        QTest::addRow("disk full at record %d", record) << record;
}

void TestConfigurations::failedSaveKeepsOldFile() {
    QFETCH(int, fullAtRecord);
    const bool fullDisk = fullAtRecord > 0;
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("cours")));
    const QString file = path(QStringLiteral("cours/essai.C10"));
    store(file, Butane);
    setState(QStringLiteral("0|  1,0|  1,0|000|open"));
    if (!fullDisk)
        w_->macro()->text1(1)->setText(QString(127, u'9'));
    w_->setWindowTitle(QStringLiteral("Thermivo"));

    enregistrer dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(dialog.dir1()->setPath(path(QStringLiteral("cours"))));
    dialog.text1()->setText(QStringLiteral("essai"));

    rlimit saved{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &saved) == 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    if (fullDisk) {
        rlimit small = saved;
        small.rlim_cur = rlim_t(fullAtRecord - 1) * 128 + 64; // inside record fullAtRecord
        QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
    }
    Boxes boxes({QMessageBox::Yes});
    dialog.Command1_Click();
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    // One message, one more try, and the old file as it was.
    QCOMPARE(boxes.seen, QStringList({Overwrite, CannotWrite}));
    QCOMPARE(boxes.icons.last(), QMessageBox::Critical);
    QCOMPARE(load(file), Butane);
    QCOMPARE(QDir(path(QStringLiteral("cours"))).entryList(QDir::Files | QDir::Hidden),
             QStringList({QStringLiteral("essai.C10")}));
    QVERIFY(dialog.isVisible());
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo"));
}

void TestConfigurations::openDialog_data() {
    QTest::addColumn<QString>("ficharge"); // "<dir>" stands for the temporary folder
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<bool>("loaded");

    QTest::newRow("empty: nothing happens") << "" << QStringList() << false;
    QTest::newRow("blanks: nothing happens") << "   " << QStringList() << false;
    QTest::newRow("missing file") << "<dir>/absent.C10" << QStringList({NoFile}) << false;
    QTest::newRow("a folder") << "<dir>" << QStringList({NoFile}) << false;
    QTest::newRow("a configuration") << "<dir>/butane.C10" << QStringList() << true;
}

void TestConfigurations::openDialog() {
    QFETCH(QString, ficharge);
    QFETCH(QStringList, boxes);
    QFETCH(bool, loaded);
    store(path(QStringLiteral("butane.C10")), Butane);
    setState(QStringLiteral("1|  3,0|  4,0|110|open"));
    w_->state().ConfigFilePath = QStringLiteral("before");

    ouvrir dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(!dialog.frame1()->isVisible());
    dialog.ficharge()->setText(ficharge.replace(QLatin1String("<dir>"), dir_->path()));
    Boxes answered;
    dialog.Command1_Click();
    QCOMPARE(answered.seen, boxes);
    QCOMPARE(dialog.isVisible(), !loaded);
    QCOMPARE(stateOf(), loaded ? ButaneState : QStringLiteral("1|  3,0|  4,0|110|open"));
    if (ficharge.trimmed().isEmpty())
        QCOMPARE(w_->state().ConfigFilePath, QStringLiteral("before"));
    else
        QCOMPARE(w_->state().ConfigFilePath, ficharge);
    QCOMPARE(dialog.frame1()->isVisibleTo(&dialog), loaded);
}

void TestConfigurations::openDialogFileClick() {
    CurrentFolderGuard guard;
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("cours")));
    store(path(QStringLiteral("cours/b.C10")), Butane);
    store(path(QStringLiteral("cours/a.c10")), Butane);
    store(path(QStringLiteral("cours/c.txt")), Butane);
    ouvrir dialog(*w_->configurations(), w_.get());
    dialog.show();
    QVERIFY(dialog.dir1()->setPath(path(QStringLiteral("cours"))));
    QCOMPARE(dialog.file1()->listCount(), 2);
    QCOMPARE(dialog.file1()->list(0), QStringLiteral("a.c10"));
    dialog.file1()->setListIndex(1); // as a click on it
    QCOMPARE(dialog.ficharge()->text(), path(QStringLiteral("cours/b.C10")));
    QCOMPARE(QDir::currentPath(), path(QStringLiteral("cours")));

    // A double click opens it.
    Boxes boxes;
    emit dialog.file1()->DblClick();
    QCOMPARE(boxes.seen, QStringList());
    QCOMPARE(stateOf(), ButaneState);
    QVERIFY(!dialog.isVisible());
}

void TestConfigurations::ouvrirButtonStopsAnimationsFirst() {
    store(path(QStringLiteral("butane.C10")), Butane);
    w_->selectTab(2);
    w_->micro()->timer1()->start();
    w_->macro()->timer2()->start();
    w_->macro()->timer3()->start();
    w_->macro()->hscroll1()->setValue(5000);
    w_->state().AnimStep = 3;
    w_->move(40, 30);

    bool seen = false;
    QTimer::singleShot(0, this, [&] {
        auto* dialog = qobject_cast<ouvrir*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        seen = true;
        QCOMPARE(dialog->objectName(), QStringLiteral("ouvrir"));
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Ouvrir une configuration"));
        QCOMPARE(dialog->pos(), w_->pos() + QPoint(20, 20));
        QVERIFY(!w_->micro()->timer1()->isActive());
        QVERIFY(!w_->macro()->timer2()->isActive());
        QVERIFY(!w_->macro()->timer3()->isActive());
        QCOMPARE(w_->macro()->hscroll1()->value(), 0);
        QCOMPARE(w_->state().AnimStep, 0);
        dialog->ficharge()->setText(path(QStringLiteral("butane.C10")));
        dialog->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    });
    Boxes boxes;
    w_->findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    QVERIFY(seen);
    QCOMPARE(boxes.seen, QStringList());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(stateOf(), ButaneState);
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + path(QStringLiteral("butane.C10")));

    // ANNULER closes it without a change.
    QTimer::singleShot(0, this, [] {
        auto* dialog = qobject_cast<ouvrir*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    });
    w_->findChild<QPushButton*>(QStringLiteral("Command2"))->click();
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(stateOf(), ButaneState);
}

void TestConfigurations::enregistrerButtonAndEnter() {
    setState(ButaneState);
    const QString file = path(QStringLiteral("cours.C10"));
    w_->state().ConfigFilePath = file;
    w_->move(40, 30);
    bool seen = false;
    QTimer::singleShot(0, this, [&] {
        auto* dialog = qobject_cast<enregistrer*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        seen = true;
        QCOMPARE(dialog->objectName(), QStringLiteral("enregistrer"));
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Enregistrer les paramètres."));
        QCOMPARE(dialog->pos(), w_->pos() + QPoint(20, 20));
        QCOMPARE(dialog->text1()->text(), file);
        QTest::keyClick(dialog->text1(), Qt::Key_Return);
    });
    Boxes boxes;
    w_->findChild<QPushButton*>(QStringLiteral("Command11"))->click();
    QVERIFY(seen);
    QCOMPARE(boxes.seen, QStringList());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(load(file), Butane);
    QCOMPARE(w_->windowTitle(), QStringLiteral("Thermivo - ") + file);
}

void TestConfigurations::relativePathFromCurrentFolder() {
    CurrentFolderGuard guard;
    QVERIFY(QDir(dir_->path()).mkpath(QStringLiteral("cours")));
    store(path(QStringLiteral("cours/butane.C10")), Butane);
    QDir::setCurrent(path(QStringLiteral("cours")));
    Boxes boxes;
    w_->openConfiguration(QStringLiteral("butane.C10"));
    QCOMPARE(boxes.seen, QStringList());
    QCOMPARE(stateOf(), ButaneState);
    QCOMPARE(w_->state().ConfigFilePath, path(QStringLiteral("cours/butane.C10")));
}

void TestConfigurations::droppedFile_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("opened");
    QTest::newRow("upper-case extension") << "butane.C10" << true;
    QTest::newRow("lower-case extension") << "butane.c10" << true;
    QTest::newRow("another kind of file") << "butane.txt" << false;
}

void TestConfigurations::droppedFile() {
    QFETCH(QString, name);
    QFETCH(bool, opened);
    store(path(name), Butane);
    setState(QStringLiteral("1|  3,0|  4,0|110|open"));
    auto* supertext = w_->findChild<QTextEdit*>(QStringLiteral("supertext"));
    const QString statement = supertext->toPlainText();

    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(path(name))});
    // Dropped on the statement area, which takes text drops of its own.
    QWidget* target = supertext->viewport();
    const QPoint at = target->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QCOMPARE(enter.isAccepted(), opened);
    if (opened) {
        QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        Boxes boxes;
        QApplication::sendEvent(target, &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(stateOf(), QStringLiteral("1|  3,0|  4,0|110|open")); // after the drop is over
        QCoreApplication::processEvents();
        QCOMPARE(stateOf(), ButaneState);
        QCOMPARE(boxes.seen, QStringList());
        QCOMPARE(w_->state().ConfigFilePath, path(name));
    }
    QCOMPARE(supertext->toPlainText(), statement);
}

QTEST_MAIN(TestConfigurations)
#include "tst_configurations.moc"

#include "platform/dirlist.h"
#include "platform/drivelist.h"
#include "platform/filelist.h"
#include "platform/folderlists.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using platform::DirList;
using platform::DriveList;
using platform::FileList;

class TestFolderLists : public QObject {
    Q_OBJECT
private slots:
    void init();
    void dirListNumbering();
    void dirListOpens_data();
    void dirListOpens();
    void dirListRefuses();
    void fileListPattern_data();
    void fileListPattern();
    void fileListSignals();
    void driveChoice();
    void homeComesFirst();

private:
    QString path(const QString& name) const { return dir_->filePath(name); }
    void touch(const QString& name) {
        QFile f(path(name));
        QVERIFY(f.open(QIODevice::WriteOnly));
    }
    std::unique_ptr<QTemporaryDir> dir_;
};

void TestFolderLists::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QDir d(dir_->path());
    for (const char* f : {"a/Zeta", "a/alpha/deep", "a/.cache", "b", "D.C10"})
        QVERIFY(d.mkpath(QString::fromLatin1(f)));
    for (const char* f : {"a/f.txt", "a.C10", "b.c10", "c.txt", ".h.C10", "noext"})
        touch(QString::fromLatin1(f));
}

void TestFolderLists::dirListNumbering() {
    DirList list;
    QVERIFY(list.setPath(path(QStringLiteral("a"))));
    QCOMPARE(list.path(), path(QStringLiteral("a")));
    // Subfolders by name whatever the case, hidden ones left out.
    QCOMPARE(list.listCount(), 2);
    QCOMPARE(list.list(0), path(QStringLiteral("a/alpha")));
    QCOMPARE(list.list(1), path(QStringLiteral("a/Zeta")));
    QCOMPARE(list.list(2), QString());
    // The folder itself, then its ancestors up to the root, each shown one step less indented.
    QCOMPARE(list.list(-1), path(QStringLiteral("a")));
    QCOMPARE(list.list(-2), dir_->path());
    const int depth = static_cast<int>(path(QStringLiteral("a")).count(QLatin1Char('/')));
    QCOMPARE(list.list(-1 - depth), QStringLiteral("/"));
    QCOMPARE(list.list(-2 - depth), QString());
    QCOMPARE(list.count(), depth + 1 + 2);
    QCOMPARE(list.item(0)->text(), QStringLiteral("/"));
    QCOMPARE(list.item(depth)->text(), QStringLiteral("a"));
    QCOMPARE(list.listIndex(), -1);
    QCOMPARE(list.item(depth + 1)->data(Qt::UserRole + 1).toInt(), depth + 1);
}

void TestFolderLists::dirListOpens_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("enter"); // else a double click
    QTest::addColumn<QString>("opened");
    QTest::newRow("Enter on a subfolder") << 0 << true << "a/alpha";
    QTest::newRow("double click on a subfolder") << 1 << false << "a/Zeta";
    QTest::newRow("Enter on the parent") << -2 << true << "";
}

void TestFolderLists::dirListOpens() {
    QFETCH(int, index);
    QFETCH(bool, enter);
    QFETCH(QString, opened);
    DirList list;
    list.resize(200, 400);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    QVERIFY(list.setPath(path(QStringLiteral("a"))));
    QSignalSpy change(&list, &DirList::Change);
    list.setListIndex(index);
    QCOMPARE(change.count(), 0); // highlighting alone opens nothing
    if (enter) {
        QTest::keyClick(&list, Qt::Key_Return);
    } else {
        const QRect r = list.visualItemRect(list.currentItem());
        // A first click, as a person's double click starts with one.
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, r.center());
        QCOMPARE(change.count(), 0);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, r.center());
    }
    QCOMPARE(change.count(), 1);
    QCOMPARE(list.path(), opened.isEmpty() ? dir_->path() : path(opened));
    QCOMPARE(list.listIndex(), -1);
}

void TestFolderLists::dirListRefuses() {
    DirList list;
    QVERIFY(list.setPath(dir_->path()));
    QSignalSpy change(&list, &DirList::Change);
    QVERIFY(!list.setPath(path(QStringLiteral("absent"))));
    QVERIFY(!list.setPath(path(QStringLiteral("c.txt"))));
    QVERIFY(!list.setPath(QString()));
    QVERIFY(list.setPath(dir_->path() + QStringLiteral("/a/..")));
    QCOMPARE(list.path(), dir_->path());
    QCOMPARE(change.count(), 0);
}

void TestFolderLists::fileListPattern_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("extension in any case, no folders, no hidden files")
        << "*.C10" << QStringList({"a.C10", "b.c10"});
    QTest::newRow("every file") << "*.*" << QStringList({"a.C10", "b.c10", "c.txt", "noext"});
    QTest::newRow("two patterns") << "*.txt;*.C10" << QStringList({"a.C10", "b.c10", "c.txt"});
}

void TestFolderLists::fileListPattern() {
    QFETCH(QString, pattern);
    QFETCH(QStringList, files);
    FileList list;
    list.setPattern(pattern);
    QVERIFY(list.setPath(dir_->path()));
    QStringList shown;
    for (int i = 0; i < list.listCount(); ++i)
        shown << list.list(i);
    QCOMPARE(shown, files);
    QCOMPARE(list.fileName(), QString());
}

void TestFolderLists::fileListSignals() {
    FileList list;
    list.setPattern(QStringLiteral("*.C10"));
    QVERIFY(list.setPath(dir_->path()));
    QSignalSpy click(&list, &FileList::Click);
    QSignalSpy dbl(&list, &FileList::DblClick);
    QSignalSpy pathChange(&list, &FileList::PathChange);

    list.setListIndex(1);
    QCOMPARE(click.count(), 1);
    QCOMPARE(list.fileName(), QStringLiteral("b.c10"));
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(dbl.count(), 1);

    // Listing the same folder again keeps the highlight and is no change of path.
    touch(QStringLiteral("0.C10"));
    QVERIFY(list.setPath(dir_->path()));
    QCOMPARE(pathChange.count(), 0);
    QCOMPARE(list.fileName(), QStringLiteral("b.c10"));
    QCOMPARE(list.listCount(), 3);
    QCOMPARE(click.count(), 1);

    QVERIFY(list.setPath(path(QStringLiteral("a"))));
    QCOMPARE(pathChange.count(), 1);
    QCOMPARE(list.listCount(), 0);
    QCOMPARE(list.fileName(), QString());
    QVERIFY(!list.setPath(path(QStringLiteral("absent"))));
    QCOMPARE(list.path(), path(QStringLiteral("a")));
    QCOMPARE(pathChange.count(), 1);
}

void TestFolderLists::driveChoice() {
    QDir d(dir_->path());
    QVERIFY(d.mkpath(QStringLiteral("d1/sub")) && d.mkpath(QStringLiteral("d2")));
    DriveList drive;
    drive.setVolumes({{path(QStringLiteral("d1")), QStringLiteral("un")},
                      {path(QStringLiteral("d2")), QString()},
                      {QStringLiteral("/no-medium-here"), QStringLiteral("vide")}});
    QCOMPARE(drive.itemText(0), path(QStringLiteral("d1")) + QStringLiteral(" [un]"));
    QCOMPARE(drive.itemText(1), path(QStringLiteral("d2")));
    DirList dir;
    FileList files;
    platform::linkFolderLists(&drive, &dir, &files);
    QVERIFY(dir.setPath(path(QStringLiteral("d1/sub"))));
    QCOMPARE(files.path(), path(QStringLiteral("d1/sub")));
    drive.setDrive(dir.path());
    QCOMPARE(drive.currentIndex(), 0);

    // Another drive: its root, as nothing of it was visited yet.
    drive.setCurrentIndex(1);
    QCOMPARE(dir.path(), path(QStringLiteral("d2")));
    QCOMPARE(files.path(), path(QStringLiteral("d2")));
    // Back: the folder that drive was left in.
    drive.setCurrentIndex(0);
    QCOMPARE(dir.path(), path(QStringLiteral("d1/sub")));
    // A drive with no medium: the list falls back to the drive of the folder shown.
    QSignalSpy change(&drive, &DriveList::Change);
    drive.setCurrentIndex(2);
    QCOMPARE(drive.currentIndex(), 0);
    QCOMPARE(drive.drive(), path(QStringLiteral("d1/sub")));
    QCOMPARE(dir.path(), path(QStringLiteral("d1/sub")));
    QCOMPARE(files.path(), path(QStringLiteral("d1/sub")));
    QCOMPARE(change.count(), 2);
}

void TestFolderLists::homeComesFirst() {
    const QList<DriveList::Volume> volumes = DriveList::systemVolumes();
    QVERIFY(!volumes.isEmpty());
    QCOMPARE(volumes.first().root, QDir::cleanPath(QDir::homePath()));
    QCOMPARE(volumes.first().label, QStringLiteral("Dossier personnel"));
    for (const DriveList::Volume& v : volumes)
        QVERIFY(!v.root.isEmpty() && (v.root == QLatin1String("/") || !v.root.endsWith('/')));
}

QTEST_MAIN(TestFolderLists)
#include "tst_folderlists.moc"

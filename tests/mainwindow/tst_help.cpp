#include "mainwindow/helpwindow.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTimer>
#include <QToolButton>

namespace {

QString shippedHelp() {
    return QDir(QCoreApplication::applicationDirPath()).filePath(HelpWindow::folderName());
}

QString shownFile(const HelpWindow& w) {
    return QFileInfo(w.browser()->source().toLocalFile()).fileName();
}

void writePage(const QString& folder, const QString& name, const QString& title,
               const QString& body) {
    QFile f(QDir(folder).filePath(name));
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(QStringLiteral("<html><head><meta charset=\"utf-8\"><title>%1</title></head>"
                           "<body>%2</body></html>")
                .arg(title, body)
                .toUtf8());
}

} // namespace

class TestHelp : public QObject {
    Q_OBJECT
private slots:
    void opensOnTheContents();
    void backAndForward();
    void search_data();
    void search();
    void everyLinkResolves();
    void missingFolder_data();
    void missingFolder();
};

void TestHelp::opensOnTheContents() {
    HelpWindow w(shippedHelp(), nullptr);
    QCOMPARE(shownFile(w), QStringLiteral("index.html"));
    QCOMPARE(w.windowTitle(), QStringLiteral("Aide de Thermivo"));
    QVERIFY(w.browser()->toPlainText().contains(QStringLiteral("Aide de Thermivo")));
    // The contents list the contents page, then the pages it links to, in its order.
    QVERIFY(w.contents()->count() >= 2);
    QCOMPARE(w.contents()->item(0)->data(Qt::UserRole).toString(), QStringLiteral("index.html"));
    QCOMPARE(w.contents()->currentRow(), 0);
}

void TestHelp::backAndForward() {
    QTemporaryDir dir;
    writePage(dir.path(), QStringLiteral("index.html"), QStringLiteral("Sommaire"),
              QStringLiteral("<a href=\"b.html\">Bé</a> <a href=\"a.html\">A</a>"));
    writePage(dir.path(), QStringLiteral("a.html"), QStringLiteral("Page A"), QStringLiteral("a"));
    writePage(dir.path(), QStringLiteral("b.html"), QStringLiteral("Page B"), QStringLiteral("b"));
    HelpWindow w(dir.path(), nullptr);
    QCOMPARE(w.contents()->count(), 3);
    QCOMPARE(w.contents()->item(1)->text(), QStringLiteral("Page B"));
    QCOMPARE(w.contents()->item(2)->text(), QStringLiteral("Page A"));
    auto* back = w.findChild<QToolButton*>(QStringLiteral("back"));
    auto* forward = w.findChild<QToolButton*>(QStringLiteral("forward"));
    QVERIFY(!back->isEnabled());
    emit w.contents()->itemClicked(w.contents()->item(2));
    QCOMPARE(shownFile(w), QStringLiteral("a.html"));
    QCOMPARE(w.contents()->currentRow(), 2);
    QVERIFY(back->isEnabled());
    back->click();
    QCOMPARE(shownFile(w), QStringLiteral("index.html"));
    QVERIFY(forward->isEnabled());
    forward->click();
    QCOMPARE(shownFile(w), QStringLiteral("a.html"));
    w.findChild<QToolButton*>(QStringLiteral("home"))->click();
    QCOMPARE(shownFile(w), QStringLiteral("index.html"));
}

void TestHelp::search_data() {
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("pages");
    QTest::newRow("accents and case aside") << "ENERGIE" << QStringList{"b.html", "a.html"};
    QTest::newRow("every word") << "énergie liaison" << QStringList{"b.html"};
    QTest::newRow("a title counts") << "avancement" << QStringList{"a.html"};
    QTest::newRow("a page outside the contents") << "calculatrice" << QStringList{"z.html"};
    QTest::newRow("nothing") << "xylophone" << QStringList{};
    QTest::newRow("blank") << "  " << QStringList{};
}

void TestHelp::search() {
    QFETCH(QString, query);
    QFETCH(QStringList, pages);
    QTemporaryDir dir;
    writePage(dir.path(), QStringLiteral("index.html"), QStringLiteral("Sommaire"),
              QStringLiteral("<a href=\"b.html\">B</a> <a href=\"a.html\">A</a>"));
    writePage(dir.path(), QStringLiteral("a.html"), QStringLiteral("L'avancement"),
              QStringLiteral("L'<b>énergie</b> échangée"));
    writePage(dir.path(), QStringLiteral("b.html"), QStringLiteral("Liaisons"),
              QStringLiteral("Énergie de liaison"));
    writePage(dir.path(), QStringLiteral("z.html"), QStringLiteral("Machine"),
              QStringLiteral("La calculatrice"));
    HelpWindow w(dir.path(), nullptr);
    QCOMPARE(w.pagesWithWords(query), pages);
    w.searchField()->setText(query);
    if (query.trimmed().isEmpty()) {
        QCOMPARE(w.results()->count(), 0);
        return;
    }
    if (pages.isEmpty()) {
        QCOMPARE(w.results()->count(), 1);
        QCOMPARE(w.results()->item(0)->text(), QStringLiteral("Aucune page ne contient ces mots."));
        return;
    }
    QCOMPARE(w.results()->count(), pages.size());
    emit w.results()->itemClicked(w.results()->item(0));
    QCOMPARE(shownFile(w), pages.first());
}

void TestHelp::everyLinkResolves() {
    const QDir folder(shippedHelp());
    const QStringList pages = folder.entryList({QStringLiteral("*.html")}, QDir::Files);
    QVERIFY(pages.contains(QStringLiteral("index.html")));
    static const QRegularExpression source(QStringLiteral("src\\s*=\\s*\"([^\"]+)\""));
    QHash<QString, QStringList> links;
    for (const QString& page : pages) {
        QFile f(folder.filePath(page));
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(f.readAll());
        QTextDocument doc;
        doc.setHtml(html);
        QVERIFY2(!doc.metaInformation(QTextDocument::DocumentTitle).isEmpty(), qPrintable(page));
        QStringList targets;
        for (QTextBlock b = doc.begin(); b.isValid(); b = b.next())
            for (auto it = b.begin(); !it.atEnd(); ++it)
                if (it.fragment().charFormat().isAnchor())
                    targets << it.fragment().charFormat().anchorHref();
        for (auto m = source.globalMatch(html); m.hasNext();)
            targets << m.next().captured(1);
        for (const QString& target : targets) {
            const QUrl url(target);
            if (!url.scheme().isEmpty())
                continue; // a web address, opened outside
            QVERIFY2(url.path().isEmpty() || folder.exists(url.path()),
                     qPrintable(page + QStringLiteral(" → ") + target));
            if (url.path().endsWith(QStringLiteral(".html")))
                links[page] << url.path();
        }
    }
    // Every page can be reached from the contents page by following links.
    QSet<QString> reached{QStringLiteral("index.html")};
    QStringList queue{QStringLiteral("index.html")};
    while (!queue.isEmpty())
        for (const QString& next : links.value(queue.takeFirst()))
            if (!reached.contains(next)) {
                reached.insert(next);
                queue << next;
            }
    for (const QString& page : pages)
        QVERIFY2(reached.contains(page), qPrintable(page + QStringLiteral(" is unreachable")));
}

void TestHelp::missingFolder_data() {
    QTest::addColumn<bool>("emptyFolder");
    QTest::newRow("no help folder") << false;
    QTest::newRow("help folder without its contents page") << true;
}

void TestHelp::missingFolder() {
    QFETCH(bool, emptyFolder);
    QTemporaryDir programFolder;
    if (emptyFolder)
        QVERIFY(QDir(programFolder.path()).mkdir(HelpWindow::folderName()));
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QTimer::singleShot(0, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        box->button(QMessageBox::Ok)->click();
    });
    HelpWindow::showHelp(nullptr, programFolder.path());
    QCOMPARE(title, QStringLiteral("Aide"));
    QCOMPARE(icon, QMessageBox::Warning);
    QCOMPARE(text, QStringLiteral("L'aide de Thermivo est introuvable : le dossier « aide » manque "
                                  "dans le dossier du programme.\n") +
                       QDir::toNativeSeparators(QDir(programFolder.path()).filePath("aide")));
}

QTEST_MAIN(TestHelp)
#include "tst_help.moc"

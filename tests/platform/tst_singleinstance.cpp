#include "platform/singleinstance.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <atomic>
#include <thread>

using platform::SingleInstance;

class TestSingleInstance : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void handOver_data();
    void handOver();

private:
    QTemporaryDir tmp_;
};

void TestSingleInstance::initTestCase() {
    // The socket lives in the temporary folder: keep this test's apart from a running copy's.
    qputenv("TMPDIR", tmp_.path().toUtf8());
    QCOMPARE(QDir::tempPath(), tmp_.path());
}

void TestSingleInstance::handOver_data() {
    QTest::addColumn<bool>("running");   // a first copy listens
    QTest::addColumn<bool>("staleFile"); // a copy that crashed left its socket file behind
    QTest::newRow("a running copy takes the file") << true << false;
    QTest::newRow("no copy: the launch goes on by itself") << false << false;
    QTest::newRow("a dead copy's socket is taken over") << true << true;
}

void TestSingleInstance::handOver() {
    QFETCH(bool, running);
    QFETCH(bool, staleFile);
    const QString socketPath = QDir::tempPath() + u'/' + SingleInstance::serverName();
    if (staleFile) {
        QFile f(socketPath);
        QVERIFY(f.open(QIODevice::WriteOnly));
    }
    SingleInstance first;
    if (running) {
        QVERIFY(first.listen());
        SingleInstance second; // a second copy never listens beside the first
        QVERIFY(!second.listen());
    }

    QSignalSpy received(&first, &SingleInstance::fileReceived);
    std::atomic<int> result{-1};
    // The second launch blocks on its socket, so it runs beside the first copy's event loop.
    std::thread launch(
        [&] { result = SingleInstance::handOver(QStringLiteral("/tmp/é 1.C10"), 1000); });
    QTRY_VERIFY(result != -1);
    launch.join();
    QCOMPARE(result.load(), int(running));
    if (running) {
        QTRY_COMPARE(received.count(), 1);
        QCOMPARE(received.at(0).at(0).toString(), QStringLiteral("/tmp/é 1.C10"));
    }
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"

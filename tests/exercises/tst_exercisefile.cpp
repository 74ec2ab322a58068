#include "exercises/exercisefile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using exercises::EncodeProblem;
using exercises::ExerciseFile;
using exercises::ExerciseRecords;

Q_DECLARE_METATYPE(EncodeProblem)

namespace {

ExerciseFile sample() {
    ExerciseFile x;
    x.statement = QStringLiteral("essai_enonce.rtf");
    x.statementConfig = QStringLiteral("essai_enonce.C10");
    x.correction = QStringLiteral("essai_correction.rtf");
    x.correctionConfig = QStringLiteral("essai_correction.C10");
    x.level = 2;
    x.topics =
        QStringList{QStringLiteral("Énergie de liaison"), QStringLiteral("Réactif limitant")};
    x.title = QStringLiteral("Méthane\u00a0: liaisons rompues et formées");
    return x;
}

} // namespace

class TestExerciseFile : public QObject {
    Q_OBJECT
private slots:
    void layout();
    void encode_data();
    void encode();
};

void TestExerciseFile::layout() {
    ExerciseFile x = sample();
    x.title = QStringLiteral("Œuvre à 5 €");
    const exercises::EncodedExercise e = exercises::encodeExercise(x);
    QCOMPARE(e.problem, EncodeProblem::None);
    QCOMPARE(e.bytes.size(), 11 * 128);
    auto record = [&](int n) { return e.bytes.mid((n - 1) * 128, 128); };
    QCOMPARE(record(1).left(18), QByteArray("\x10\x00"
                                            "essai_enonce.rtf",
                                            18));
    QCOMPARE(record(5).left(3), QByteArray("\x01\x00"
                                           "2",
                                           3));
    // Windows-1252: Œ 0x8C, à 0xE0, € 0x80.
    QCOMPARE(record(11).left(13), QByteArray("\x0b\x00\x8Cuvre \xE0 5 \x80", 13));
    QCOMPARE(record(8), QByteArray(128, '\0')); // the unused topic lines are empty records
    QCOMPARE(record(11).mid(13), QByteArray(128 - 13, '\0'));
}

void TestExerciseFile::encode_data() {
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("topics");
    QTest::addColumn<QString>("correction");
    QTest::addColumn<EncodeProblem>("problem");
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("character");
    const QString t = sample().title;
    const QStringList two = sample().topics;
    const QString c = QStringLiteral("c.rtf");
    QTest::newRow("full") << t << 2 << two << c << EncodeProblem::None << 0 << "";
    QTest::newRow("no correction") << t << 1 << two << "" << EncodeProblem::None << 0 << "";
    QTest::newRow("blank topics move up")
        << t << 3 << QStringList{"", "  ", " Notion ", "", "Autre"} << c << EncodeProblem::None << 0
        << "";
    QTest::newRow("question mark and no-break space")
        << QStringLiteral("Limitant\u00a0?") << 2 << QStringList{} << c << EncodeProblem::None << 0
        << "";
    QTest::newRow("title of 126") << QString(126, QChar(0xE9)) << 2 << two << c
                                  << EncodeProblem::None << 0 << "";
    QTest::newRow("title of 127") << QString(127, QLatin1Char('a')) << 2 << two << c
                                  << EncodeProblem::TooLong << 11 << "";
    QTest::newRow("blank title") << "   " << 2 << two << c << EncodeProblem::BlankTitle << 11 << "";
    QTest::newRow("snowman in title") << QStringLiteral("Froid \u2603") << 2 << two << c
                                      << EncodeProblem::NotEncodable << 11 << "\u2603";
    QTest::newRow("arrow in second topic") << t << 2 << QStringList{"", "a", "b \u2192 c"} << c
                                           << EncodeProblem::NotEncodable << 7 << "\u2192";
    QTest::newRow("emoji is one character")
        << t << 2 << QStringList{QStringLiteral("x \U0001F525")} << c << EncodeProblem::NotEncodable
        << 6 << QStringLiteral("\U0001F525");
    QTest::newRow("long first topic")
        << t << 2 << QStringList{"", QString(127, 'x')} << c << EncodeProblem::TooLong << 6 << "";
    QTest::newRow("six topics") << t << 2 << QStringList{"1", "2", "3", "4", "5", "6"} << c
                                << EncodeProblem::TooManyTopics << 10 << "";
    QTest::newRow("six lines, five topics") << t << 2 << QStringList{"1", "2", "", "4", "5", "6"}
                                            << c << EncodeProblem::None << 0 << "";
    QTest::newRow("level 0") << t << 0 << two << c << EncodeProblem::BadLevel << 5 << "";
    QTest::newRow("level 4") << t << 4 << two << c << EncodeProblem::BadLevel << 5 << "";
    QTest::newRow("correction name unencodable")
        << t << 2 << two << QStringLiteral("\u0153\u2603.rtf") << EncodeProblem::NotEncodable << 3
        << "\u2603";
}

void TestExerciseFile::encode() {
    QFETCH(QString, title);
    QFETCH(int, level);
    QFETCH(QStringList, topics);
    QFETCH(QString, correction);
    QFETCH(EncodeProblem, problem);
    ExerciseFile x = sample();
    x.title = title;
    x.level = level;
    x.topics = topics;
    x.correction = correction;
    x.correctionConfig = correction.isEmpty() ? QString() : x.correctionConfig;
    const exercises::EncodedExercise e = exercises::encodeExercise(x);
    QCOMPARE(e.problem, problem);
    QTEST(e.record, "record");
    QTEST(e.character, "character");
    if (problem != EncodeProblem::None) {
        QVERIFY(e.bytes.isEmpty());
        return;
    }
    // What the browser reads back is what was given, blank topic lines left out.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("x.E31"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(e.bytes) == e.bytes.size());
    f.close();
    const exercises::ExerciseRead preview =
        exercises::readExerciseFile(path, ExerciseRecords::Preview);
    const exercises::ExerciseRead opening =
        exercises::readExerciseFile(path, ExerciseRecords::Statement);
    QVERIFY(preview.ok && opening.ok);
    QCOMPARE(preview.file.title, title);
    QCOMPARE(preview.file.level, level);
    QStringList expected;
    for (const QString& line : topics)
        if (!line.trimmed().isEmpty())
            expected << line;
    QCOMPARE(preview.file.topics, expected);
    QCOMPARE(preview.file.correction, correction);
    QCOMPARE(preview.file.corrected(), !correction.isEmpty());
    QCOMPARE(opening.file.statement, x.statement);
    QCOMPARE(opening.file.statementConfig, x.statementConfig);
}

QTEST_GUILESS_MAIN(TestExerciseFile)
#include "tst_exercisefile.moc"

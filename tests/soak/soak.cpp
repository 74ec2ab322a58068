// A long run of the real main window, headless: every reaction's micro animation, the
// advancement and cooling animations, the graph window, configuration saves and loads, and
// exercises opened, over and over. Resident memory and open file descriptors are sampled
// each minute; the run fails when either has grown by more than 2 % since minute 5.
//
//   thermivo_soak MINUTES
#include "configurations/configurationfile.h"
#include "macro/graphes.h"
#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "micro/micropanel.h"
#include "platform/programfolder.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <unistd.h>

namespace {

long residentKiB() {
    QFile f(QStringLiteral("/proc/self/statm"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = f.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLong() * (sysconf(_SC_PAGESIZE) / 1024) : 0;
}

long openDescriptors() {
    return static_cast<long>(
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot)
            .size());
}

// One round of everything a class does with the program.
void round(feuilleP& w, int n, const QString& folder, const QStringList& exercises) {
    const int reaction = 1 + n % 8;
    w.selectTab(1);
    w.selectReaction(reaction);
    MicroPanel* micro = w.micro();
    micro->Image4_Click();
    for (int i = 0; i < 400 && micro->timer1()->isActive(); ++i)
        micro->Timer1_Timer();
    micro->Image5_Click();

    w.selectTab(2);
    MacroPanel* macro = w.macro();
    macro->Image11_Click();
    for (int i = 0; i < 120; ++i)
        macro->Timer2_Timer();
    for (int i = 0; i < 110; ++i)
        macro->Timer3_Timer();

    macro::GraphInput input;
    input.maxAdvancement = w.state().MaxAdvancement;
    input.brokenBondsEnergy = w.state().BrokenBondsEnergy;
    input.formedBondsEnergy = w.state().FormedBondsEnergy;
    if (input.maxAdvancement > 0) {
        graphes g(input, &w);
        g.show();
        QApplication::processEvents();
        g.close();
    }

    configurations::ConfigurationData data;
    data.listIndex = static_cast<std::int16_t>(reaction - 1);
    data.amounts = {QStringLiteral("  2,5"), QStringLiteral("  1,0")};
    data.checked = {n % 2 == 0, false, true};
    data.isolated = n % 3 == 0;
    const QString path = folder + QStringLiteral("/soak.C10");
    if (const auto bytes = configurations::encodeConfiguration(data))
        configurations::writeConfigurationFile(path, *bytes);
    w.openConfiguration(path);

    if (!exercises.isEmpty())
        w.openFile(exercises.at(n % exercises.size()));
    w.selectTab(3);
    QApplication::processEvents();
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int minutes = argc > 1 ? QByteArray(argv[1]).toInt() : 10;
    QTemporaryDir dir;
    platform::setProgramFolderOverride(dir.path());

    // The exercises that ship with the program, when the build's program folder has them.
    QStringList exercises;
    const QDir shipped(QCoreApplication::applicationDirPath() + QStringLiteral("/exercices"));
    for (const QString& f : shipped.entryList({QStringLiteral("*.E31")}, QDir::Files))
        exercises << shipped.filePath(f);

    feuilleP w;
    w.setQuietShutdown(true);
    w.show();
    QApplication::processEvents();

    QElapsedTimer clock;
    clock.start();
    QList<long> rss, fds;
    long rounds = 0;
    while (clock.elapsed() < qint64(minutes) * 60000) {
        round(w, static_cast<int>(rounds++), dir.path(), exercises);
        if (clock.elapsed() >= qint64(rss.size() + 1) * 60000) {
            rss << residentKiB();
            fds << openDescriptors();
            std::printf("minute %lld: %ld rounds, resident %ld KiB, %ld descriptors\n",
                        static_cast<long long>(rss.size()), rounds, rss.last(), fds.last());
            std::fflush(stdout);
        }
    }
    w.close();
    if (rss.size() <= 5) {
        std::printf("soak: %ld rounds in %d minutes; growth is judged from minute 5 on\n", rounds,
                    minutes);
        return 0;
    }
    const double rssGrowth = 100.0 * (rss.last() - rss[4]) / rss[4];
    const double fdGrowth = 100.0 * (fds.last() - fds[4]) / fds[4];
    std::printf("soak: %ld rounds in %d minutes; since minute 5 resident memory %+.2f %%, "
                "descriptors %+.2f %%\n",
                rounds, minutes, rssGrowth, fdGrowth);
    return rssGrowth > 2.0 || fdGrowth > 2.0 ? 1 : 0;
}

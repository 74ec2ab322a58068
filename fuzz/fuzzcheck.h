#pragma once

#include <QDir>
#include <QString>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

// An invariant of a reader that does not hold: abort, so that libFuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "invariant broken: %s (%s:%d)\n", #condition, __FILE__,           \
                         __LINE__);                                                                \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

// A file of the given name in a folder of its own, on memory-backed storage where the system
// has it: the readers under test open their file anew at each call.
inline QString scratchFile(const QString& name) {
    static QTemporaryDir dir((QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                                        : QDir::tempPath()) +
                             QStringLiteral("/thermivo-fuzz-XXXXXX"));
    return dir.path() + QLatin1Char('/') + name;
}

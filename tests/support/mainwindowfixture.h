#pragma once

#include "mainwindow/feuillep.h"

#include <QSize>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

// The real main window as the UI tests start it: a fresh program folder of its own, a
// 1024 × 768 screen, shown and exposed; closed again without the shutdown questions.
inline bool openMainWindow(std::unique_ptr<QTemporaryDir>& dir, std::unique_ptr<feuilleP>& w) {
    dir = std::make_unique<QTemporaryDir>();
    qputenv("THERMIVO_PROGRAM_FOLDER", dir->path().toUtf8());
    w = std::make_unique<feuilleP>();
    w->setScreenSizeOverride(QSize(1024, 768));
    w->show();
    return QTest::qWaitForWindowExposed(w.get());
}

inline void closeMainWindow(std::unique_ptr<QTemporaryDir>& dir, std::unique_ptr<feuilleP>& w) {
    w->setQuietShutdown(true);
    w->close();
    w.reset();
    dir.reset();
}

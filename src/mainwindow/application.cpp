#include "mainwindow/application.h"

#include "platform/canvas.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

void setApplicationIcon() {
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/thermivo.svg")));
}

void setUpApplication(QApplication& app) {
    QApplication::setApplicationName(QStringLiteral("Thermivo"));
    QGuiApplication::setDesktopFileName(QStringLiteral("thermivo"));
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    auto* qtTranslator = new QTranslator(&app);
    if (qtTranslator->load(QLocale(QLocale::French), QStringLiteral("qtbase"), QStringLiteral("_"),
                           QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(qtTranslator);
    QFont font;
    font.setFamilies(platform::fontFamilies(QStringLiteral("Arial")));
    font.setPixelSize(platform::pointsToPixels(8));
    QApplication::setFont(font);
}

#pragma once

#include <QColor>
#include <QImage>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTest>

// Checks "x,y c" probes separated by blanks: the pixel at x,y has the colour `colours` gives
// for the letter c.
inline void checkProbes(const QImage& img, const QString& probes,
                        const QMap<QChar, QColor>& colours) {
    const QStringList parts = probes.split(QLatin1Char(' '));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QStringList xy = parts[i].split(QLatin1Char(','));
        const QColor got = img.pixelColor(xy[0].toInt(), xy[1].toInt());
        QVERIFY2(got == colours.value(parts[i + 1].at(0)),
                 qPrintable(parts[i] + QStringLiteral(" is ") + got.name()));
    }
}

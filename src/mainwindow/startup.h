#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <optional>
#include <vector>

// The main window is 800 × 600 pixels, centred, on screens wider than 850 pixels; on smaller
// screens it keeps its designed state and size.
std::optional<QRect> mainWindowGeometry(QSize screenPixels);

// Pieces of the welcome text with their format codes and their selection ranges, counted as the
// statement area counts them (CR LF is two characters).
struct WelcomeSegment {
    QString text;
    int format;
    int selStart;
    int selLength;
};
std::vector<WelcomeSegment> welcomeSegments();

// Hint shown when nothing else is pointed at.
QString defaultHint();
QString copyMessage();

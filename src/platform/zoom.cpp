#include "platform/zoom.h"

#include <QApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <private/qhighdpiscaling_p.h>

namespace platform {

namespace {
QSettings settings() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Thermivo"),
                     QStringLiteral("Thermivo"));
}
const QString ZoomKey = QStringLiteral("affichage/zoom");

// The native window keeps its old pixel size when the scale changes under it: give it the size
// its logical geometry now takes, lifting the fixed-size limits while it changes.
void refitNativeSize(QWidget* top) {
    QWindow* window = top->windowHandle();
    if (!window || !top->isVisible())
        return;
    const QSize min = top->minimumSize();
    const QSize max = top->maximumSize();
    window->setMinimumSize(QSize(0, 0));
    window->setMaximumSize(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    window->resize(top->size());
    window->setMinimumSize(min);
    window->setMaximumSize(max);
}
} // namespace

int fittingZoom(QSize available, QSize window) {
    int best = ZoomSteps.front();
    for (const int step : ZoomSteps)
        if (window.width() * step <= available.width() * 100 &&
            window.height() * step <= available.height() * 100)
            best = step;
    return best;
}

int neighbourZoom(int percent, int direction) {
    const auto* at = std::find(ZoomSteps.begin(), ZoomSteps.end(), percent);
    if (at == ZoomSteps.end())
        return ZoomSteps.front();
    if (direction > 0 && at + 1 != ZoomSteps.end())
        return *(at + 1);
    if (direction < 0 && at != ZoomSteps.begin())
        return *(at - 1);
    return percent;
}

int validZoom(int percent) {
    return std::find(ZoomSteps.begin(), ZoomSteps.end(), percent) != ZoomSteps.end() ? percent : 0;
}

Zoom& Zoom::instance() {
    static Zoom zoom;
    return zoom;
}

Zoom::Zoom() {
    // A projector plugged in during the lesson takes the zoom in force.
    if (auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(app, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
            if (percent_ != ZoomSteps.front())
                QHighDpiScaling::setScreenFactor(screen, percent_ / 100.0);
        });
}

void Zoom::apply(int percent) {
    if (!validZoom(percent) || percent == percent_)
        return;
    percent_ = percent;
    for (QScreen* screen : QGuiApplication::screens())
        QHighDpiScaling::setScreenFactor(screen, percent / 100.0);
    for (QWidget* top : QApplication::topLevelWidgets())
        refitNativeSize(top);
    emit changed(percent);
}

void Zoom::choose(int percent) {
    if (!validZoom(percent))
        return;
    apply(percent);
    remember(percent);
}

int Zoom::remembered() {
    return validZoom(settings().value(ZoomKey).toInt());
}

void Zoom::remember(int percent) {
    if (validZoom(percent))
        settings().setValue(ZoomKey, percent);
}

int Zoom::startingZoom(int requested, QSize window) {
    if (validZoom(requested))
        return requested;
    if (const int kept = remembered())
        return kept;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return ZoomSteps.front();
    // The screen's area as it is at 100 %, whatever scale is in force now.
    const QSize available = screen->availableGeometry().size() * screen->devicePixelRatio();
    return fittingZoom(available, window);
}

} // namespace platform

#pragma once

#include <QObject>
#include <QSize>
#include <array>

namespace platform {

// The zoom steps, in percent. Every window and drawing scales by the chosen step; drawings keep
// their logical coordinates and are drawn at the screen's resolution.
inline constexpr std::array<int, 5> ZoomSteps{100, 125, 150, 175, 200};

// The largest step at which a window of `window` logical pixels fits in `available` (screen
// pixels at 100 %); 100 when even that does not fit.
int fittingZoom(QSize available, QSize window);
// The step next to `percent` upwards (direction > 0) or downwards, staying within the steps.
int neighbourZoom(int percent, int direction);
// `percent` when it is a step, else 0.
int validZoom(int percent);

// The zoom of the whole program. Changing it rescales every screen, so that open windows and
// windows opened later all follow, and fits each open window's native size to its new scale.
class Zoom : public QObject {
    Q_OBJECT
public:
    static Zoom& instance();

    int percent() const { return percent_; }
    // Applies a step (other values are ignored). Emits changed when it differs.
    void apply(int percent);
    // The user's choice: applied and remembered for the next runs.
    void choose(int percent);

    // The zoom the user chose last time, 0 when never chosen.
    static int remembered();
    static void remember(int percent);
    // The zoom to start with: `requested` when valid (command line), else the remembered one,
    // else the step that fits the primary screen's available area for a window of `window`.
    static int startingZoom(int requested, QSize window);

signals:
    void changed(int percent);

private:
    Zoom();
    int percent_ = 100;
};

} // namespace platform

#pragma once

#include <QObject>
#include <functional>

class QAction;
class QLabel;
class QMenu;
class QPoint;
class QWidget;
struct AppState;

namespace platform {
class Surface;
}

// The copy menu `menucop` of the "Co&pier" button: each item puts one illustration on the
// clipboard as an image, then `info` confirms with CopyMessage.
class CopyMenu : public QObject {
    Q_OBJECT
public:
    struct Pictures {
        platform::Surface* micro = nullptr;   // Picmicro
        platform::Surface* diagram = nullptr; // Picture2
        platform::Surface* macro = nullptr;   // Picture4
    };

    CopyMenu(const Pictures& pictures, QLabel* info, const AppState& state, QWidget* window);

    QMenu* menucop() const { return menucop_; }
    void popup(const QPoint& globalPos);

    void copmicro_Click();
    void copdiagmic_Click();
    void copmac_Click();
    // "Exporter l'illustration…": the choice of picture, scale and file is the window's.
    void setExporter(std::function<void()> exporter) { exporter_ = std::move(exporter); }
    void exporter_Click();

private:
    void copy(platform::Surface* picture);

    Pictures pictures_;
    QLabel* info_;
    const AppState& state_;
    QMenu* menucop_;
    std::function<void()> exporter_;
};

#pragma once

#include <QObject>
#include <array>
#include <cstdint>
#include <functional>

struct AppState;
class QWidget;

namespace platform {
class Canvas;
class Surface;
} // namespace platform

// The hand-drawn tab strip "Onglets": Micro, Macro, Options. Widths follow the labels, the
// active one set in bold, so the edges are recomputed at every paint.
class TabStrip : public QObject {
    Q_OBJECT
public:
    TabStrip(AppState& state, platform::Surface* onglets, QObject* parent);

    // Panels shown under tabs 1, 2 and 3.
    void setPanels(QWidget* micro, QWidget* macro, QWidget* options);
    // Picture5.Refresh, run after a release on Micro or Macro.
    void setDataPanelRefresh(std::function<void()> refresh) {
        refreshDataPanel_ = std::move(refresh);
    }

    void Onglets_Paint(platform::Canvas& c);
    void Onglets_MouseUp(Qt::MouseButton button, Qt::KeyboardModifiers shift, double x, double y);

    const std::array<std::int16_t, 6>& tabEdges() const { return edges_; }
    float gap() const { return gap_; }
    int labelHeight() const { return h_; }

private:
    AppState& state_;
    platform::Surface* onglets_;
    std::array<QWidget*, 3> panels_{};
    std::array<std::int16_t, 6> edges_{};
    float gap_ = 0;
    int h_ = 0;
    std::function<void()> refreshDataPanel_;
};

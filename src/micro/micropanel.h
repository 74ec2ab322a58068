#pragma once

#include "mainwindow/context.h"
#include "micro/animation.h"
#include "micro/captions.h"

#include <QObject>
#include <array>
#include <cstdint>

class QLabel;
class QTimer;

namespace platform {
class ImageButton;
class Surface;
} // namespace platform

// The microscopic view: the Micro tab panel Picture3 with the equation banner, the molecules
// (Picmicro), the energy diagram (Picture2), the four animation buttons and the energy readout
// Label2; the data panel Picture5 under the tabs; and Timer1, which drives the animation.
class MicroPanel : public QObject {
    Q_OBJECT
public:
    // Sizes the Micro tab is laid out for (the tab strip gives Picture3 this size).
    static constexpr int PanelWidth = 452;
    static constexpr int PanelHeight = 386;

    MicroPanel(MainContext& ctx, QObject* parent);

    platform::Surface* picture3() const { return picture3_; }
    platform::Surface* picture5() const { return picture5_; }
    platform::Surface* picmicro() const { return picmicro_; }
    platform::Surface* picture2() const { return picture2_; }
    QLabel* label2() const { return label2_; }
    QTimer* timer1() const { return timer1_; }
    // Image4 .. Image7.
    platform::ImageButton* image(int n) const;
    // The animation without its drawing (tests seed its random source).
    micro::Animation& animation() { return animation_; }

    // Draws step AnimStep of the reaction and moves AnimStep to the next one.
    void animicro(std::int16_t& reactionIndex);

    void Image4_Click(); // "Animation": run (from the start again when at the end)
    void Image5_Click(); // "État initial"
    void Image6_Click(); // "État final"
    void Image7_Click(); // "Pause"
    void Timer1_Timer();
    // What each option does to this view: 0 back to the initial state, 1 one more step,
    // 2 the data panel redrawn.
    void Check1_Click(int index);

private:
    bool option(int index) const;
    std::int16_t currentFinalStep() const;

    MainContext& ctx_;
    micro::Animation animation_;
    micro::MoleculeFrame frame_;
    micro::EnergyDiagram diagram_{};
    bool hasDiagram_ = false;

    platform::Surface* picture3_ = nullptr;
    platform::Surface* picmicro_ = nullptr;
    platform::Surface* picture2_ = nullptr;
    platform::Surface* picture5_ = nullptr;
    QLabel* label2_ = nullptr;
    std::array<platform::ImageButton*, 4> images_{};
    QTimer* timer1_ = nullptr;
};

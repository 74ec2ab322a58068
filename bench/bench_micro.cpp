// One step of the molecule animation for butane (54 atoms), with the molecules and the energy
// diagram redrawn and repainted, as each Timer1 tick does it.
#include "chemistry/catalogue.h"
#include "mainwindow/context.h"
#include "micro/animation.h"
#include "micro/micropanel.h"
#include "platform/surface.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QWidget>
#include <benchmark/benchmark.h>

#include "qtbenchmarkmain.h"
#include "support/standinwindow.h"
#include <memory>

namespace {

constexpr int Butane = 4;

struct Tab : StandInWindow {
    MicroPanel* panel = nullptr;

    Tab() : StandInWindow(Butane) {
        panel = new MicroPanel(ctx, window.get());
        panel->picture3()->move(4, 20);
        window->show();
        step();
    }

    void step() {
        std::int16_t index = Butane;
        panel->animicro(index);
    }
    void repaint() {
        panel->picmicro()->repaint();
        panel->picture2()->repaint();
    }
};

enum class Phase { Initial, Cutting, Drift, Forming, Final };

// Puts the counter where the phase is drawn (all reactant bonds, a few cut, free atoms,
// most product bonds, all of them).
std::int16_t stepOf(Phase phase) {
    switch (phase) {
    case Phase::Initial:
        return 0;
    case Phase::Cutting:
        return 5;
    case Phase::Drift:
        return 60;
    case Phase::Forming:
        return 130;
    case Phase::Final:
        return 135;
    }
    return 0;
}

void BM_Animicro(benchmark::State& st, Phase phase, bool repaint) {
    Tab tab;
    for (auto _ : st) {
        tab.state.AnimStep = stepOf(phase);
        tab.step();
        if (repaint)
            tab.repaint();
    }
    benchmark::DoNotOptimize(tab.state.CurrentEnergy);
}

// The step logic alone, without any drawing.
void BM_StepLogic(benchmark::State& st) {
    AppState s;
    const chemistry::BondTotals t = chemistry::computeTotals(Butane);
    s.BrokenBondsEnergy = t.broken;
    s.FormedBondsEnergy = t.formed;
    micro::Animation anim(s);
    micro::StepOutcome out;
    anim.step(Butane, false, out);
    for (auto _ : st) {
        s.AnimStep = 60;
        anim.step(Butane, false, out);
        benchmark::DoNotOptimize(out);
    }
}

BENCHMARK_CAPTURE(BM_Animicro, initial_repainted, Phase::Initial, true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Animicro, cutting_repainted, Phase::Cutting, true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Animicro, drift_repainted, Phase::Drift, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Animicro, forming_repainted, Phase::Forming, true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Animicro, final_repainted, Phase::Final, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Animicro, drift_drawn_only, Phase::Drift, false)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StepLogic)->Unit(benchmark::kMicrosecond);

} // namespace

THERMIVO_QT_BENCHMARK_MAIN()

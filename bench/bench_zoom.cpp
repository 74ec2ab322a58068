// One drift step of the butane animation with the molecules and the diagram redrawn and
// repainted, at a zoom of 200 %: four times the pixels of the same drawing.
#include "mainwindow/context.h"
#include "micro/micropanel.h"
#include "platform/surface.h"

#include <QApplication>
#include <QWidget>
#include <benchmark/benchmark.h>

#include "support/standinwindow.h"

namespace {

constexpr int Butane = 4;
constexpr std::int16_t DriftStep = 60;

void BM_DriftRepainted(benchmark::State& st) {
    StandInWindow window(Butane);
    auto* panel = new MicroPanel(window.ctx, window.window.get());
    panel->picture3()->move(4, 20);
    window.window->show();
    std::int16_t index = Butane;
    panel->animicro(index);
    st.counters["ratio"] = panel->picmicro()->devicePixelRatioF();
    for (auto _ : st) {
        window.state.AnimStep = DriftStep;
        index = Butane;
        panel->animicro(index);
        panel->picmicro()->repaint();
        panel->picture2()->repaint();
    }
    benchmark::DoNotOptimize(window.state.CurrentEnergy);
}

BENCHMARK(BM_DriftRepainted)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

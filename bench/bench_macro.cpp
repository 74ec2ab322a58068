// One recomputation of the Macro tab's balance, gauges included, as the slider drags it.
#include "chemistry/catalogue.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "platform/surface.h"

#include <QApplication>
#include <QComboBox>
#include <QRadioButton>
#include <QScrollBar>
#include <QWidget>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

struct Tab {
    AppState state;
    MainContext ctx{state};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    MacroPanel* panel = nullptr;

    Tab(int reaction, bool open) {
        ctx.window = window.get();
        ctx.Combo1 = new QComboBox(window.get());
        ctx.Combo1->setProperty("Tag", QString::number(reaction));
        ctx.Onglets = new platform::Surface(window.get());
        ctx.Onglets->setGeometry(0, 0, 460, 410);
        ctx.Option1[0] = new QRadioButton(window.get());
        ctx.Option1[1] = new QRadioButton(window.get());
        ctx.Option1[open ? 1 : 0]->setChecked(true);
        panel = new MacroPanel(ctx, window.get());
        panel->frame2()->setGeometry(4, 20, 452, 386);
        const chemistry::BondTotals t = chemistry::computeTotals(reaction);
        state.BrokenBondsEnergy = t.broken;
        state.FormedBondsEnergy = t.formed;
        window->show();
        panel->prepapic4();
        panel->majqant();
    }
};

void BM_Majqant(benchmark::State& st, int reaction, bool open, bool repaint) {
    Tab tab(reaction, open);
    int v = 0;
    for (auto _ : st) {
        // Stay off the end so that the open system does not start cooling.
        v = (v + 37) % 9999;
        tab.panel->hscroll1()->blockSignals(true);
        tab.panel->hscroll1()->setValue(v);
        tab.panel->hscroll1()->blockSignals(false);
        tab.panel->majqant();
        if (repaint) // the labels and the picture as they reach the screen
            QApplication::processEvents();
    }
    benchmark::DoNotOptimize(tab.state.MaxAdvancement);
}

BENCHMARK_CAPTURE(BM_Majqant, methane_open, 1, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Majqant, butane_isolated, 4, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Majqant, methane_open_repainted, 1, true, true)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

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

#include "qtbenchmarkmain.h"
#include "support/standinwindow.h"
#include <memory>

namespace {

struct Tab : StandInWindow {
    MacroPanel* panel = nullptr;

    Tab(int reaction, bool open) : StandInWindow(reaction, open) {
        panel = new MacroPanel(ctx, window.get());
        panel->frame2()->setGeometry(4, 20, 452, 386);
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

THERMIVO_QT_BENCHMARK_MAIN()

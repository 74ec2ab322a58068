// Opening the graph window for butane at 100 000 mol of each reactant: the window built,
// tracegraphe (scales, plot, table) and the first paint on screen, then closed.
#include "chemistry/catalogue.h"
#include "macro/balance.h"
#include "macro/graph.h"
#include "macro/graphes.h"

#include <QApplication>
#include <benchmark/benchmark.h>

#include "qtbenchmarkmain.h"

namespace {

constexpr int Butane = 4;

macro::GraphInput butane(bool open) {
    const macro::Stoichiometry nu = *macro::stoichiometry(Butane);
    const chemistry::BondTotals t = chemistry::computeTotals(Butane);
    return {macro::maxAdvancement(100000.0F, 100000.0F, nu), t.broken, t.formed, open};
}

void BM_OpenGraph(benchmark::State& st) {
    const macro::GraphInput input = butane(true);
    for (auto _ : st) {
        graphes window(input);
        window.show(); // tracegraphe runs as it opens
        QApplication::processEvents();
        benchmark::DoNotOptimize(window.graph());
        window.close();
    }
}

// The arithmetic alone: scales, table values and texts, curve points.
void BM_GraphArithmetic(benchmark::State& st) {
    const macro::GraphInput input = butane(true);
    for (auto _ : st) {
        const macro::EnergyGraph g(input);
        benchmark::DoNotOptimize(g.curve());
    }
}

BENCHMARK(BM_OpenGraph)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(BM_GraphArithmetic)->Unit(benchmark::kMicrosecond);

} // namespace

THERMIVO_QT_BENCHMARK_MAIN()

#include "platform/numberformat.h"

#include <benchmark/benchmark.h>

// The value table of the graph window formats two numbers per row and the advancement
// animation three to five labels per 20 ms tick, so the formatter sits on hot paths.

static void BM_formatAmount(benchmark::State& state) {
    const QString pattern = QStringLiteral("### ### ##0.0##");
    double x = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::formatNumber(x, pattern));
        x += 12.345;
        if (x > 100000)
            x = 0;
    }
}
BENCHMARK(BM_formatAmount);

static void BM_formatScientific(benchmark::State& state) {
    const QString pattern = QStringLiteral("#.#######E+00");
    double x = 1.234567e-9;
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::formatNumber(x, pattern));
        x *= 3.7;
        if (x > 1e30)
            x = 1.234567e-9;
    }
}
BENCHMARK(BM_formatScientific);

static void BM_parseFrench(benchmark::State& state) {
    const QString text = QStringLiteral(" 100 000,0");
    for (auto _ : state) {
        double v = 0;
        benchmark::DoNotOptimize(platform::parseFrench(text, &v));
        benchmark::DoNotOptimize(v);
    }
}
BENCHMARK(BM_parseFrench);

BENCHMARK_MAIN();

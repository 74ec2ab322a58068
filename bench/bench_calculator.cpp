#include "calculator/evaluator.h"
#include "calculator/numbertext.h"

#include <benchmark/benchmark.h>

namespace {

void evaluate(benchmark::State& state, const char* expression) {
    const QString input = QString::fromLatin1(expression);
    for (auto _ : state) {
        QString text = input;
        std::int16_t code = 0;
        calculator::EvaluateExpression(text, code, 0);
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(code);
    }
}

// A typical keypad expression: goal under 20 microseconds.
void BM_ShortExpression(benchmark::State& state) {
    evaluate(state, "2+3*4");
}
BENCHMARK(BM_ShortExpression)->Repetitions(9)->ReportAggregatesOnly(true);

// A function without argument never reduces and runs into the cycle bound: goal under 2 ms.
void BM_CycleBound(benchmark::State& state) {
    evaluate(state, "cos");
}
BENCHMARK(BM_CycleBound)->Repetitions(9)->ReportAggregatesOnly(true);

void BM_NumberTextRoundTrip(benchmark::State& state) {
    double x = 1.0 / 3;
    for (auto _ : state) {
        const double back = calculator::NumberValue(calculator::NumberText(x));
        benchmark::DoNotOptimize(back);
    }
}
BENCHMARK(BM_NumberTextRoundTrip);

} // namespace

BENCHMARK_MAIN();

#pragma once

#include <QApplication>
#include <benchmark/benchmark.h>

// main() for benchmarks that draw widgets: a headless application around Google Benchmark.
#define THERMIVO_QT_BENCHMARK_MAIN()                                                               \
    int main(int argc, char** argv) {                                                              \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                   \
        QApplication app(argc, argv);                                                              \
        benchmark::Initialize(&argc, argv);                                                        \
        if (benchmark::ReportUnrecognizedArguments(argc, argv))                                    \
            return 1;                                                                              \
        benchmark::RunSpecifiedBenchmarks();                                                       \
        benchmark::Shutdown();                                                                     \
        return 0;                                                                                  \
    }

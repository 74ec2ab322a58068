#include "configurations/configurationfile.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

// Saving and reopening a configuration, the engine part of "Enregistrer" and "Ouvrir": the
// controls' values into the eight records, the file written beside the old one and put in its
// place, then read back and checked record by record. The goal is 1 ms per round trip.

static void BM_SaveAndLoad(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("essai.C10"));
    configurations::ConfigurationData data;
    data.listIndex = 3;
    data.amounts = {QStringLiteral("  2,5"), QStringLiteral("  1,0")};
    data.checked = {false, false, true};
    data.isolated = true;
    for (auto _ : state) {
        const auto bytes = configurations::encodeConfiguration(data);
        if (!bytes || !configurations::writeConfigurationFile(path, *bytes)) {
            state.SkipWithError("write failed");
            break;
        }
        const auto plan = configurations::planLoad(configurations::readConfigurationFile(path));
        if (!plan.signatureValid || plan.failedRecord != 0) {
            state.SkipWithError("read failed");
            break;
        }
        benchmark::DoNotOptimize(plan);
    }
}
BENCHMARK(BM_SaveAndLoad)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

BENCHMARK_MAIN();

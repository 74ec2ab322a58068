// Whole-process start-up: launch, first paint, grab, normal shutdown. The grab is written as
// an uncompressed BMP so that neither program is timed on PNG compression of its pixels.
// Reports wall time per run and the peak resident memory of the child.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

struct RunResult {
    double seconds = 0;
    long maxRssKb = 0;
    bool ok = false;
};

RunResult runOnce(const char* exe, const std::string& shot) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::vector<std::string> args = {exe, "--screenshot", shot};
    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", 0x1 /* O_WRONLY */, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    RunResult r;
    if (posix_spawn(&pid, exe, &actions, nullptr, argv.data(), environ) != 0)
        return r;
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    r.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    r.maxRssKb = usage.ru_maxrss;
    r.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return r;
}

void measure(benchmark::State& state, const char* exe) {
    long peak = 0;
    for (auto _ : state) {
        const RunResult r = runOnce(exe, "/tmp/thermivo-bench-startup.bmp");
        if (!r.ok) {
            state.SkipWithError("the program did not start and stop cleanly");
            break;
        }
        state.SetIterationTime(r.seconds);
        peak = std::max(peak, r.maxRssKb);
    }
    state.counters["peak_MB"] = static_cast<double>(peak) / 1024.0;
}

void BM_BareQtWindow(benchmark::State& state) {
    measure(state, BARE_EXE);
}
void BM_ThermivoStartup(benchmark::State& state) {
    measure(state, THERMIVO_EXE);
}

} // namespace

BENCHMARK(BM_BareQtWindow)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
BENCHMARK(BM_ThermivoStartup)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

BENCHMARK_MAIN();

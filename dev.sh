#!/usr/bin/env bash
# Thermivo's one entry point for people and CI.
#   ./dev.sh run     install what is missing, build, start Thermivo
#   ./dev.sh test    install what is missing, build, run the whole test suite headless
#   ./dev.sh bench   install what is missing, build optimised, run the benchmarks
#   ./dev.sh shots   render the main window for every reaction and tab into shots/
#   ./dev.sh helpshots  render the pictures of the help pages into data/aide/images/
#   ./dev.sh exercises  rebuild data/exercices/ and data/tervox.PEM from tools/exercices/
#   ./dev.sh deb     build the Debian package thermivo_VERSION_ARCH.deb in build-release/
#   ./dev.sh fuzz [SECONDS]  build the libFuzzer targets and run each for SECONDS (default 60)
#   ./dev.sh test-asan       build the whole test suite with ASan and UBSan and run it
#   ./dev.sh soak [MINUTES]  run the real window headless for MINUTES (default 60), watching
#                            memory and file descriptors
set -euo pipefail
cd "$(dirname "$0")"

PACKAGES=(cmake ninja-build g++ qt6-base-dev qt6-base-private-dev qt6-base-dev-tools libgl-dev qt6-svg-dev
          qt6-translations-l10n fonts-liberation fonts-dejavu-core libbenchmark-dev
          xvfb xauth
          desktop-file-utils appstream xdg-utils shared-mime-info dpkg-dev
          clang libfuzzer-14-dev xxd
          libpoppler-qt6-dev python3
          dbus at-spi2-core python3-pyatspi)

install_missing() {
    local missing=()
    for p in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
}

build() {
    local dir=$1 type=$2
    cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="$type" "${@:3}" >/dev/null
    cmake --build "$dir" -j"$(nproc)"
}

# Runs every fuzz target for $1 seconds on its seed corpus and dictionary. A crash, a broken
# invariant or an input slower than 5 s lands in fuzz/findings/TARGET/ and is printed as hex;
# the function then fails.
run_fuzzers() {
    local seconds=$1 failed=0
    for exe in build-fuzz/fuzz/fuzz_*; do
        [ -x "$exe" ] && [ -f "$exe" ] || continue
        local name=${exe##*/fuzz_}
        local corpus=build-fuzz/corpus/$name findings=fuzz/findings/$name
        mkdir -p "$corpus" "$findings"
        local dict=()
        [ -f "fuzz/$name.dict" ] && dict=(-dict="fuzz/$name.dict")
        # A target's own flags (input size) in fuzz/TARGET.options, one per line.
        local options=()
        [ -f "fuzz/$name.options" ] && mapfile -t options <"fuzz/$name.options"
        local log=build-fuzz/$name.log
        if "$exe" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048 -print_final_stats=1 \
            "${dict[@]}" "${options[@]}" -artifact_prefix="$findings/" "$corpus" "fuzz/corpus/$name" >"$log" 2>&1; then
            local runs rate
            runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
            rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
            echo "fuzz_$name: ${runs:-?} executions, ${rate:-?}/s, no finding"
        else
            failed=1
            echo "fuzz_$name: FINDING"
            grep -E "invariant broken|ERROR|SUMMARY" "$log" | head -5
            for f in "$findings"/*; do
                [ -f "$f" ] || continue
                echo "input $f:"
                xxd "$f" | head -40
            done
        fi
    done
    return $failed
}

case "${1:-run}" in
run)
    install_missing
    build build RelWithDebInfo
    if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
        echo "No display: running Thermivo on a virtual screen (xvfb-run)."
        exec xvfb-run -a -s "-screen 0 1024x768x24" ./build/bin/thermivo "${@:2}"
    fi
    exec ./build/bin/thermivo "${@:2}"
    ;;
test)
    install_missing
    build build RelWithDebInfo
    cd build && ctest --output-on-failure -j"$(nproc)"
    ;;
bench)
    install_missing
    build build-release Release -DTHERMIVO_BUILD_TESTS=OFF
    export QT_QPA_PLATFORM=offscreen
    for b in build-release/bench/bench_*; do
        if [ -f "$b" ] && [ -x "$b" ]; then
            "$b" --benchmark_min_time=0.2
        fi
    done
    ;;
deb)
    install_missing
    build build-release Release -DTHERMIVO_BUILD_TESTS=OFF -DTHERMIVO_BUILD_BENCH=OFF
    (cd build-release && cpack -G DEB >/dev/null)
    ls build-release/thermivo_*.deb
    ;;
fuzz)
    install_missing
    cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
        -DTHERMIVO_FUZZ=ON -DTHERMIVO_BUILD_TESTS=OFF -DTHERMIVO_BUILD_BENCH=OFF >/dev/null
    cmake --build build-fuzz --target fuzz_all -j"$(nproc)"
    run_fuzzers "${2:-60}"
    ;;
test-asan)
    install_missing
    build build-asan Debug -DTHERMIVO_SANITIZE=ON -DTHERMIVO_BUILD_BENCH=OFF
    export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
    export LSAN_OPTIONS=suppressions=$PWD/tests/lsan.supp:print_suppressions=0
    cd build-asan && ctest --output-on-failure -j"$(nproc)"
    ;;
soak)
    install_missing
    build build RelWithDebInfo
    ./build/bin/thermivo_soak "${2:-60}"
    ;;
shots)
    install_missing
    build build RelWithDebInfo
    mkdir -p shots
    for r in 1 2 3 4 5 6 7 8; do
        for t in 1 2 3; do
            QT_QPA_PLATFORM=offscreen ./build/bin/thermivo --screenshot "shots/reaction${r}-tab${t}.png" \
                --reaction "$r" --tab "$t" 2>/dev/null
        done
    done
    echo "Pictures in shots/"
    ;;
helpshots)
    install_missing
    build build RelWithDebInfo
    # Absolute: the exercise browser changes the current folder to the one it shows.
    out=$PWD/data/aide/images
    mkdir -p "$out"
    shot() {
        local name=$1
        shift
        QT_QPA_PLATFORM=offscreen ./build/bin/thermivo --screenshot "$out/$name.png" "$@" 2>/dev/null
    }
    shot fenetre --reaction 1 --tab 1 --statement data/exercices/prise_en_main.rtf
    shot micro --reaction 1 --tab 1 --click Image6 --widget Onglets
    shot donnees --reaction 1 --tab 1 --click Check1_2 --widget Picture5
    shot macro --reaction 1 --tab 2 --click Image9 --widget Onglets
    shot options --reaction 1 --tab 3 --widget Onglets
    shot graphe --reaction 1 --tab 2 --click Command3
    shot calculatrice --click Command8
    # The exercise windows show folders: a copy of the program folder and a teacher's home at
    # fixed places, so that the pictures do not change with the checkout.
    place=/tmp/thermivo-aide
    rm -rf "$place"
    mkdir -p "$place/Thermivo" "$place/prof/Documents"
    cp -r build/bin/exercices "$place/Thermivo/"
    HOME="$place/prof" shot exercice_ouvrir --program-folder "$place/Thermivo" --click openexo
    HOME="$place/prof" shot exercice_creer --program-folder "$place/Thermivo" --click CreerExercice
    rm -rf "$place"
    echo "Pictures in data/aide/images/"
    ;;
exercises)
    python3 tools/make_exercises.py
    ;;
*)
    echo "usage: $0 run|test|bench|shots|helpshots|exercises|deb|fuzz [SECONDS]|test-asan|soak [MINUTES]" >&2
    exit 2
    ;;
esac

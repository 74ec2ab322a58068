#!/usr/bin/env bash
# Thermivo's one entry point for people and CI.
#   ./dev.sh run     install what is missing, build, start Thermivo
#   ./dev.sh test    install what is missing, build, run the whole test suite headless
#   ./dev.sh bench   install what is missing, build optimised, run the benchmarks
#   ./dev.sh shots   render the main window for every reaction and tab into shots/
set -euo pipefail
cd "$(dirname "$0")"

PACKAGES=(cmake ninja-build g++ qt6-base-dev qt6-base-dev-tools libgl-dev
          qt6-translations-l10n fonts-liberation fonts-dejavu-core libbenchmark-dev
          xvfb xauth libpoppler-qt6-dev)

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
*)
    echo "usage: $0 run|test|bench|shots" >&2
    exit 2
    ;;
esac

#!/usr/bin/env bash
# Installs Thermivo into a temporary DESTDIR and checks it as a desktop would find it.
# Usage: install_tree.sh BUILD_DIR
set -uo pipefail
build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
passed=0 failed=0 skipped=0
ok() { echo "PASS: $1"; passed=$((passed + 1)); }
ko() { echo "FAIL: $1"; failed=$((failed + 1)); }
skip() { echo "SKIP: $1"; skipped=$((skipped + 1)); }
check() { local what=$1; shift; if "$@"; then ok "$what"; else ko "$what"; fi; }

DESTDIR="$root" cmake --install "$build" --prefix /usr >/dev/null || { echo "FAIL: install"; exit 1; }
usr="$root/usr"

for f in bin/thermivo share/thermivo/README.txt share/thermivo/aide/index.html \
         share/applications/thermivo.desktop \
         share/mime/packages/thermivo.xml share/metainfo/fr.orbitex.thermivo.metainfo.xml \
         share/icons/hicolor/scalable/apps/thermivo.svg \
         share/icons/hicolor/48x48/apps/thermivo.png share/icons/hicolor/128x128/apps/thermivo.png \
         share/icons/hicolor/256x256/apps/thermivo.png; do
    check "installed $f" test -s "$usr/$f"
done
check "the executable is executable" test -x "$usr/bin/thermivo"
png_size() { python3 -c 'import struct,sys; print("%dx%d" % struct.unpack(">II", open(sys.argv[1], "rb").read(24)[16:24]))' "$1"; }
for size in 48 128 256; do
    check "icon ${size} is ${size}x${size}" \
        test "$(png_size "$usr/share/icons/hicolor/${size}x${size}/apps/thermivo.png")" = "${size}x${size}"
done

if command -v desktop-file-validate >/dev/null; then
    check "desktop entry validates" desktop-file-validate "$usr/share/applications/thermivo.desktop"
else
    skip "desktop-file-validate is not installed (./dev.sh installs desktop-file-utils)"
fi
if command -v appstreamcli >/dev/null; then
    check "metainfo validates" appstreamcli validate --no-net \
        "$usr/share/metainfo/fr.orbitex.thermivo.metainfo.xml"
else
    skip "appstreamcli is not installed (./dev.sh installs appstream)"
fi

if command -v xdg-mime >/dev/null && command -v update-mime-database >/dev/null; then
    export XDG_DATA_HOME="$root/xdg" XDG_DATA_DIRS="$root/xdg:/usr/share"
    mkdir -p "$XDG_DATA_HOME/mime/packages"
    cp "$usr/share/mime/packages/thermivo.xml" "$XDG_DATA_HOME/mime/packages/"
    update-mime-database "$XDG_DATA_HOME/mime" >/dev/null 2>&1
    printf '\x05\x00TERVO' > "$root/essai.C10"
    printf 'x' > "$root/exo1.E31"
    printf '\x05\x00TERVO' > "$root/sans-extension"
    check "a .C10 file is a configuration" \
        test "$(xdg-mime query filetype "$root/essai.C10")" = application/x-thermivo-configuration
    check "a .E31 file is an exercise" \
        test "$(xdg-mime query filetype "$root/exo1.E31")" = application/x-thermivo-exercise
    check "the TERVO signature at byte 2 alone is a configuration" \
        test "$(xdg-mime query filetype "$root/sans-extension")" = application/x-thermivo-configuration
else
    skip "xdg-mime is not installed (./dev.sh installs xdg-utils)"
fi

# The installed program finds its program folder beside bin/ and writes TEMPKN.TMP there.
(
    unset THERMIVO_PROGRAM_FOLDER
    cd "$root" && QT_QPA_PLATFORM=offscreen TMPDIR="$root" "$usr/bin/thermivo" \
        --screenshot "$root/shot.png" --reaction 2 --tab 2 >/dev/null 2>&1
)
check "the installed program renders its window" test -s "$root/shot.png"
check "the installed program writes TEMPKN.TMP in share/thermivo" \
    test -s "$usr/share/thermivo/TEMPKN.TMP"

# A second launch with a file hands it to the running copy and ends at once.
(
    unset THERMIVO_PROGRAM_FOLDER
    export QT_QPA_PLATFORM=offscreen TMPDIR="$root" USER=thermivo-install-test
    mkdir -p "$root/run"
    printf '\x05\x00TERVO' > "$root/run/essai.C10"
    "$usr/bin/thermivo" >/dev/null 2>&1 &
    first=$!
    for _ in $(seq 50); do [ -S "$root/thermivo-$USER" ] && break; sleep 0.1; done
    cd "$root/run" && timeout 10 "$usr/bin/thermivo" essai.C10 >/dev/null 2>&1
    echo $? > "$root/second.rc"
    kill -0 "$first" 2>/dev/null && echo alive > "$root/first.state"
    kill "$first" 2>/dev/null
    wait "$first" 2>/dev/null
)
check "a second launch with a file hands it over and ends" test "$(cat "$root/second.rc")" = 0
check "the first copy keeps running" test "$(cat "$root/first.state" 2>/dev/null)" = alive

echo "$passed passed, $failed failed, $skipped skipped"
[ "$failed" -eq 0 ]

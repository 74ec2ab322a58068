#!/bin/bash
# The main window as a screen reader sees it: the real program on a virtual X screen, with
# Qt's accessibility bridge talking AT-SPI on a private D-Bus session, read through pyatspi.
# Skips (exit 77) where a piece is missing, saying which.
bin="$1"
here="$(cd "$(dirname "$0")" && pwd)"
# Debian's own Python carries python3-pyatspi, whatever python3 comes first in PATH.
py=/usr/bin/python3
[ -x "$py" ] || py=python3
missing=()
command -v Xvfb >/dev/null || missing+=("Xvfb (xvfb)")
command -v dbus-run-session >/dev/null || missing+=("dbus-run-session (dbus)")
[ -x /usr/libexec/at-spi-bus-launcher ] || missing+=("at-spi-bus-launcher (at-spi2-core)")
"$py" -c "import pyatspi" 2>/dev/null || missing+=("pyatspi (python3-pyatspi)")
if [ ${#missing[@]} -gt 0 ]; then
    echo "SKIP: the screen-reader test needs ${missing[*]}; see the README's set-up."
    exit 77
fi
exec dbus-run-session -- "$py" "$here/atspi_names.py" "$bin"

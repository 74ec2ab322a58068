"""Reads the main window's accessible names and descriptions through AT-SPI (see
atspi_names.sh, which runs this inside a private D-Bus session)."""

import os
import signal
import subprocess
import sys
import tempfile
import time

WAIT_SECONDS = 30


def start_display():
    read_fd, write_fd = os.pipe()
    xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write_fd), "-screen", "0", "1280x1024x24",
                             "-nolisten", "tcp"], pass_fds=[write_fd], stderr=subprocess.DEVNULL)
    os.close(write_fd)
    number = b""
    while not number.endswith(b"\n"):
        chunk = os.read(read_fd, 16)
        if not chunk:
            break
        number += chunk
    os.close(read_fd)
    return xvfb, ":" + number.decode().strip()


def wait_for(what, find):
    deadline = time.monotonic() + WAIT_SECONDS
    while time.monotonic() < deadline:
        found = find()
        if found:
            return found
        time.sleep(0.2)
    raise SystemExit("FAIL: " + what)


def walk(node, depth=0):
    if node is None or depth > 40:
        return
    yield node
    for i in range(node.childCount):
        try:
            child = node.getChildAtIndex(i)
        except Exception:
            continue
        yield from walk(child, depth + 1)


def main():
    binary = sys.argv[1]
    xvfb, display = start_display()
    launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
                                stderr=subprocess.DEVNULL)
    folder = tempfile.TemporaryDirectory()
    env = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", QT_ACCESSIBILITY="1",
               QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", THERMIVO_PROGRAM_FOLDER=folder.name)
    app = None
    failures = []
    try:
        os.environ["DISPLAY"] = display
        import pyatspi

        app = subprocess.Popen([binary], env=env, stderr=subprocess.DEVNULL)

        def thermivo():
            desktop = pyatspi.Registry.getDesktop(0)
            for i in range(desktop.childCount):
                a = desktop.getChildAtIndex(i)
                if a is not None and a.name == "Thermivo":
                    return a
            return None

        root = wait_for("Thermivo never appeared on the accessibility bus", thermivo)

        def by_name():
            names = {}
            for node in walk(root):
                try:
                    names.setdefault(node.name, node)
                except Exception:
                    pass
            return names if "Molécules" in names else None

        nodes = wait_for("the window's controls never appeared", by_name)
        if os.environ.get("ATSPI_DUMP"):
            print(sorted((n, v.getRoleName()) for n, v in nodes.items()))
        # A combo box says its current item; its label is the one linked to it.
        expected = ["Réaction étudiée :", "Combustion complète du méthane dans le dioxygène",
                    "Molécules", "Diagramme énergétique", "Animation",
                    "État initial", "État final", "Pause", "Onglets Micro, Macro et Options",
                    "Énoncé", "Copier", "Aide", "Fermer", "Avancement",
                    "Quantité initiale du réactif 1 (mol)", "Système et milieu extérieur"]
        for name in expected:
            if name not in nodes:
                failures.append("no control named %r" % name)
        controls = {"push button", "check box", "radio button", "text", "scroll bar",
                    "combo box", "list", "page tab list", "slider"}
        for node in walk(root):
            try:
                if node.getRoleName() in controls and not node.name.strip():
                    failures.append("a %s without a name" % node.getRoleName())
            except Exception:
                pass

        def description(name):
            return lambda: nodes[name].description if name in nodes else ""

        start = wait_for("Picmicro has no description", description("Molécules"))
        for part in ["dans le dioxygène", "Phase : état initial", "Liaisons rompues : 0 sur"]:
            if part not in start:
                failures.append("Picmicro's description %r lacks %r" % (start, part))
        macro = description("Système et milieu extérieur")()
        for part in ["Système ouvert", "Avancement x = 0,0 mol", "ΔE = 0,0 kJ"]:
            if part not in macro:
                failures.append("Picture4's description %r lacks %r" % (macro, part))

        # The view changes: the final state, pressed as a screen reader presses a button.
        final = nodes.get("État final")
        if final is not None:
            final.queryAction().doAction(0)

            def ended():
                d = description("Molécules")()
                return d if "état final" in d else None

            end = wait_for("Picmicro's description did not follow the animation", ended)
            if os.environ.get("ATSPI_DUMP"):
                print(start, macro, end, description("Diagramme énergétique")(), sep="\n")
            if "Dernière liaison formée" not in end:
                failures.append("the final description %r has no last bond" % end)
            diagram = description("Diagramme énergétique")()
            if "10⁻¹⁸ J" not in diagram or "-" not in diagram:
                failures.append("Picture2's description %r has no energy" % diagram)
    finally:
        if app is not None:
            app.send_signal(signal.SIGTERM)
            app.wait(10)
        launcher.terminate()
        launcher.wait(10)
        xvfb.terminate()
        xvfb.wait(10)
    for f in failures:
        print("FAIL:", f)
    if failures:
        sys.exit(1)
    print("PASS: names and descriptions read through AT-SPI")


main()

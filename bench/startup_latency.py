#!/usr/bin/python3
"""How long the program's main thread keeps a caller waiting while it starts on a loaded machine.

A person's desktop asks the main thread all the time (input, the window manager's ping); here the
probe is a D-Bus call that only the main thread answers (introspecting the program's object), every
20 ms from the moment the program is on the bus. The reference, asked in the same rhythm in the
same run, is the session bus itself. Two CPU burners make the load; first a start with empty caches
(nothing compiled, no thumbnails), then a second start that finds them.

    bench_startup_latency [QUELLTON [SECONDS]]
"""

import subprocess
import sys
import time

sys.path.insert(0, "@CMAKE_SOURCE_DIR@/tests/support")

from desktop_session import DesktopSession  # noqa: E402

NAME, PATH = "io.github.quellton.Quellton", "/io/github/quellton/Quellton"


def probe(connection, seconds):
    from gi.repository import Gio, GLib

    def ask(name, path, interface, method):
        started = time.monotonic()
        connection.call_sync(name, path, interface, method, None, None, Gio.DBusCallFlags.NONE, 30000, None)
        return time.monotonic() - started

    program, reference = [], []
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            program.append(ask(NAME, PATH, "org.freedesktop.DBus.Introspectable", "Introspect"))
            reference.append(ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"))
        except GLib.Error:
            pass  # not on the bus yet
        time.sleep(0.02)
    return program, reference


def report(label, program, reference):
    def worst(values, share=1.0):
        ordered = sorted(values)
        return 1000 * ordered[min(len(ordered) - 1, int(share * (len(ordered) - 1)))] if ordered else float("nan")
    print(f"{label}: {len(program)} calls; main thread worst {worst(program):.0f} ms, 99th percentile "
          f"{worst(program, 0.99):.0f} ms, over 100 ms {sum(v > 0.1 for v in program)}; session bus worst "
          f"{worst(reference):.0f} ms; worst ratio {worst(program) / max(worst(reference), 1e-3):.1f}")


def main():
    binary = sys.argv[1] if len(sys.argv) > 1 else "@CMAKE_BINARY_DIR@/quellton"
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 25
    from gi.repository import Gio
    burners = [subprocess.Popen(["sh", "-c", "while :; do :; done"]) for _ in range(2)]
    try:
        with DesktopSession(size=(1920, 1080)) as desktop:
            connection = Gio.DBusConnection.new_for_address_sync(
                desktop.env["DBUS_SESSION_BUS_ADDRESS"],
                Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
            env = dict(desktop.env)
            env.pop("MESA_SHADER_CACHE_DISABLE", None)  # a person's second start finds Mesa's cache too
            for label in ("first start", "second start"):
                program = subprocess.Popen([binary], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                report(label, *probe(connection, seconds))
                program.terminate()
                program.wait(30)
    finally:
        for burner in burners:
            burner.kill()


if __name__ == "__main__":
    main()

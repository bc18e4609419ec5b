"""The tests' private services for test programs that are not written in Python.

    python3 session_service.py x11 [--screen 1280x720x24]    an XSession (Xvfb, bus, folders)
    python3 session_service.py sound pulse|pipewire          a PulseServer or PipeWireServer

Once the service runs it prints, one a line, `set NAME=VALUE` and `unset NAME` for each variable
the client takes into its own environment, `folder PATH`, then `ready`; or `failed WHY` and it
ends. Then it reads commands, one a line, and answers each with `ok` or `failed WHY`:

    kill                 ends the sound server's daemons, as a crash would
    restart              starts them again on the same socket with the same two sinks
    default-sink NAME    makes NAME the default through the server's own tool, once the server reports it
    remove-sink NAME     unloads that null sink, as unplugging a device does
    quit                 stops everything and removes the folder; so do the end of the input, SIGTERM
                         and the end of the process that started the service
"""

import argparse
import os
import select
import signal
import sys

from desktop_session import XSession
from private_service import ServiceError
from pulse_server import PipeWireServer, PulseServer


def sound_commands(server):
    return {"kill": server.kill, "restart": server.restart, "default-sink": server.set_default_sink,
            "remove-sink": server.remove_sink}


def answer(text):
    print(text, flush=True)


def lines(parent):
    """The input's lines, up to its end or the parent's."""
    pending = b""
    while True:
        while b"\n" not in pending:
            # A parent killed outright may leave the input open in a process it started.
            if not select.select([0], [], [], 0.5)[0]:
                if os.getppid() != parent:
                    return
                continue
            chunk = os.read(0, 4096)
            if not chunk:
                return
            pending += chunk
        line, pending = pending.split(b"\n", 1)
        yield line.decode()


def serve(service, commands):
    parent = os.getppid()
    with service:
        for name, value in service.exports.items():
            answer(f"unset {name}" if value is None else f"set {name}={value}")
        answer(f"folder {service.folder}")
        answer("ready")
        for line in lines(parent):
            words = line.split()
            if words == ["quit"]:
                return
            if not words:
                continue
            command = commands.get(words[0])
            if command is None:
                answer(f"failed no command {words[0]!r}")
                continue
            try:
                command(*words[1:])
                answer("ok")
            except (ServiceError, TypeError) as error:
                answer(f"failed {error}".splitlines()[0])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    kinds = parser.add_subparsers(dest="kind", required=True)
    x11 = kinds.add_parser("x11")
    x11.add_argument("--screen", default="1280x720x24", help="WIDTHxHEIGHTxDEPTH")
    kinds.add_parser("sound").add_argument("server", choices=("pulse", "pipewire"))
    arguments = parser.parse_args()
    # SIGTERM and SIGINT end the service through its `with`, which stops everything it started;
    # a second signal must not cut that short.
    def end(*_):
        for signum in (signal.SIGTERM, signal.SIGINT):
            signal.signal(signum, signal.SIG_IGN)
        sys.exit(1)
    for signum in (signal.SIGTERM, signal.SIGINT):
        signal.signal(signum, end)
    if arguments.kind == "x11":
        width, height, depth = map(int, arguments.screen.split("x"))
        service, commands = XSession((width, height), depth), {}
    else:
        service = PulseServer() if arguments.server == "pulse" else PipeWireServer()
        commands = sound_commands(service)
    try:
        serve(service, commands)
    except ServiceError as error:
        print(error, file=sys.stderr)
        answer(f"failed {error}".splitlines()[0])
        sys.exit(1)


if __name__ == "__main__":
    main()

"""What the tests' private services share: a context manager that is started on entry, and closed
again both on exit and when starting fails half-way, so nothing a failed start began outlives the
test; and the starting, waiting for and stopping of their daemons."""

import os
import signal
import subprocess
import time


class ServiceError(RuntimeError):
    pass


class PrivateService:
    def _start(self):
        raise NotImplementedError

    def close(self):
        raise NotImplementedError

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *exc):
        self.close()


def applied(environment, changes):
    """The environment with these changes: a value sets a variable, None removes it."""
    result = {k: v for k, v in environment.items() if k not in changes}
    result.update((k, v) for k, v in changes.items() if v is not None)
    return result


def start_daemon(argv, env, log=None, **options):
    """Starts a daemon in a process group of its own, output to `log` (a path) or nowhere. It ends
    with the process that started it, which may be killed outright and have no chance to stop it."""
    output = open(log, "ab") if log else subprocess.DEVNULL
    try:
        return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", "--", *argv], env=env, stdin=subprocess.DEVNULL,
                                stdout=output, stderr=subprocess.STDOUT, start_new_session=True, **options)
    finally:
        if log:
            output.close()


def stop(process):
    """SIGTERM to the process's group, SIGKILL when it still runs after ten seconds."""
    if process.poll() is not None:
        return
    try:
        os.killpg(process.pid, signal.SIGTERM)
        process.wait(timeout=10)
    except (ProcessLookupError, subprocess.TimeoutExpired):
        try:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait(timeout=5)
        except ProcessLookupError:
            pass


def poll_until(condition, timeout, interval=0.02):
    """Asks every `interval` seconds until the condition holds or the time is up; its last value."""
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(interval)
    return condition()

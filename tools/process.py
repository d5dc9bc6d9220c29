"""Processes that end, with all that they started, when what started them does."""

import contextlib
import os
import secrets
import signal
import subprocess
import sys
import tempfile

ENDING = (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)
PATIENCE = 5  # seconds that a process has to end by itself
WILD = b"\xff\xff\0\0\0\0"  # any host and any display, in a file of X authorities


def exit_on_signals():
    """Lets a signal that asks to end leave every `with` block, with the status that a shell gives it."""

    def leave(number, _):
        for each in ENDING:
            signal.signal(each, signal.SIG_IGN)
        sys.exit(128 + number)

    for each in ENDING:
        if signal.getsignal(each) != signal.SIG_IGN:
            signal.signal(each, leave)


def status_of(process):
    """What a shell would say of an ended process."""
    return process.returncode if process.returncode >= 0 else 128 - process.returncode


@contextlib.contextmanager
def running(arguments, **options):
    """A process, as subprocess.Popen starts it, in a group that is ended when the block is left."""

    def unblock():
        signal.pthread_sigmask(signal.SIG_UNBLOCK, ENDING)

    # A signal between the start and the block would leave the process behind.
    signal.pthread_sigmask(signal.SIG_BLOCK, ENDING)
    try:
        process = subprocess.Popen(arguments, start_new_session=True, preexec_fn=unblock, **options)
        try:
            unblock()
            yield process
        finally:
            _end(process)
    finally:
        unblock()


def _end(process):
    if process.stdin:
        with contextlib.suppress(OSError):
            process.stdin.close()
    for number in (signal.SIGTERM, signal.SIGKILL):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, number)
        with contextlib.suppress(subprocess.TimeoutExpired):
            process.wait(PATIENCE)


@contextlib.contextmanager
def screen(width, height):
    """
    A virtual screen that only this user's processes may use. Gives the environment that names it and a folder
    for what is scratch, which goes with the screen: a program that is killed removes nothing.
    """
    with tempfile.TemporaryDirectory(prefix="screen.", ignore_cleanup_errors=True) as folder:
        authority, scratch = os.path.join(folder, "authority"), os.path.join(folder, "scratch")
        # Other users may pass through, as they may through any folder for what is scratch, and see nothing.
        os.chmod(folder, 0o711)
        os.mkdir(scratch, 0o711)
        cookie = secrets.token_bytes(16)
        with open(os.open(authority, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o600), "wb") as file:
            file.write(WILD + b"\0\x12MIT-MAGIC-COOKIE-1\0\x10" + cookie)
        ready, say_ready = os.pipe()
        server = ["Xvfb", "-displayfd", str(say_ready), "-screen", "0", "%dx%dx24" % (width, height), "+extension", "GLX",
                  "-nolisten", "tcp", "-noreset", "-auth", authority]
        with open(ready) as number, running(server, pass_fds=[say_ready], stderr=subprocess.DEVNULL):
            os.close(say_ready)
            display = number.readline().strip()
            if not display:
                raise OSError("the virtual screen (Xvfb) does not start")
            yield dict(os.environ, DISPLAY=":" + display, XAUTHORITY=authority, TMPDIR=scratch)

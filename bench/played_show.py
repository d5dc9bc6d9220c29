"""The show as the programs here measure it: a copy in a folder of its own, played without a sound card."""

import os
import pathlib
import shutil
import subprocess

_ROOT = pathlib.Path(__file__).resolve().parent.parent
_PROGRAM = _ROOT / "build/release/src/effects/cadenza"


def resident(pid):
    """The memory of a process that is resident, in MiB; 0 where it has ended."""
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS"):
            return int(line.split()[1]) / 1024
    return 0.0


def start(folder, extra="", output=subprocess.DEVNULL):
    """
    A process that plays a copy of the show, which it makes in `folder`.

    extra -- elements behind those of the settings
    """
    shutil.copytree(_ROOT / "demo", folder)
    setup = folder / "setup.xml"
    setup.write_text(setup.read_text().replace("</demo>", extra + "</demo>"))
    # The null driver plays at the song's pace, so that the end of the song comes and it loops. What the
    # software renderer takes for a frame, blocks of 64 KiB, up to 45 MiB of them, goes back to the system
    # with the frame: left in the heap it would be counted as the show's, and more the more scenes were seen.
    environment = dict(os.environ, ALSOFT_DRIVERS="null", CADENZA_SEED="1",
                       GLIBC_TUNABLES="glibc.malloc.mmap_threshold=32768")
    return subprocess.Popen(["stdbuf", "-oL", _PROGRAM], cwd=folder, env=environment, stdout=output)

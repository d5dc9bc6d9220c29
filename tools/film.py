"""film.py FRAMES WIDTH HEIGHT FPS PROGRAM: records the show in demo/ to afterglow.mp4, both in the working directory."""

import contextlib
import math
import os
import subprocess
import sys
import tempfile
import time

import process
import show

FILM = "afterglow.mp4"
SETTINGS = ("setup.local.xml", "setup.xml")  # only the first that is there counts
LOG_LINES = 5  # of a show that did not end well
# A song may name no other files, whatever kind of file it really is.
SONG_FORMATS = ["-protocol_whitelist", "file", "-format_whitelist", "aiff,au,caf,flac,mp3,ogg,w64,wav"]


class Recording:
    """A scratch copy of the show, set up to write its frames into a folder."""

    def __init__(self, folder, frames, width, height, rate):
        self.folder = os.path.join(folder, "demo")
        self.log = os.path.join(folder, "log")
        self.frames, self.width, self.height, self.rate = frames, width, height, rate
        show.copy(show.files("demo"), self.folder)
        os.mkdir(os.path.join(self.folder, "frames"))
        name = next((each for each in SETTINGS if os.path.exists(self._path(each))), None)
        if name is None:
            raise show.ShowError("there is neither demo/%s nor demo/%s" % SETTINGS)
        self._setup = show.Setup(self._path(name))
        # Sections are applied in order, so these override what the file says.
        sections = '<display width="%d" height="%d" title="afterglow"/><dump name="frames/frame.png" rate="%d" length="%r"/>'
        with open(self._path(name), "wb") as file:
            file.write(self._setup.edited(last=(sections % (width, height, rate, self.seconds())).encode(), without=b"dump"))

    def seconds(self):
        return self.frames / self.rate

    def frame(self, number):
        return self._path("frames/frame.%06d.png" % number)

    def sound(self):
        """The encoder's arguments for the song from the first frame on; none without a song."""
        music, start = self._setup.last(b"music"), self._setup.last(b"time")
        song = music.text(b"filename") if music else b""
        if not song:
            return []
        if b"\0" in song or not os.path.isfile(self._path(os.fsdecode(song))):
            say("there is no demo/%s, so the film has no sound" % show.one_line(os.fsdecode(song)))
            return []
        # The first frame shows the demo one frame after its start.
        begin = (start.number(b"start") if start else 0.0) + 1 / self.rate
        if not math.isfinite(begin):
            raise show.ShowError("the start of the show must be a number of seconds, found %s" % begin)
        return ["-ss", "%.6f" % max(begin, 0.0), "-t", "%.6f" % self.seconds(), *SONG_FORMATS,
                "-i", "file:" + self._path(os.fsdecode(song)),
                "-map", "0:v", "-map", "1:a", "-c:a", "aac", "-b:a", "192k"]

    def _path(self, name):
        return os.path.join(self.folder, name)


def say(message):
    print("film: " + message, file=sys.stderr, flush=True)


def feed(recording, player, encoder):
    """
    Hands the frames to the encoder. Each appears whole under its name and is gone when it was handed on, so a
    long film needs no room for all of them.
    """
    began = time.monotonic()
    fed = number = 0
    while True:
        ended = player.poll() is not None
        name = recording.frame(number)
        if os.path.exists(name):
            with open(name, "rb") as frame:
                encoder.write(frame.read())
            os.remove(name)
            fed += 1
        elif not os.path.exists(recording.frame(number + 1)):
            if ended:
                break
            time.sleep(0.02)
            continue
        number += 1
        rate = fed / max(time.monotonic() - began, 1e-6)
        left = int((recording.frames - fed) / rate) if fed else 0
        print("\rframe %d of %d, %.1f frames per second, %d:%02d left   " % (fed, recording.frames, rate, left // 60, left % 60),
              end="", file=sys.stderr, flush=True)
    print(file=sys.stderr)
    if player.returncode != 0:
        raise show.ShowError("the show did not end well")
    if fed != recording.frames:
        raise show.ShowError("only %d of %d frames were recorded" % (fed, recording.frames))


def record(recording, program, film):
    """Writes the film; throws ShowError unless all of it is there."""
    encode = ["ffmpeg", "-v", "error", "-y", "-f", "image2pipe", "-c:v", "png", "-framerate", str(recording.rate), "-i", "-",
              *recording.sound(), "-c:v", "libx264", "-preset", "medium", "-crf", "18", "-pix_fmt", "yuv420p",
              "-movflags", "+faststart", "file:" + film]
    with contextlib.ExitStack() as stack:
        environment = stack.enter_context(process.screen(recording.width, recording.height))
        environment.setdefault("CADENZA_SEED", "1")
        log = stack.enter_context(open(recording.log, "wb"))
        encoder = stack.enter_context(process.running(encode, stdin=subprocess.PIPE))
        player = stack.enter_context(
            process.running([program], cwd=recording.folder, env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log))
        try:
            feed(recording, player, encoder.stdin)
            encoder.stdin.close()
        except BrokenPipeError:
            encoder.stdin = None
        if encoder.wait() != 0:
            raise show.ShowError("the film could not be encoded")


def last_lines(log):
    with contextlib.suppress(OSError), open(log, errors="replace") as file:
        for line in file.readlines()[-LOG_LINES:]:
            print(show.one_line(line.rstrip("\n")), file=sys.stderr)


def make(frames, width, height, rate, program):
    with tempfile.TemporaryDirectory(prefix="film.") as folder:
        recording = Recording(folder, frames, width, height, rate)
        # Beside the film, so that it is replaced whole or not at all.
        with tempfile.TemporaryDirectory(prefix=".film.", dir=".") as beside:
            film = os.path.join(beside, FILM)
            try:
                record(recording, program, film)
            except show.ShowError:
                last_lines(recording.log)
                raise
            os.replace(film, FILM)


def main():
    process.exit_on_signals()
    frames, width, height, rate = map(int, sys.argv[1:5])
    try:
        make(frames, width, height, rate, os.path.abspath(sys.argv[5]))
    except (OSError, show.ShowError) as error:
        say(show.one_line(str(error)))
        return 1
    length = ["ffprobe", "-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", FILM]
    print("%s: %s seconds" % (FILM, subprocess.run(length, stdout=subprocess.PIPE, text=True).stdout.strip()))
    return 0


if __name__ == "__main__":
    sys.exit(main())

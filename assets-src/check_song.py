#!/usr/bin/python3
"""Measures demo/afterglow.ogg as it decodes: length, loudness, peak, silence, bands, and onsets against the score.

Prints a table and ends with 1 if a figure is out of bounds. Needs what song.py needs.
"""

import re
import subprocess
import sys

import numpy as np
from scipy.ndimage import maximum_filter1d

import song

BANDS = (20, 120, 500, 2000, 8000, 14000, 22050)  # Hz
FRAME = 512  # sample frames under the onset detector
HOP = 44  # sample frames between two looks of the onset detector, 1 ms
RISE = 10  # hops over which the spectrum brightens at an onset
APART = 91  # hops in which only the steepest rise counts
STEEP = 0.15  # rise of an onset, mean decades over its band
FLOOR = 0.003  # amplitude of a line of the spectrum that counts as silence
STRAY = 0.010  # seconds that an onset may be off its beat


def ffmpeg(*output):
    run = subprocess.run(["ffmpeg", "-nostdin", "-hide_banner", "-nostats", "-i", song.FILE, *output],
                         capture_output=True)
    if run.returncode:
        sys.exit(f"check_song.py: {run.stderr.decode().splitlines()[-1]}")
    return run


def loudness():
    """Momentary loudness as (seconds, LUFS) rows, then integrated loudness, range and true peak."""
    text = ffmpeg("-filter_complex", "ebur128=peak=true", "-f", "null", "-").stderr.decode()
    moments = np.array(re.findall(r"t: *([\d.]+) .*?M: *(-[\d.]+)", text), dtype=float)
    summary = text[text.rindex("Summary:"):]
    return moments, *(float(re.search(label + r": +(-?[\d.]+)", summary)[1]) for label in ("I", "LRA", "Peak"))


def onsets(sound, low, high):
    """Times at which the spectrum of a band brightens steeply (flux of log magnitudes). Knows nothing of the beat."""
    frames = np.lib.stride_tricks.sliding_window_view(np.pad(sound, FRAME // 2), FRAME)[::HOP]
    bins = slice(low * FRAME // song.RATE, high * FRAME // song.RATE + 1)
    levels = np.concatenate([np.log10(np.abs(np.fft.rfft(some * np.hanning(FRAME))[:, bins]) * 4 / FRAME + FLOOR)
                             for some in np.array_split(frames, 40)])
    flux = np.maximum(levels[RISE:] - levels[:-RISE], 0).mean(axis=1)
    return (np.flatnonzero((flux == maximum_filter1d(flux, APART)) & (flux > STEEP)) + RISE) * HOP / song.RATE


def strays(found, due):
    """How far the nearest onset is from each stroke that is due."""
    return np.array([found[np.abs(found - time).argmin()] - time for time in due])


def latency(sound, low, high):
    """How late the detector sees a stroke that starts at one second."""
    alone = np.concatenate([np.zeros(song.RATE), np.atleast_2d(sound).mean(axis=0), np.zeros(song.RATE)])
    return onsets(alone, low, high)[0] - 1


def main():
    raw = ffmpeg("-f", "f32le", "-").stdout
    sound = np.frombuffer(raw, "<f4").reshape(-1, 2).T.astype(float)
    moments, integrated, spread, peak = loudness()
    faults = []

    def verdict(text, good):
        print(f"{text:76}{'ok' if good else 'OUT OF BOUNDS'}")
        if not good:
            faults.append(text)

    print("bar  section           LUFS  share of each band in dB, from " + ", ".join(map(str, BANDS[:-1])) + " Hz up")
    levels = {}
    for (first, name), (end, _) in zip(song.SECTIONS, (*song.SECTIONS[1:], (song.BARS, ""))):
        inside = (moments[:, 0] > first * song.BAR + 0.4) & (moments[:, 0] <= end * song.BAR)
        levels[first] = 10 * np.log10((10 ** (moments[inside, 1] / 10)).mean())
        part = sound[:, round(first * song.BAR * song.RATE):round(end * song.BAR * song.RATE)]
        power = (np.abs(np.fft.rfft(part)) ** 2).sum(axis=0)
        edges = np.searchsorted(np.fft.rfftfreq(part.shape[1], 1 / song.RATE), BANDS)
        shares = [10 * np.log10(power[a:b].sum() / power.sum() + 1e-9) for a, b in zip(edges, edges[1:])]
        print(f"{first:3}  {name:16}{levels[first]:6.1f}" + "".join(f"{share:7.1f}" for share in shares))

    verdict(f"length {sound.shape[1]} sample frames, {song.LENGTH} due", sound.shape[1] == song.LENGTH)
    verdict(f"integrated {integrated:.1f} LUFS, range {spread:.1f} LU", abs(integrated + 14) <= 0.5)
    verdict(f"true peak {peak:.1f} dBFS", peak <= -1)
    edge = max(np.abs(sound[:, 0]).max(), np.abs(sound[:, -1]).max())
    verdict(f"first and last sample within {edge:.5f}", edge < 1e-3)
    rest = np.abs(sound[:, round(song.SILENT_FROM * song.RATE):]).max()
    verdict(f"last second within {rest:.5f}", rest < 1e-3)
    calm = levels[64] - np.mean([levels[first] for first in (32, 36, 40, 44)])
    verdict(f"breakdown {calm:.1f} LU under the finale", 6 <= calm <= 10)
    low = song.lowpass(sound, 100, 8)
    width = 10 * np.log10(((low[0] - low[1]) ** 2).sum() / ((low[0] + low[1]) ** 2).sum())
    verdict(f"side to middle under 100 Hz {width:.1f} dB", width < -25)

    for name, stroke, band in (("kick", song.kick(), (0, 800)), ("clap", song.clap(), (1000, 8000))):
        due = np.array([time for time, _ in song.strokes(name)])
        late = latency(stroke, *band)
        found = onsets(sound.mean(axis=0), *band) - late
        off = strays(found, due)
        chance = np.mean(np.abs(strays(found, due + song.STEP / 2)) <= STRAY)
        farthest = np.abs(off).max()
        verdict(f"{due.size} {name}s: median {1000 * np.median(off):+.1f} ms, farthest {1000 * farthest:.1f} ms",
                farthest <= STRAY)
        print(f"    of {found.size} onsets found, {1000 * late:+.1f} ms for the detector taken off; "
              f"half a step beside the grid {chance:.0%} would pass")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

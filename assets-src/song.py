#!/usr/bin/python3
"""Composes and renders the song of the show: demo/afterglow.ogg.

128 BPM, A minor, stereo, 44.1 kHz, 36 bars. Everything is synthesised here from a fixed seed; the
PCM is the same bytes on every run. Needs python3-numpy, python3-scipy and ffmpeg.
"""

import pathlib
import subprocess
import sys
import wave

import numpy as np
from scipy.signal import butter, fftconvolve, lfilter, sosfilt

RATE = 44100
BPM = 128.0
BEAT = 60.0 / BPM  # seconds
BAR = 4 * BEAT  # seconds
BARS = 36
LENGTH = round(BARS * BAR * RATE)  # sample frames
PEAK = 10 ** (-1.2 / 20)  # full scale left free for the decoder's overshoot
RNG = np.random.default_rng(128)

# One bar each: A minor, F major, C major, G major, as MIDI notes of the pad voicing and the root.
CHORDS = [((57, 60, 64, 67), 33), ((57, 60, 65, 69), 29), ((55, 60, 64, 67), 36), ((55, 59, 62, 67), 31)]
ARPEGGIO = (0, 2, 1, 3, 2, 0, 3, 1, 0, 2, 3, 1, 2, 3, 1, 0)  # chord tone of each sixteenth
LEAD = {  # sixteenth within four bars: (MIDI note, length in sixteenths)
    0: (76, 3), 3: (74, 3), 6: (72, 4), 12: (71, 2), 14: (72, 2),
    16: (69, 6), 22: (72, 4), 28: (74, 2), 30: (76, 2),
    32: (79, 3), 35: (76, 3), 38: (74, 4), 44: (72, 4),
    48: (71, 6), 54: (74, 4), 60: (79, 2), 62: (78, 2),
}


def frequency(note):
    return 440.0 * 2 ** ((note - 69) / 12)


def seconds(count):
    return np.arange(count) / RATE


def saw(pitch, count, phase=0.0):
    """Band-limited sawtooth (polynomial step correction), in -1..1."""
    step = pitch / RATE
    position = (phase + step * np.arange(count)) % 1.0
    wave_ = 2 * position - 1
    low = position < step
    t = position[low] / step
    wave_[low] -= 2 * t - t * t - 1
    high = position > 1 - step
    t = (position[high] - 1) / step
    wave_[high] -= t * t + 2 * t + 1
    return wave_


def lowpass(signal, cutoff, order=2):
    return sosfilt(butter(order, min(cutoff, 20000), fs=RATE, output="sos"), signal, axis=-1)


def highpass(signal, cutoff, order=2):
    return sosfilt(butter(order, cutoff, "highpass", fs=RATE, output="sos"), signal, axis=-1)


def envelope(count, attack, release, sustain=1.0):
    """Linear attack, exponential fall, and 4 ms to silence at the end so that nothing clicks."""
    t = seconds(count)
    shape = np.minimum(t / attack, 1.0) * (sustain + (1 - sustain) * np.exp(-t / release))
    fade = min(count, int(0.004 * RATE))
    shape[count - fade:] *= np.linspace(1, 0, fade)
    return shape


class Track:
    """A stereo buffer of the song's length that sounds are added to."""

    def __init__(self):
        self.data = np.zeros((2, LENGTH))

    def add(self, time, sound, gain=1.0, pan=0.0):
        """`sound` is mono or stereo; `pan` in -1..1 at constant power."""
        start = round(time * RATE)
        sound = np.atleast_2d(sound)
        count = min(sound.shape[1], LENGTH - start)
        if count <= 0:
            return
        angle = (pan + 1) * np.pi / 4
        sides = gain * np.sqrt(2) * np.array([[np.cos(angle)], [np.sin(angle)]])
        self.data[:, start:start + count] += sides * sound[:, :count]


def kick():
    t = seconds(int(0.32 * RATE))
    pitch = 46 + 130 * np.exp(-t / 0.022) + 60 * np.exp(-t / 0.006)
    body = np.sin(2 * np.pi * np.cumsum(pitch) / RATE) * np.exp(-t / 0.13)
    click = highpass(RNG.standard_normal(t.size), 3000) * np.exp(-t / 0.003) * 0.12
    return np.tanh(1.9 * (body + click)) * envelope(t.size, 0.0007, 9.0)


def clap():
    t = seconds(int(0.28 * RATE))
    bursts = sum(np.where(t >= d, np.exp(-(t - d) / 0.008), 0) for d in (0.0, 0.011, 0.021))
    tail = np.where(t >= 0.028, np.exp(-(t - 0.028) / 0.07), 0)
    noise = sosfilt(butter(2, (900, 7500), "bandpass", fs=RATE, output="sos"), RNG.standard_normal((2, t.size)))
    return noise * (0.7 * bursts + tail) * 0.6


def hat(decay):
    t = seconds(int(6 * decay * RATE))
    return highpass(RNG.standard_normal(t.size), 7500, 4) * np.exp(-t / decay) * envelope(t.size, 0.0005, 9)


def bass(note, length):
    count = int(length * RATE)
    t = seconds(count)
    tone = 0.7 * saw(frequency(note), count) + 0.5 * saw(frequency(note) * 1.006, count, 0.3)
    bright = lowpass(tone, 1500, 4)
    dark = lowpass(tone, 260, 4)
    blend = np.exp(-t / 0.09)
    sub = np.sin(2 * np.pi * frequency(note) * t)
    return np.tanh(1.3 * (bright * blend + dark * (1 - blend) + 0.8 * sub)) * envelope(count, 0.003, 0.25, 0.55)


def pad(notes, length, cutoff):
    count = int((length + 0.35) * RATE)
    sides = np.zeros((2, count))
    for note in notes:
        for voice in range(7):
            detune = 2 ** ((voice - 3) * 0.07 / 12)
            tone = saw(frequency(note) * detune, count, RNG.random())
            sides[voice % 2] += tone
            sides[1 - voice % 2] += 0.35 * tone
    t = seconds(count)
    shape = np.minimum(t / 0.25, 1) * np.clip((length + 0.35 - t) / 0.35, 0, 1)
    return highpass(lowpass(sides, cutoff, 2), 140) * shape / 14


def pluck(note, length, bright):
    count = int(length * RATE)
    t = seconds(count)
    tone = saw(frequency(note), count, 0.1) + 0.6 * saw(frequency(note) * 2.003, count, 0.6)
    sound = lowpass(tone, 900 + 5200 * bright, 2)
    return sound * envelope(count, 0.002, 0.08) * 0.5


def lead(note, length):
    count = int((length + 0.12) * RATE)
    t = seconds(count)
    sides = np.zeros((2, count))
    for voice, detune in enumerate((-0.11, -0.04, 0.04, 0.11)):
        tone = saw(frequency(note + detune), count, RNG.random())
        sides[voice % 2] += tone
        sides[1 - voice % 2] += 0.5 * tone
    sides += np.sin(2 * np.pi * (frequency(note) * t + 0.004 * np.sin(2 * np.pi * 5.2 * t)))
    shape = np.minimum(t / 0.008, 1) * np.clip((length + 0.12 - t) / 0.12, 0, 1)
    return lowpass(sides, 5200) * shape * (0.7 + 0.3 * np.exp(-t / 0.12)) / 4


def riser(length):
    count = int(length * RATE)
    t = seconds(count) / length
    noise = RNG.standard_normal((2, count))
    swept = sum(sosfilt(butter(2, (c, c * 1.7), "bandpass", fs=RATE, output="sos"), noise)
                * np.exp(-((t - at) / 0.22) ** 2)
                for at, c in ((0.1, 300), (0.35, 800), (0.6, 1900), (0.85, 4200), (1.05, 8000)))
    return swept * t ** 2 * np.minimum((1 - t) * length / 0.01, 1)


def impact():
    t = seconds(int(3.2 * RATE))
    boom = np.sin(2 * np.pi * np.cumsum(34 + 60 * np.exp(-t / 0.09)) / RATE) * np.exp(-t / 0.7)
    air = lowpass(RNG.standard_normal((2, t.size)), 5200) * np.exp(-t / 0.55) * 0.28
    return (boom + air) * envelope(t.size, 0.002, 9)


def sidechain():
    """Gain that dips on every beat of the bars with a kick."""
    phase = (seconds(LENGTH) % BEAT) / BEAT
    duck = 1 - 0.72 * np.exp(-phase / 0.22) * (1 - np.exp(-phase / 0.004))
    gain = np.ones(LENGTH)
    for bar in range(BARS):
        if has_kick(bar):
            part = slice(round(bar * BAR * RATE), round((bar + 1) * BAR * RATE))
            gain[part] = duck[part]
    return gain


def has_kick(bar):
    return 8 <= bar < 24 or 26 <= bar < 34


def reverb(signal, decay, length):
    """Convolution with decaying, darkening noise; wide, without early reflections."""
    count = int(length * RATE)
    t = seconds(count)
    tail = np.random.default_rng(7).standard_normal((2, count)) * np.exp(-t / decay)
    tail = highpass(lowpass(tail, 6500), 220)
    tail /= np.sqrt((tail ** 2).sum(axis=1, keepdims=True))
    return np.stack([fftconvolve(signal[c], tail[c])[:LENGTH] for c in range(2)])


def echo(signal, time, feedback, turns=5):
    """Ping-pong delay."""
    out = np.zeros_like(signal)
    for turn in range(1, turns + 1):
        shift = round(turn * time * RATE)
        source = signal if turn % 2 == 0 else signal[::-1]
        out[:, shift:] += feedback ** turn * source[:, :-shift]
    return out


def drums():
    track, snare, cymbals = Track(), Track(), Track()
    kick_sound, clap_sound, closed, open_ = kick(), clap(), hat(0.018), hat(0.09)
    for bar in range(BARS):
        for beat in range(4):
            time = bar * BAR + beat * BEAT
            if has_kick(bar) and not (bar in (15, 23) and beat == 3):
                track.add(time, kick_sound, 0.92)
            if (12 <= bar < 24 or 28 <= bar < 34) and beat % 2 == 1:
                snare.add(time, clap_sound, 0.42)
            if 10 <= bar < 24 or 26 <= bar < 34:
                cymbals.add(time + BEAT / 2, open_, 0.16, 0.1)
            if 4 <= bar < 24 or 27 <= bar < 34:
                for sixteenth in range(4):
                    accent = (0.11, 0.05, 0.085, 0.055)[sixteenth]
                    cymbals.add(time + sixteenth * BEAT / 4, closed, accent, -0.25 if sixteenth % 2 else 0.25)
    for bar, spacing in ((15, 8), (27, 8)):
        for hit in range(spacing):
            snare.add(bar * BAR + 2 * BEAT + hit * 2 * BEAT / spacing, clap_sound, 0.1 + 0.03 * hit)
    return track, snare, cymbals


def basses():
    track = Track()
    for bar in range(BARS):
        if not (8 <= bar < 24 or 26 <= bar < 34):
            continue
        root = CHORDS[bar % 4][1]
        for sixteenth in range(16):
            if sixteenth % 4 == 0:
                continue
            octave = 12 if bar >= 16 and sixteenth % 4 == 3 else 0
            note = root + octave
            track.add(bar * BAR + sixteenth * BEAT / 4, bass(note, BEAT / 4 * 0.92), 0.5)
    return track


def pads():
    track = Track()
    for bar in range(BARS):
        opening = {0: 700, 4: 1000, 8: 1500, 16: 2600, 24: 1100, 28: 3000, 34: 900}
        cutoff = [opening[first] for first in opening if first <= bar][-1]
        track.add(bar * BAR, pad(CHORDS[bar % 4][0], BAR, cutoff), 0.85)
    for beat in range(32):
        strength = 0.18 + 0.12 * min(beat / 16, 1)
        count = int(0.5 * RATE)
        pulse = np.sin(2 * np.pi * 55 * seconds(count)) * envelope(count, 0.012, 0.12)
        track.add(beat * BEAT, pulse, strength)
    return track


def arpeggios():
    track = Track()
    for bar in range(4, 35):
        if 24 <= bar < 25:
            continue
        notes = CHORDS[bar % 4][0]
        bright = min(max((bar - 4) / 12, 0), 1) if bar < 24 else 0.4 + 0.06 * (bar - 24)
        for sixteenth in range(16):
            note = notes[ARPEGGIO[sixteenth]] + (12 if sixteenth % 3 else 24)
            track.add(bar * BAR + sixteenth * BEAT / 4, pluck(note, 0.3, bright), 0.2,
                      0.5 * np.sin(sixteenth * 1.7 + bar))
    return track


def leads():
    track = Track()
    for first in (16, 20, 28, 32):
        for sixteenth, (note, length) in LEAD.items():
            if first == 32 and sixteenth >= 32:
                break
            track.add(first * BAR + sixteenth * BEAT / 4, lead(note, length * BEAT / 4), 0.42)
    for sixteenth, (note, length) in LEAD.items():
        if sixteenth < 32:
            track.add(24 * BAR + sixteenth * BEAT / 4, lead(note - 12, length * BEAT / 4), 0.26)
    return track


def transitions():
    track = Track()
    for bar, bars in ((4, 2), (8, 2), (16, 4), (28, 4)):
        track.add((bar - bars) * BAR, riser(bars * BAR), 0.5 if bars == 4 else 0.3)
    for bar in (8, 16, 24, 28, 34):
        track.add(bar * BAR, impact(), 0.55)
    return track


def master(mix):
    """Gentle bus compression, saturation, silence at both ends, and the peak where it belongs."""
    level = lfilter([0.0006], [1, -0.9994], np.abs(mix).max(axis=0))
    mix = 0.42 * mix / np.sqrt(1 + (level / 1.4) ** 2)
    mix = np.tanh(mix)
    fade = int(0.005 * RATE)
    mix[:, :fade] *= np.linspace(0, 1, fade)
    tail = int(2.2 * RATE)
    mix[:, -tail:] *= np.cos(np.linspace(0, np.pi / 2, tail)) ** 2
    return mix * PEAK / np.abs(mix).max()


def render():
    drum, snare, cymbals = drums()
    duck = sidechain()
    chords, arps, melody = pads().data * duck, arpeggios().data * (0.4 + 0.6 * duck), leads().data
    low = basses().data * (0.35 + 0.65 * duck)
    wet = reverb(snare.data * 0.5 + chords * 0.55 + arps * 0.6 + melody * 0.6, 0.85, 2.8)
    delayed = echo(arps * 0.55 + melody * 0.5, 3 * BEAT / 4, 0.52)
    mix = (drum.data + low * 0.95 + snare.data + cymbals.data + chords * 1.15 + arps + melody
           + delayed * 0.8 + wet * 0.55 + transitions().data)
    return master(highpass(mix, 24))


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "demo")
    samples = (render().T * 32767).round().astype("<i2")
    pcm = folder / "afterglow.wav"
    with wave.open(str(pcm), "wb") as out:
        out.setnchannels(2)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(samples.tobytes())
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", pcm, "-map_metadata", "-1", "-fflags", "+bitexact",
                    "-flags", "+bitexact", "-c:a", "libvorbis", "-q:a", "6", folder / "afterglow.ogg"], check=True)
    pcm.unlink()


if __name__ == "__main__":
    main()

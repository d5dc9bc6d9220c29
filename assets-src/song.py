#!/usr/bin/python3
"""Composes and renders the song of the show: demo/afterglow.ogg.

128 BPM, A minor, stereo, 44.1 kHz, 96 bars, exactly three minutes. Everything is synthesised here from fixed
seeds; the PCM is the same bytes on every run. Needs python3-numpy, python3-scipy and ffmpeg.

The score comes first, as data; then the instruments, one function each; then the mix. Bars are counted from 0 and
a step is a sixteenth.
"""

import functools
import pathlib
import subprocess

import numpy as np
from scipy.ndimage import uniform_filter1d
from scipy.signal import butter, oaconvolve, resample_poly, sosfilt

FILE = pathlib.Path(__file__).resolve().parent.parent / "demo" / "afterglow.ogg"
RATE = 44100
BPM = 128
STEP = 15 / BPM  # seconds
BAR = 16 * STEP  # seconds
BARS = 96
LENGTH = round(BARS * BAR * RATE)  # sample frames
SILENT_FROM = 179.0  # seconds
CEILING = 10 ** (-2.2 / 20)  # true peak, leaves room for the encoder's overshoot
DRIVE = 10 ** (-2.2 / 20)  # into the limiter; sets the loudness

# ---- Score ------------------------------------------------------------------------------------------------------

DROP, CUT, IMPACT, RESOLVE = 16, 32, 64, 90  # bars on which everything turns, the pictures too

SECTIONS = (  # first bar, what is heard: the table of check_song.py
    (0, "pad and pulse"), (4, "arpeggio"), (8, "kick"), (12, "bass, hats"), (16, "drop"), (20, "drop, answer"),
    (24, "drop, octave"), (28, "drop, climb"), (32, "breakdown"), (36, "piano"), (40, "choir"), (44, "pulse"),
    (48, "rising"), (52, "kick, muffled"), (56, "build"), (60, "riser"), (64, "finale"), (68, "finale, answer"),
    (72, "finale, turn"), (76, "breath"), (80, "everything"), (88, "wind-up"), (90, "resolve"),
)

CHORDS = {  # bass note, then the voicing; neighbours share tones and move by step
    "Am": "A1 A3 C4 E4 A4", "F": "F1 A3 C4 F4 A4", "C": "C2 G3 C4 E4 G4", "G": "G1 G3 B3 D4 G4",
    "Dm": "D2 A3 D4 F4 A4", "E": "E1 G#3 B3 E4 G#4", "Am9": "A1 E3 C4 E4 B4", "F7": "F1 F3 C4 E4 A4",
}
HARMONY = (  # first bar, chord of each bar
    (0, "Am9 Am9 F7 F7 Am F C G Am F C G Am F C G"),
    (16, "Am F C G Am F C G Am F C G F G Am E"),
    (32, "Am9 Am9 F7 F7 Am9 Am9 F7 F7 C C G G F7 F7 G G"),
    (48, "Am F C G Am F C G F G Am C F G E E"),
    (64, "Am F C G Am F Dm E F G Am C F G Am E"),
    (80, "Am F C G Am F Dm E F G Am9 Am9 F7 Am9 Am9 Am9"),
)

# Melodies: note:steps, a bar between bar lines, "-" rests.
HEAD = "A4:3 E5:3 D5:4 C5:2 D5:2 E5:2"
CALL = HEAD + "| C5:6 A4:6 C5:2 D5:2 | E5:3 G5:3 E5:4 D5:2 C5:2 D5:2 | B4:6 D5:6 G4:2 B4:2"
ANSWER = HEAD + "| A5:6 G5:4 F5:2 E5:2 F5:2 | G5:3 E5:3 C5:4 D5:2 E5:2 G5:2 | D5:8 E5:2 D5:2 B4:4"
DARK = HEAD + "| A5:6 G5:4 F5:2 E5:2 C5:2 | D5:3 F5:3 A5:4 G5:2 F5:2 E5:2 | E5:6 D5:4 B4:2 G#4:4"
CLIMB = ("A4:3 C5:3 F5:4 E5:2 D5:2 C5:2 | B4:3 D5:3 G5:4 F5:2 E5:2 D5:2 | C5:3 E5:3 A5:4 G5:2 E5:2 C5:2 |"
         "E5:4 G#5:4 B5:4 E6:4")
TURN = "A5:3 A5:3 G5:2 F5:4 E5:2 F5:2 | G5:6 D5:4 D5:2 E5:2 G5:2 | A5:3 A5:3 B5:4 C6:2 B5:2 A5:2 | G5:6 E5:6 D5:2 E5:2"
RETURN = "F5:16 | B5:6 A5:4 G5:2 A5:2 B5:2 | C6:3 A5:3 E5:4 A5:2 B5:2 C6:2 | B5:6 E5:4 G#5:2 B5:4"
WINDUP = "A5:3 C6:3 F5:4 A5:2 C6:4 | B5:3 D6:3 G5:4 B5:2 D6:4"
COUNTER = "-:8 C5:4 B4:4 | A4:12 G4:4 | G4:8 E4:4 G4:4 | B4:8 A4:4 G4:4"
LULL = "A4:6 C5:6 E5:4 | D5:6 C5:6 B4:4"
HINT = "A4:3 E5:3 D5:10 | -:16"
FAREWELL = "-:8 A4:3 E5:5 | D5:4 C5:4 B4:8 | A4:16"

MELODIES = (  # bar, instrument, melody, transposition in semitones, stretch, gain
    (2, "bell", "A5:16", 0, 1, 0.16), (2, "bell", "E4:16", 0, 1, 0.12),
    (12, "bell", HINT, 0, 1, 0.19), (14, "bell", HINT, 0, 1, 0.19),
    (16, "lead", CALL, 0, 1, 0.28), (20, "lead", ANSWER, 0, 1, 0.28), (20, "counter", COUNTER, 0, 1, 0.24),
    (24, "lead", CALL, 0, 1, 0.27), (24, "lead", CALL, 12, 1, 0.12), (24, "counter", COUNTER, 0, 1, 0.24),
    (28, "lead", CLIMB, 0, 1, 0.32),
    (36, "piano", CALL, 0, 2, 0.21), (40, "counter", "G4:32 | B4:32", 0, 1, 0.10),
    (44, "piano", LULL, 0, 2, 0.21), (44, "bell", LULL, 12, 2, 0.10),
    (52, "piano", ANSWER, 0, 1, 0.25), (52, "bell", ANSWER, 12, 1, 0.07),
    (56, "lead", TURN, -12, 1, 0.14), (56, "bell", TURN, 0, 1, 0.12),
    (64, "lead", CALL, 0, 1, 0.31), (64, "harmony", CALL, 0, 1, 0.16),
    (68, "lead", DARK, 0, 1, 0.31), (68, "harmony", DARK, 0, 1, 0.16), (68, "counter", COUNTER, 0, 1, 0.21),
    (72, "lead", TURN, 0, 1, 0.31), (72, "harmony", TURN, 0, 1, 0.16),
    (76, "lead", RETURN, 0, 1, 0.31), (76, "harmony", RETURN, 0, 1, 0.16),
    (80, "lead", CALL, 0, 1, 0.27), (80, "harmony", CALL, 0, 1, 0.16), (80, "lead", CALL, 12, 1, 0.14),
    (84, "lead", DARK, 0, 1, 0.27), (84, "harmony", DARK, 0, 1, 0.16), (84, "lead", DARK, 12, 1, 0.14),
    (80, "counter", COUNTER, 0, 1, 0.21), (84, "counter", COUNTER, 0, 1, 0.21),
    (88, "lead", WINDUP, 0, 1, 0.28), (88, "harmony", WINDUP, 0, 1, 0.16),
    (90, "lead", "A5:28", 0, 1, 0.19), (90, "lead", "E6:28", 0, 1, 0.12),
    (92, "piano", FAREWELL, 0, 1, 0.25), (92, "bell", FAREWELL, 12, 1, 0.09),
)

FOUR, BACKBEAT = "9...9...9...9...", "....9.......9..."
OFFBEAT, SIXTEENTHS = "..9...9...9...9.", "7395739573957395"
PATTERNS = {  # first bar, bar after the last, strength 1..9 of each step
    "kick": ((8, 15, FOUR), (15, 16, "9...9...9......."), (16, 32, FOUR), (52, 56, "7...7...7...7..."),
             (56, 62, FOUR), (64, 76, FOUR), (77, 89, FOUR), (89, 90, "9...9...9.9.....")),
    "heart": ((48, 52, "9..6...."),),
    "clap": ((16, 31, BACKBEAT), (31, 32, "....9..........."), (64, 75, BACKBEAT), (75, 76, "....9.......9..9"),
             (77, 88, BACKBEAT)),
    "closed": ((12, 16, "..6...6...6...6."), (20, 32, SIXTEENTHS), (56, 62, "..5...5...5...5."), (64, 76, SIXTEENTHS),
               (77, 90, SIXTEENTHS)),
    "open": ((14, 15, OFFBEAT), (16, 32, OFFBEAT), (64, 76, OFFBEAT), (77, 89, OFFBEAT)),
    "ride": ((24, 28, "8.5.8.5.8.5.8.5."), (72, 76, "8.5.8.5.8.5.8.5."), (80, 88, "9.6.9.6.9.6.9.6.")),
    "tom": ((31, 32, "........9.7.8.6."), (76, 77, "9..8..7.9.8.7.6.")),
    "snare": ((76, 77, "..........6.7789"),),
    "tick": ((90, 92, "9.6.8.6.9.6.8.6."), (92, 93, "7...5...3.......")),
    "pulse": ((0, 1, "2...3...4...5..."), (1, 2, "6...7...7...8..."), (2, 8, FOUR), (44, 48, FOUR)),
}
ROLLS = (  # first bar, then (steps, steps between strokes); growing louder throughout
    (14, ((16, 2), (8, 1), (4, 0.5))), (30, ((16, 2), (16, 1))), (60, ((16, 4), (16, 2), (16, 1), (12, 0.5))),
    (88, ((16, 2), (8, 1), (8, 0.5))),
)
ROLLING, DRIVING, CLIMBING = "..ro.rr..ror.r5o", ".rrr.rro.rrr.ro5", "..rr..rr..rr..oo"
BASSLINES = (  # first bar, bar after the last, degree of each step: root, octave, fifth
    (12, 15, "..r...r...r...r."), (15, 16, "..r...r...r....."), (16, 24, ROLLING), (24, 28, ".rro.ror.rro.r5o"),
    (28, 32, CLIMBING), (56, 60, "..r...r...r...r."), (60, 63, CLIMBING), (64, 72, ROLLING), (72, 76, DRIVING),
    (77, 80, ROLLING), (80, 88, DRIVING), (88, 90, CLIMBING),
)
DEEP = ((36, 44, 0.06), (44, 48, 0.05), (48, 56, 0.08), (90, 95, 0.14))  # first bar, bar after the last, gain
CASCADE = "0213201302312310"
ARPEGGIOS = (  # first bar, bar after the last, instrument, chord tone of each step, transposition, gain
    (4, 16, "pluck", CASCADE, 12, 0.24), (20, 32, "pluck", CASCADE, 12, 0.20), (24, 32, "pluck", "3120", 24, 0.09),
    (32, 36, "bell", "0.......2.....3.", 12, 0.10), (36, 44, "piano", "0..2..1.3..2..1.", 0, 0.09),
    (40, 48, "bell", "....3.....2...1.", 24, 0.05), (44, 48, "piano", "0..2..1.3..2..1.", 0, 0.09),
    (48, 64, "pluck", CASCADE, 12, 0.24), (56, 63, "pluck", "3120", 24, 0.09),
    (64, 90, "pluck", CASCADE, 12, 0.20), (80, 90, "pluck", "3120", 24, 0.10),
)

# Movements: bar and value, straight lines between; two values on one bar are a jump.
PAD_CUTOFF = ((0, 250), (4, 700), (8, 1000), (16, 2600), (16, 3600), (28, 5000), (32, 7000), (32, 800), (40, 2600),
              (48, 900), (64, 6000), (64, 4500), (80, 7000), (90, 9000), (90, 3500), (96, 350))  # Hz
PAD_LEVEL = ((0, -30), (2, -10), (4, -4), (16, -3), (16, -2), (32, -1), (32, -30), (32.25, -20), (33, -8), (48, -8),
             (60, -2), (64, -1), (90, -1), (90, 0), (96, -8))  # dB
ARP_CUTOFF = ((4, 350), (8, 800), (16, 5000), (16, 7000), (32, 9000), (48, 350), (56, 1800), (64, 9000), (96, 9000))
LEAD_CUTOFF = ((16, 5500), (24, 7500), (32, 11000), (56, 700), (60, 4000), (64, 9000), (80, 13000), (90, 13000),
               (90, 6000), (94, 600))
KICK_CUTOFF = ((52, 18000), (52, 250), (56, 600), (60, 3000), (64, 18000))
ROOM = ((0, 0.8), (16, 0.7), (16, 0.42), (32, 0.45), (32, 1.0), (60, 0.8), (64, 0.42), (90, 0.5), (90, 1.1))
FADER = ((32, 0), (32, -1.5), (48, -1.5), (60, 0), (64, 0), (64, 1.2), (90, 1.2), (90, 0))  # dB

CHOIR = ((30, 32, 0.30), (40, 48, 0.13), (60, 64, 0.35), (80, 90, 0.5), (90, 91, 0.5))  # as DEEP
RISERS = ((4, 2, 0.08), (8, 2, 0.11), (12, 1, 0.11), (16, 2, 0.18), (32, 4, 0.18), (48, 2, 0.08), (64, 4, 0.25),
          (80, 1, 0.15), (90, 2, 0.20))  # bar of the end, bars, gain
IMPACTS = ((8, 0.25), (12, 0.2), (16, 0.5), (32, 0.5), (64, 0.65), (80, 0.4), (90, 0.55))  # bar, gain
CRASHES = ((8, 0.1), (12, 0.16), (16, 0.32), (20, 0.22), (24, 0.32), (28, 0.22), (64, 0.36), (68, 0.22), (72, 0.32),
           (77, 0.32), (80, 0.4), (84, 0.3), (90, 0.4))  # bar, gain
GAPS = ((15.75, 16, 0.05), (32, 32.25, 0.0), (63.75, 64, 0.05))  # from bar, to bar, gain of everything but impacts
ACTS = (0, 32, 64, 96)  # echo and reverb end where an act does

NAMES = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}


def midi(name):
    """The MIDI number of a note such as "G#4"."""
    return 12 * (int(name[-1]) + 1) + NAMES[name[0]] + name.count("#")


def chord(bar):
    """Bass note and voicing of a bar, as MIDI numbers."""
    first, names = [line for line in HARMONY if line[0] <= bar][-1]
    root, *voicing = [midi(name) for name in CHORDS[names.split()[bar - first]].split()]
    return root, tuple(voicing)


def notes(melody):
    """(step, note, steps) of a written melody."""
    step = 0
    for name, length in (word.split(":") for word in melody.replace("|", " ").split()):
        if name != "-":
            yield step, midi(name), int(length)
        step += int(length)


def steps(lines):
    """(step of the song, symbol) of all that patterns play; a pattern repeats from its first bar on."""
    for first, end, pattern in lines:
        for step in range(16 * (end - first)):
            if pattern[step % len(pattern)] != ".":
                yield 16 * first + step, pattern[step % len(pattern)]


def strokes(name):
    """(time in seconds, strength 0..1) of a drum."""
    return [(step * STEP, int(symbol) / 9) for step, symbol in steps(PATTERNS[name])]


def kicks(first, last):
    """Beats with a kick from bar `first` until bar `last`, in bars."""
    bars = [time / BAR for time, _ in strokes("kick")]
    return [bar for bar in bars if first <= bar < last and bar * 4 % 1 == 0]


# ---- Sound ------------------------------------------------------------------------------------------------------


def frequency(note):
    return 440.0 * 2 ** ((note - 69) / 12)


def seconds(count):
    return np.arange(count) / RATE


def noise(seed, count):
    return np.random.default_rng(seed).standard_normal((2, count))


def saw(pitch, count, phase=0.0):
    """Band-limited sawtooth (polynomial step correction), in -1..1."""
    step = pitch / RATE
    position = (phase + step * np.arange(count)) % 1.0
    ramp = 2 * position - 1
    low = position < step
    t = position[low] / step
    ramp[low] -= 2 * t - t * t - 1
    high = position > 1 - step
    t = (position[high] - 1) / step
    ramp[high] -= t * t + 2 * t + 1
    return ramp


def sine(pitch):
    """A sine whose pitch is an array, in Hz."""
    return np.sin(2 * np.pi * np.cumsum(pitch) / RATE)


def filtered(kind, signal, cutoff, order=2):
    return sosfilt(butter(order, cutoff, kind, fs=RATE, output="sos"), signal, axis=-1)


lowpass = functools.partial(filtered, "lowpass")
highpass = functools.partial(filtered, "highpass")
bandpass = functools.partial(filtered, "bandpass")


def ends(count, attack, release):
    """Linear fades of so many seconds, so that nothing clicks."""
    t = seconds(count)
    return np.minimum(np.minimum(t / attack, (t[-1] - t) / release), 1.0)


def fall(count, *parts):
    """A sum of exponential decays (share, seconds)."""
    t = seconds(count)
    return sum(share * np.exp(-t / decay) for share, decay in parts)


def supersaw(note, count, voices, spread, seed):
    """Detuned saws over `spread` semitones, alternating sides, with as much power as one."""
    random = np.random.default_rng((seed, note))
    sides = np.zeros((2, count))
    for voice in range(voices):
        detune = spread * (2 * voice / (voices - 1) - 1)
        tone = saw(frequency(note + detune), count, random.random())
        sides[voice % 2] += tone
        sides[1 - voice % 2] += 0.35 * tone
    return sides / np.sqrt(voices)


# ---- Instruments: mono or stereo, peak about 1 ------------------------------------------------------------------


def thump(length, pitch, decay, drop=0.0, speed=0.02, attack=0.001):
    """A falling sine, the body of all drums but the kick: starts `drop` Hz higher, lands within `speed` seconds."""
    count = int(length * RATE)
    return sine(pitch + fall(count, (drop, speed))) * fall(count, (1, decay)) * ends(count, attack, 0.05)


def kick():
    count = int(0.30 * RATE)
    body = sine(47 + fall(count, (150, 0.020), (900, 0.0035))) * fall(count, (1, 0.09))
    click = highpass(noise(1, count)[0], 2500) * fall(count, (0.45, 0.003))
    return np.tanh(1.7 * body + click) * ends(count, 0.0003, 0.08)


def clap():
    """Three hands on either side, each side with its own noise, over a short snare body."""
    count = int(0.32 * RATE)
    t = seconds(count)
    bursts = sum(np.where(t >= at, np.exp(-(t - at) / 0.007), 0) for at in (0, 0.010, 0.020))
    tail = np.where(t >= 0.027, np.exp(-(t - 0.027) / 0.075), 0)
    hands = bandpass(noise(2, count), (950, 8500)) * (bursts + 0.6 * tail)
    middle = bandpass(noise(3, count)[0], (1200, 4000)) * fall(count, (0.4, 0.05))
    return (hands + middle) * ends(count, 0.0003, 0.05) + 0.5 * thump(0.32, 185, 0.045, 90, 0.01)


@functools.cache
def snare():
    count = int(0.20 * RATE)
    rattle = bandpass(noise(4, count), (1500, 9500)) * fall(count, (0.7, 0.05))
    return rattle * ends(count, 0.0005, 0.03) + 0.45 * thump(0.20, 190, 0.05, 120, 0.01)


def tom(pitch):
    skin = lowpass(noise(5, int(0.4 * RATE)), 900) * fall(int(0.4 * RATE), (0.25, 0.02))
    return np.tanh(1.5 * thump(0.4, pitch, 0.13, pitch, 0.03)) + skin


def cymbal(length, seed, low, share, *decays):
    """Inharmonic square partials and noise, above `low` Hz."""
    count = int(length * RATE)
    partials = sum(np.sign(sine(np.full(count, 410 * ratio))) for ratio in (1, 1.342, 1.731, 2.137, 2.541, 2.973))
    metal = bandpass(share * partials / 6 + (1 - share) * noise(seed, count), (low, 15000))
    return metal * fall(count, *decays) * ends(count, 0.0005, 0.3 * length)


@functools.cache
def bass(note):
    """One step long: bright for an instant, then dark; the sub stays."""
    count = int(0.95 * STEP * RATE)
    tone = saw(frequency(note), count) + 0.6 * saw(frequency(note + 12.07), count, 0.3)
    blend = fall(count, (1, 0.045))
    sub = sine(np.full(count, frequency(note)))
    growl = lowpass(tone, 2200, 4) * blend + lowpass(tone, 420, 4) * (1 - blend)
    return np.tanh(0.9 * growl + 0.9 * sub) * ends(count, 0.003, 0.02)


@functools.cache
def deep(note):
    """A whole bar of warm bass."""
    count = int((BAR + 0.1) * RATE)
    tone = lowpass(saw(frequency(note), count) + saw(frequency(note + 0.06), count, 0.5), 240, 4)
    return (sine(np.full(count, frequency(note))) + 0.6 * tone) * ends(count, 0.12, 0.25)


@functools.cache
def pad(voicing, length):
    count = int((length + 0.5) * RATE)
    voices = sum(supersaw(note, count, 7, 0.2, 10) for note in voicing)
    return highpass(voices, 240) * ends(count, 0.2, 0.5) / 5


@functools.cache
def choir(voicing, length):
    """Saws through the resonances of an open vowel."""
    count = int((length + 0.6) * RATE)
    voices = sum(supersaw(note + 12, count, 5, 0.16, 11) for note in voicing) + 0.3 * noise(12, count)
    vowel = sum(gain * bandpass(voices, (centre / 1.12, centre * 1.12))
                for centre, gain in ((640, 1.0), (1120, 0.8), (2700, 0.45), (3600, 0.25)))
    return vowel * ends(count, 0.3, 0.6) / 2


@functools.cache
def pluck(note, length):
    count = int((length + 0.25) * RATE)
    tone = saw(frequency(note), count, 0.1) + 0.6 * saw(frequency(note + 12.04), count, 0.6)
    return lowpass(tone, 9000) * fall(count, (0.75, 0.07), (0.15, 0.25)) * ends(count, 0.002, 0.05) * 0.6


@functools.cache
def piano(note, length):
    """Stretched partials, the high ones short, and the felt of the hammer."""
    count = int((length + 1.2) * RATE)
    pitch = frequency(note)
    partials = sum(0.62 ** order / order ** 0.4 * sine(np.full(count, pitch * order * np.sqrt(1 + 0.0004 * order ** 2)))
                   * fall(count, (0.5, 1.1 / order ** 0.7), (0.5, 0.35 / order ** 0.5)) for order in range(1, 11))
    felt = bandpass(noise((13, note), count), (300, 2200)) * fall(count, (0.12, 0.012))
    return (0.6 * partials + felt) * ends(count, 0.002, 0.9)


@functools.cache
def bell(note, length):
    """Two sines that bend each other, in a ratio that does not ring true, as bells do."""
    count = int((length + 2.0) * RATE)
    t = seconds(count)
    pitch = 2 * np.pi * frequency(note)
    ring = np.sin(pitch * t + 1.6 * fall(count, (1, 0.35)) * np.sin(pitch * 3.5 * t))
    shimmer = 0.4 * np.sin(2.003 * pitch * t) * fall(count, (1, 0.5))
    return (ring * fall(count, (0.7, 0.9), (0.3, 0.12)) + shimmer) * ends(count, 0.002, 0.8)


@functools.cache
def lead(note, length):
    count = int((length + 0.14) * RATE)
    t = seconds(count)
    vibrato = frequency(note) * (1 + 0.004 * np.clip((t - 0.25) / 0.3, 0, 1) * np.sin(2 * np.pi * 5.3 * t))
    body = 0.5 * sine(vibrato) + 0.2 * sine(vibrato / 2)
    bite = fall(count, (1, 0.10))
    voices = supersaw(note, count, 7, 0.13, 14)
    return (lowpass(voices, 4200) * (1 - bite) + lowpass(voices, 9500) * bite + body) * ends(count, 0.006, 0.12) / 2


@functools.cache
def counter(note, length):
    """Softer than the lead, slow to speak, one octave of warmth under it."""
    count = int((length + 0.3) * RATE)
    voices = supersaw(note, count, 5, 0.09, 15) + 0.4 * supersaw(note - 12, count, 3, 0.05, 16)
    return lowpass(voices, 2300) * ends(count, 0.09, 0.3) / 2


def riser(length):
    """Noise that climbs five octaves, band by band, and a tone that climbs two."""
    count = int(length * RATE)
    t = seconds(count) / length
    hiss = noise(20, count)
    climb = sum(bandpass(hiss, (low, low * 1.7)) * np.exp(-((t - at) / 0.13) ** 2)
                for at, low in zip(np.linspace(0.0, 1.02, 9), np.geomspace(260, 8300, 9)))
    tone = sine(220 * 4 ** t) + 0.5 * sine(221.5 * 4 ** t)
    return (climb + 0.18 * tone) * t ** 2 * ends(count, 0.01, 0.02)


def impact():
    count = int(3.4 * RATE)
    boom = np.tanh(1.5 * sine(40 + fall(count, (80, 0.07)))) * fall(count, (1, 0.38))
    air = lowpass(noise(21, count), 4500) * fall(count, (0.5, 0.08), (0.22, 0.5))
    return (boom + air) * ends(count, 0.001, 0.8)


INSTRUMENTS = {"lead": lead, "harmony": lead, "counter": counter, "piano": piano, "bell": bell, "pluck": pluck}

# ---- Parts ------------------------------------------------------------------------------------------------------


class Track:
    """A stereo buffer of the song's length that sounds are added to."""

    def __init__(self):
        self.data = np.zeros((2, LENGTH))

    def add(self, time, sound, gain=1.0, pan=0.0):
        """`sound` is mono or stereo; `pan` in -1..1 at constant power."""
        start = round(time * RATE)
        sound = np.atleast_2d(sound)
        count = min(sound.shape[1], LENGTH - start)
        angle = (pan + 1) * np.pi / 4
        sides = gain * np.sqrt(2) * np.array([[np.cos(angle)], [np.sin(angle)]])
        self.data[:, start:start + count] += sides * sound[:, :count]

    def play(self, drum, sound, gain, pan=0.0):
        for time, strength in strokes(drum):
            self.add(time, sound, gain * strength, pan)


def drums():
    """Kick and heartbeat; claps, rolls and toms; cymbals."""
    kicks, hands, metals = Track(), Track(), Track()
    kicks.play("kick", kick(), 0.62)
    kicks.data = swept(kicks.data, KICK_CUTOFF)
    kicks.play("heart", thump(0.35, 45, 0.12, 45, 0.03), 0.42)
    hands.play("clap", clap(), 0.44)
    hands.play("snare", snare(), 0.45)
    for first, runs in ROLLS:
        total, done = sum(run for run, _ in runs), 0
        for run, spacing in runs:
            for hit in np.arange(done, done + run, spacing):
                hands.add(first * BAR + hit * STEP, snare(), 0.05 + 0.22 * (hit / total) ** 1.5)
            done += run
    for index, (time, strength) in enumerate(strokes("tom")):
        hands.add(time, tom((180, 150, 120, 95)[index % 4]), 0.45 * strength, 0.5 - index % 4 / 3)
    metals.play("closed", cymbal(0.12, 6, 7500, 0.0, (1.2, 0.020)), 0.13, 0.2)
    metals.play("open", cymbal(0.50, 6, 7500, 0.1, (1.2, 0.085)), 0.16, -0.1)
    metals.play("ride", cymbal(0.50, 7, 6000, 0.7, (0.8, 0.03), (0.4, 0.14)), 0.24, -0.35)
    splash = cymbal(2.60, 8, 4800, 0.2, (0.7, 0.06), (0.6, 0.6))
    for bar, gain in CRASHES:
        metals.add(bar * BAR, splash, gain)
    return kicks.data, hands.data, metals.data


def basses():
    track = Track()
    for step, degree in steps(BASSLINES):
        track.add(step * STEP, bass(chord(step // 16)[0] + {"r": 0, "o": 12, "5": 7}[degree]), 0.50)
    for first, end, gain in DEEP:
        for bar in range(first, end):
            track.add(bar * BAR, deep(chord(bar)[0]), gain)
    return track.data


def pads():
    """The pad, whose filter moves, and the choir."""
    saws, singers = Track(), Track()
    for bar in range(BARS - 2):
        saws.add(bar * BAR, pad(chord(bar)[1], BAR), 0.55)
    for first, end, gain in CHOIR:
        for bar in range(first, end):
            singers.add(bar * BAR, choir(chord(bar)[1], BAR), gain)
    return swept(saws.data, PAD_CUTOFF) * 10 ** (movement(PAD_LEVEL) / 20), singers.data


def arpeggios():
    """The plucked synthesiser, and apart from it the bells and the piano, which keep their own brightness."""
    plucks, keys = Track(), Track()
    for first, end, instrument, pattern, transposition, gain in ARPEGGIOS:
        for step, tone in steps(((first, end, pattern),)):
            note = chord(step // 16)[1][int(tone)] + transposition
            track, length = (plucks, STEP) if instrument == "pluck" else (keys, 4 * STEP)
            track.add(step * STEP, INSTRUMENTS[instrument](note, length), gain, 0.55 * np.sin(step * 1.7))
    return swept(plucks.data, ARP_CUTOFF, 1.8), keys.data


def below(note, bar):
    """The nearest tone of the bar's chord that is a third or more under a note."""
    tones = {tone % 12 for tone in chord(bar)[1]}
    return next(lower for lower in range(note - 3, 0, -1) if lower % 12 in tones)


def melodies():
    """Leads in one track, whose filter moves, and the rest in another."""
    leads, others = Track(), Track()
    for bar, instrument, melody, transposition, stretch, gain in MELODIES:
        for step, note, length in notes(melody):
            start = 16 * bar + stretch * step
            note = below(note, start // 16) if instrument == "harmony" else note
            sound = INSTRUMENTS[instrument](note + transposition, stretch * length * STEP)
            track = leads if INSTRUMENTS[instrument] is lead else others
            track.add(start * STEP, sound, gain, {"harmony": 0.35, "counter": -0.4}.get(instrument, 0.0))
    return swept(leads.data, LEAD_CUTOFF), others.data


def pulses():
    track = Track()
    for partial, gain in ((1, 0.17), (2, 0.06), (4, 0.02)):
        track.play("pulse", thump(0.45, 55 * partial, 0.12, attack=0.012), gain)
    for index, (time, strength) in enumerate(strokes("tick")):
        blip = thump(0.25, frequency(midi("A6") + (0, 7, 3, 10)[index % 4]), 0.04)
        track.add(time, blip, 0.32 * strength, 0.7 * np.sin(2.4 * index))
    return track.data


def transitions():
    """Risers, kept apart from the impacts, which sound through the gaps."""
    risers, impacts = Track(), Track()
    for end, bars, gain in RISERS:
        stop = min([gap for gap, until, _ in GAPS if until == end], default=end)
        risers.add((end - bars) * BAR, riser((stop - end + bars) * BAR), gain)
    hit = impact()
    for bar, gain in IMPACTS:
        impacts.add(bar * BAR, hit, gain)
    return risers.data, impacts.data


# ---- Mix --------------------------------------------------------------------------------------------------------


def movement(points):
    """A line of (bar, value) as an array over the song."""
    bars, values = zip(*points)
    return np.interp(seconds(LENGTH) / BAR, bars, values)


def resonant(cutoff, q):
    """A second-order low-pass filter."""
    angle = 2 * np.pi * cutoff / RATE
    width, cosine = np.sin(angle) / (2 * q), np.cos(angle)
    return np.array([[(1 - cosine) / 2, 1 - cosine, (1 - cosine) / 2, 1 + width, -2 * cosine, 1 - width]]) / (1 + width)


def swept(signal, points, q=0.8):
    """A low-pass filter whose cutoff moves: a bank of fixed ones half an octave apart, cross-faded."""
    place = 2 * np.log2(movement(points) / 100)
    out = np.zeros_like(signal)
    for index in range(int(place.min()), int(np.ceil(place.max())) + 1):
        share = np.maximum(1 - np.abs(place - index), 0)
        where = np.flatnonzero(share)
        if where.size:
            part = slice(max(where[0] - RATE // 4, 0), where[-1] + 1)
            cutoff = min(100 * 2 ** (index / 2), 20000)
            out[:, part] += share[part] * sosfilt(resonant(cutoff, q), signal[:, part], axis=-1)
    return out


def sidechain():
    """Gain that dips on every kick and is back before the next."""
    t = seconds(int(4 * STEP * RATE))
    dip = np.clip(t / 0.002, 0, 1) * np.clip((0.40 - t) / 0.34, 0, 1) ** 1.4
    gain = np.ones(LENGTH)
    for time, strength in strokes("kick"):
        start = round(time * RATE)
        gain[start:start + t.size] = 1 - 0.85 * strength * dip
    return gain


def reverb(signal, decay, length):
    """Convolution with decaying, darkening noise; wide, without early reflections."""
    count = int(length * RATE)
    tail = highpass(lowpass(noise(30, count), 6500), 250) * fall(count, (1, decay))
    tail /= np.sqrt((tail ** 2).sum(axis=1, keepdims=True))
    return oaconvolve(signal, tail, axes=1)[:, :signal.shape[1]]


def echo(signal, time, feedback, turns=5):
    """Ping-pong delay."""
    out = np.zeros_like(signal)
    for turn in range(1, turns + 1):
        shift = round(turn * time * RATE)
        source = signal if turn % 2 == 0 else signal[::-1]
        out[:, shift:] += feedback ** turn * source[:, :-shift]
    return out


def gaps():
    gain = np.ones(LENGTH)
    for first, end, level in GAPS:
        gain[round(first * BAR * RATE):round(end * BAR * RATE)] = level
    return uniform_filter1d(gain, int(0.008 * RATE))


def limited(mix):
    """Look-ahead limiter on the true peak: the gain falls in the 6 ms before a peak and rises 40 dB a second."""
    peak = np.max([np.abs(resample_poly(side, 4, 1)).reshape(LENGTH, 4).max(axis=1) for side in mix], axis=0)
    ahead = int(0.006 * RATE)
    excess = np.maximum(20 * np.log10(np.maximum(peak, CEILING) / CEILING), 0)
    release = np.arange(LENGTH) * (40 / RATE)
    held = np.maximum.accumulate(np.concatenate([excess[ahead:], np.zeros(ahead)]) + release) - release
    reduction = uniform_filter1d(np.maximum(held, 0), ahead, origin=(ahead - 1) // 2)
    return mix * 10 ** (-reduction / 20)


def master(mix):
    """Everything under 150 Hz to the middle, loudness, limit, and silence at both ends."""
    middle, side = highpass((mix[0] + mix[1]) / 2, 26), highpass((mix[0] - mix[1]) / 2, 150, 4)
    mix = limited(DRIVE * 10 ** (movement(FADER) / 20) * np.stack([middle + side, middle - side]))
    t = seconds(LENGTH)
    fade = np.cos(np.pi / 2 * np.clip((t - 93 * BAR) / (SILENT_FROM - 93 * BAR), 0, 1)) ** 2
    return mix * np.minimum(t / 0.01, 1) * fade * (t < SILENT_FROM)


def render():
    duck = sidechain()
    kicks, hands, metals = drums()
    (chords, voices), (plucks, keys), (leads, others) = pads(), arpeggios(), melodies()
    chords *= duck
    voices *= 0.3 + 0.7 * duck
    plucks *= 0.4 + 0.6 * duck
    melody = leads * (0.35 + 0.65 * duck) + others
    soft, (risers, impacts) = pulses(), transitions()
    dry = 0.5 * plucks + 0.45 * keys + 0.5 * melody
    sent = 0.35 * hands + 0.5 * (chords + voices + plucks) + 0.9 * keys + 0.6 * melody + 0.4 * soft + 0.3 * risers
    effects = np.zeros_like(dry)
    for first, end in zip(ACTS, ACTS[1:]):
        act = slice(round(first * BAR * RATE), round(end * BAR * RATE))
        delayed = echo(dry[:, act], 3 * STEP, 0.52)
        effects[:, act] = 0.7 * delayed + movement(ROOM)[act] * reverb(sent[:, act] + 0.3 * delayed, 0.8, 3.2)
    mix = (hands + metals + basses() * duck + chords + voices + plucks + keys + melody + soft + risers
           + effects * (0.4 + 0.6 * duck))
    return master(mix * gaps() + kicks + impacts)


def main():
    pcm = (render().T * 32767).round().astype("<i2").tobytes()
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "s16le", "-ar", str(RATE), "-ac", "2", "-i", "-",
                    "-map_metadata", "-1", "-fflags", "+bitexact", "-flags", "+bitexact", "-c:a", "libvorbis",
                    "-q:a", "6", FILE], input=pcm, check=True)


if __name__ == "__main__":
    main()

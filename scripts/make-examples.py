#!/usr/bin/env python3
"""Writes the MIDI files of examples/ and the first inputs of the fuzz target that reads such files.
Their bytes are the same on every run.
"""

import pathlib
import struct

TICKS_PER_QUARTER = 480
STEPS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}


def note_number(name):
    """69 for "A4", 66 for "F#4"."""
    return 12 * (int(name[-1]) + 1) + STEPS[name[0]] + name.count("#")


def quantity(value):
    """A number in seven bits a byte."""
    parts = [value & 0x7F]
    while value := value >> 7:
        parts.insert(0, value & 0x7F | 0x80)
    return bytes(parts)


class Track:
    """Collects events in the order of time; times are in quarters from the start."""

    def __init__(self):
        self.data = b""
        self.last = 0

    def add(self, quarters, event):
        tick = round(quarters * TICKS_PER_QUARTER)
        assert tick >= self.last, "events come in the order of time"
        self.data += quantity(tick - self.last) + bytes(event)
        self.last = tick

    def meta(self, quarters, kind, data):
        self.add(quarters, bytes([0xFF, kind]) + quantity(len(data)) + data)

    def tempo(self, quarters, quarters_per_minute):
        self.meta(quarters, 0x51, round(60e6 / quarters_per_minute).to_bytes(3, "big"))

    def note(self, begin, end, number, velocity=100):
        self.add(begin, [0x90, number, velocity])
        self.add(end, [0x80, number, 64])

    def wheel(self, quarters, value):
        """value is -1.0 to 1.0; the centre is 0x2000."""
        steps = min(0x3FFF, round(0x2000 * (1 + value)))
        self.add(quarters, [0xE0, steps & 0x7F, steps >> 7])

    def chunk(self, end):
        self.meta(end, 0x2F, b"")
        return b"MTrk" + struct.pack(">I", len(self.data)) + self.data


def write(path, tracks, end):
    header = struct.pack(">4sIHHH", b"MThd", 6, int(len(tracks) > 1), len(tracks),
                         TICKS_PER_QUARTER)
    path.write_bytes(header + b"".join(track.chunk(end) for track in tracks))


MELODY = """
G4 1/2  B4 1/2  D5 1  E5 1/2  D5 1/2  B4 1
C5 1/2  E5 1/2  G5 1  F#5 1/2 E5 1/2  D5 1
E5 1/2  C5 1/2  A4 1  D5 1/2  B4 1/2  G4 1
A4 1/2  B4 1/2  C5 1/2  A4 1/2  F#4 1  D4 1
G4 1/2  A4 1/2  B4 1/2  D5 1/2
"""


def melody(path):
    """Five bars; the last note dips by a semitone and comes back."""
    conductor = Track()
    conductor.meta(0, 0x03, b"Melody")
    conductor.meta(0, 0x58, bytes([4, 2, 24, 8]))
    conductor.tempo(0, 126)
    conductor.tempo(16, 112)  # the last bar slows down
    conductor.tempo(18, 96)

    lead = Track()
    words = MELODY.split()
    now = 0
    for name, length in zip(words[::2], words[1::2]):
        length = 1 if length == "1" else 0.5
        lead.note(now, now + 0.9 * length, note_number(name))
        now += length
    lead.add(now, [0x90, note_number("G5"), 110])
    bend = [-1 / 8, -2 / 8, -3 / 8, -4 / 8, -3 / 8, -2 / 8, -1 / 8, 0]
    for i, value in enumerate(bend):
        lead.wheel(now + 0.5 + i / 16, value)
    now += 2
    lead.add(now, [0x80, note_number("G5"), 64])
    write(path, [conductor, lead], now)


DEMO = """
A3 E4 A4 C5 B4 A4 E4 C4  F3 C4 F4 A4 G4 F4 C4 A3
C4 G4 C5 E5 D5 C5 G4 E4  G3 D4 G4 B4 D5 B4 G4 E4
"""


def demo(path):
    """Four bars of broken chords and a last note, for a sound that changes meanwhile."""
    lead = Track()
    lead.meta(0, 0x03, b"Demo")
    lead.tempo(0, 120)
    now = 0
    for name in DEMO.split():
        lead.note(now, now + 0.45, note_number(name))
        now += 0.5
    lead.note(now, now + 2, note_number("A4"))
    write(path, [lead], now + 2)


def chromatic_scale(path):
    """C3 to C6 in quarters of a second."""
    scale = Track()
    scale.meta(0, 0x03, b"Chromatic scale")
    scale.tempo(0, 240)
    first, last = note_number("C3"), note_number("C6")
    for number in range(first, last + 1):
        scale.note(number - first, number - first + 1, number)
    write(path, [scale], last - first + 1)


def fuzz_corpus(folder):
    """One small file for each thing that a reader has to cope with."""
    one = Track()
    one.note(0, 1, 69)
    write(folder / "one-note.mid", [one], 1)

    running = Track()
    running.add(0, [0x90, 60, 100])
    for i, event in enumerate([[60, 0], [64, 100], [64, 0]], 1):
        running.add(i, event)
    running.add(4, [0xC0, 5])
    running.add(5, [0xD0, 64])
    write(folder / "running-status.mid", [running], 5)

    passed_over = Track()
    passed_over.meta(0, 0x01, b"a text of more than 127 bytes " * 5)
    passed_over.add(0, [0xF0, 5, 0x7E, 0x7F, 9, 1, 0xF7])
    passed_over.add(1, [0xF7, 2, 0xF3, 1])
    passed_over.note(300, 301, 127)
    write(folder / "texts-and-system-messages.mid", [passed_over], 400)

    tempo, notes = Track(), Track()
    for i in range(4):
        tempo.tempo(i, 60 + 30 * i)
        notes.add(i + 0.5, [0x90, 60 + i, 100])
        notes.wheel(i + 0.75, i / 4 - 0.5)
        notes.add(i + 1, [0x90, 60 + i, 0])
    write(folder / "tempo-changes-last.mid", [notes, tempo], 4)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    melody(root / "examples" / "melody.mid")
    chromatic_scale(root / "examples" / "chromatic-scale.mid")
    demo(root / "examples" / "demo.mid")
    fuzz_corpus(root / "fuzz" / "corpus" / "MidiFileFuzzer")


if __name__ == "__main__":
    main()

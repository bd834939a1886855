# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""festival as a program: diphone voices and one statistical voice."""

import subprocess
import tempfile
import time
import wave
from pathlib import Path
from random import Random

import numpy as np

from .speech import Span, Spoken, resampled

SCRIPT = Path(__file__).with_name("festival.scm")

# Never trained on: it measures how the model does with an unknown speaker.
HELD_OUT_VOICE = "ked_diphone"
DIPHONE_VOICE = "kal_diphone"
STATISTICAL_VOICE = "cmu_us_slt_arctic_hts"


class Festival:
    """Speaks with one voice; the program runs as long as the object lives."""

    def __init__(self, random: Random, voice: str):
        self._random = random
        self.speaker = voice
        self._folder = tempfile.TemporaryDirectory()
        self._program = subprocess.Popen(
            ["festival", "--pipe"],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        self._say(f'(load "{SCRIPT}")')

    def next_speaker(self) -> str:
        """Picks pace and, for a diphone voice, the melody."""
        self._stretch = self._random.uniform(0.8, 1.35)
        diphone = self.speaker.endswith("_diphone")
        held_out = self.speaker == HELD_OUT_VOICE
        self._pitch = 0 if held_out or not diphone else self._random.uniform(75, 190)
        self._deviation = self._random.uniform(6, 30)
        return self.speaker

    def speak(self, tokens: list[str]) -> Spoken | None:
        stem = Path(self._folder.name) / "speech"
        melody = f"{self._stretch:.3f} {self._pitch:.1f} {self._deviation:.1f}"
        self._say(f'(speak "{self.speaker}" {melody} "{" ".join(tokens)}" "{stem}")')
        if not self._wait_for(stem.with_suffix(".done")):
            return None
        spans = [read_span(line) for line in stem.with_suffix(".txt").read_text(encoding="utf-8").splitlines()]
        with wave.open(str(stem.with_suffix(".wav"))) as recording:
            samples = np.frombuffer(recording.readframes(recording.getnframes()), "<i2")
            rate = recording.getframerate()
        return Spoken(resampled(samples, rate), spans) if len(spans) == len(tokens) else None

    def _wait_for(self, marker: Path) -> bool:
        """Waits until the program made the marker; false when it gave up."""
        for _ in range(6000):
            if marker.exists():
                marker.unlink()
                return True
            time.sleep(0.01)
        return False

    def _say(self, expression: str) -> None:
        self._program.stdin.write(expression + "\n")
        self._program.stdin.flush()


def read_span(line: str) -> Span:
    start, end = map(float, line.split())
    return (None, None) if end < 0 else (start, end)

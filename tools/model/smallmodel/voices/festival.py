# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""festival as a program: diphone voices of English, and diphones of other languages lent to English."""

import subprocess
import tempfile
import time
import wave
from dataclasses import dataclass
from pathlib import Path
from random import Random

import numpy as np

from .speech import Span, Spoken, resampled

SCRIPT = Path(__file__).with_name("festival.scm")

# Never trained on: it measures how the model does with an unknown speaker.
HELD_OUT_VOICE = "ked_diphone"
DIPHONE_VOICE = "kal_diphone"


# Stands for all speakers of BORROWED.
BORROWED_VOICES = "borrowed"

VOICES = Path("/usr/share/festival/voices")

# Sounds of other languages that start and end the phones of English: common ones, then those of a language.
COMMON_SOUNDS = {phone: phone for phone in "b d f g k l m n p r s t v".split()} | {
    "aa": "a", "ae": "e", "ah": "a", "ao": "o", "aw": "a u", "ax": "e", "ay": "a j", "dh": "d", "eh": "e", "er": "e r",
    "ey": "e j", "hh": "h", "ih": "i", "iy": "i", "ow": "o u", "oy": "o j", "pau": "#", "th": "t", "uh": "u", "uw": "u",
    "w": "u", "y": "j", "z": "z",
}  # fmt: skip
CZECH_SOUNDS = COMMON_SOUNDS | {"ch": "c~", "jh": "dz~", "ng": "n*", "sh": "s~", "zh": "z~", "th": "s", "w": "v"}
FINNISH_SOUNDS = COMMON_SOUNDS | {
    "ae": "@", "ax": "7", "ay": "a i", "ch": "t s", "er": "7 r", "ey": "e i", "jh": "d s", "ng": "N", "oy": "o i",
    "sh": "s", "w": "w", "z": "s", "zh": "s",
}  # fmt: skip
ITALIAN_SOUNDS = COMMON_SOUNDS | {
    "ay": "a i", "ch": "tS", "ey": "e i", "hh": "#", "jh": "dZ", "ng": "n", "oy": "o i", "sh": "S", "w": "w", "zh": "dZ",
}  # fmt: skip
TELUGU_SOUNDS = COMMON_SOUNDS | {
    "aa": "aa", "ae": "eh", "ao": "oh", "aw": "aw", "ax": "a", "ay": "ay", "ch": "ch", "d": "D", "dh": "dh", "eh": "eh",
    "er": "a r", "ey": "ee", "hh": "h", "ih": "ih", "iy": "iy", "jh": "j", "ng": "n", "ow": "oo", "oy": "oh ih",
    "pau": "pau", "sh": "sh", "t": "T", "th": "th", "uh": "uh", "uw": "uw", "w": "v", "y": "y", "z": "s", "zh": "sh",
}  # fmt: skip

# Speakers of other languages, with their diphones and sounds.
BORROWED = {
    "czech-ph": (VOICES / "czech/czech_ph/group/ph.group", CZECH_SOUNDS),
    "czech-dita": (VOICES / "czech/czech_dita/group/dita.group", CZECH_SOUNDS),
    "czech-machac": (VOICES / "czech/czech_machac/group/machac.group", CZECH_SOUNDS),
    "czech-krb": (VOICES / "czech/czech_krb/group/krb.group", CZECH_SOUNDS),
    "finnish-lj": (VOICES / "finnish/suo_fi_lj_diphone/group/ljlpc.group", FINNISH_SOUNDS),
    "finnish-mv": (VOICES / "finnish/hy_fi_mv_diphone/group/mvlpc.group", FINNISH_SOUNDS),
    "italian-lp": (VOICES / "italian/lp_diphone/group/lp_diphone.group", ITALIAN_SOUNDS),
    "italian-pc": (VOICES / "italian/pc_diphone/group/pc_diphone.group", ITALIAN_SOUNDS),
    "telugu-nsk": (VOICES / "telugu/telugu_NSK_diphone/group/NSKlpc.group", TELUGU_SOUNDS),
}


def borrowed_voice(name: str) -> str:
    """The expression that makes a borrowed speaker the current voice."""
    index, sounds = BORROWED[name]
    listed = " ".join(f'("{phone}" {" ".join(map(quoted, there.split()))})' for phone, there in sounds.items())
    return f"(voice_borrowed {quoted(name)} {quoted(str(index))} '({listed}))"


def quoted(text: str) -> str:
    return f'"{text}"'


@dataclass(frozen=True)
class Melody:
    """Pace and pitch as festival takes them."""

    stretch: float  # of all durations
    pitch: float  # mean, in Hz; 0 for the voice's own
    deviation: float  # Hz

    def __str__(self) -> str:
        return f"{self.stretch:.3f} {self.pitch:.1f} {self.deviation:.1f}"


def random_melody(random: Random, speaker: str) -> Melody:
    stretch = random.uniform(0.8, 1.35)
    pitch = 0 if speaker == HELD_OUT_VOICE else random.uniform(75, 190)
    return Melody(stretch, pitch, random.uniform(6, 30))


class Festival:
    """Speaks with one voice, or with all borrowed speakers in turn; the program lives as long as the object."""

    def __init__(self, random: Random, voice: str):
        self._random = random
        self._voice = voice
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
        """Picks pace and melody, and the borrowed speaker; the held-out voice keeps its melody."""
        speaker = self._random.choice(list(BORROWED)) if self._voice == BORROWED_VOICES else self._voice
        return self.set_speaker(speaker, random_melody(self._random, speaker))

    def set_speaker(self, speaker: str, melody: Melody) -> str:
        self.speaker, self._melody = speaker, melody
        if speaker in BORROWED:
            self._say(borrowed_voice(speaker))
        return speaker

    def speak(self, tokens: list[str]) -> Spoken | None:
        stem = Path(self._folder.name) / "speech"
        self._say(f'(speak "{self.speaker}" {self._melody} "{" ".join(tokens)}" "{stem}")')
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

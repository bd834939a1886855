# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""espeak-ng through its C library: its own voice variants, and invented ones."""

import ctypes
import shutil
from pathlib import Path
from random import Random

import numpy as np

from .speech import Span, Spoken, resampled

LIBRARIES = Path("/usr/lib")

ACCENTS = {
    "en-us": 62,
    "en-gb": 9,
    "en-gb-x-rp": 10,
    "en-gb-scotland": 5,
    "en-029": 3,
    "en-us-nyc": 8,
    "en-gb-x-gbclan": 3,
}

# Never trained on: they measure how the model does with unknown variants.
HELD_OUT_VARIANTS = ("Andrea", "m7", "steph", "Michael")

# The variants that speak clearly enough to learn from.
VARIANTS = (
    "Alex Alicia Andy Annie Denis Diogo Gene Gene2 Henrique Hugo Jacky Lee Marco Mario Mike Nguyen Storm adam "
    "anika announcer antonio aunty belinda benjamin boris caleb david ed edward edward2 f1 f2 f3 f4 f5 "
    "grandma grandpa gustave iven iven2 iven3 iven4 john kaukovalta klatt klatt2 klatt3 klatt4 klatt5 klatt6 "
    "linda m1 m2 m3 m4 m5 m6 m8 marcelo max michel miguel norbert pablo paul pedro quincy rob robert sandro "
    "shelby steph2 steph3 travis victor zac"
).split()

INVENTED_VARIANTS = 220  # the engine knows at most 349 voices
INVENTED_SHARE = 0.5

AUDIO_SYNCHRONOUS = 2
PHONEME_EVENTS = 1
UTF8 = 1
POSITION_IS_CHARACTER = 1
PARAMETER_RATE, PARAMETER_PITCH, PARAMETER_RANGE = 1, 3, 4
EVENT_NONE, EVENT_WORD, EVENT_END, EVENT_PHONEME = 0, 1, 5, 7
PAUSES = (b"_:", b"_", b"_!", b"_|")


class Event(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int),
        ("identifier", ctypes.c_uint),
        ("text_position", ctypes.c_int),
        ("length", ctypes.c_int),
        ("audio_position", ctypes.c_int),  # milliseconds
        ("sample", ctypes.c_int),
        ("user_data", ctypes.c_void_p),
        ("phoneme", ctypes.c_char * 8),
    ]


CALLBACK = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(ctypes.c_short), ctypes.c_int, ctypes.POINTER(Event))


class Espeak:
    """One instance a process: the library keeps global state."""

    def __init__(self, random: Random, working_folder: Path, held_out: bool = False, invented: bool = True):
        """held_out speaks with the held-out variants only; working_folder keeps the invented variants."""
        self._random = random
        self._held_out = held_out
        self._invented = invented and not held_out
        self._audio: list[np.ndarray] = []
        self._events: list[tuple[int, int, float, bytes]] = []
        self._library = ctypes.CDLL("libespeak-ng.so.1")
        data = data_with_invented_variants(working_folder)
        self._rate = self._library.espeak_Initialize(AUDIO_SYNCHRONOUS, 0, str(data).encode(), PHONEME_EVENTS)
        self._callback = CALLBACK(self._receive)
        self._library.espeak_SetSynthCallback(self._callback)

    def next_speaker(self) -> str:
        """Picks accent, variant, pace and pitch at random."""
        accent = self._random.choices(list(ACCENTS), list(ACCENTS.values()))[0]
        self.set_speaker(accent, self._variant(), self._random.randint(115, 225), self._random.randint(15, 85))
        return self.speaker

    def set_speaker(self, accent: str, variant: str, words_per_minute: int, pitch: int) -> None:
        self.speaker = f"{accent}+{variant}"
        self._library.espeak_SetVoiceByName(self.speaker.encode())
        self._library.espeak_SetParameter(PARAMETER_RATE, words_per_minute, 0)
        self._library.espeak_SetParameter(PARAMETER_PITCH, pitch, 0)
        self._library.espeak_SetParameter(PARAMETER_RANGE, self._random.randint(25, 85), 0)

    def speak(self, tokens: list[str]) -> Spoken | None:
        self._audio, self._events = [], []
        text = " ".join(tokens).encode()
        self._library.espeak_Synth(
            text, ctypes.c_size_t(len(text) + 1), 0, POSITION_IS_CHARACTER, 0, UTF8, None, None
        )
        if not self._audio:
            return None
        return Spoken(resampled(np.concatenate(self._audio), self._rate), self._spans(tokens))

    def _variant(self) -> str:
        if self._held_out:
            return self._random.choice(HELD_OUT_VARIANTS)
        if self._invented and self._random.random() < INVENTED_SHARE:
            return invented_name(self._random.randrange(INVENTED_VARIANTS))
        return self._random.choice(VARIANTS)

    def _receive(self, samples, count, events) -> int:
        if samples and count > 0:
            self._audio.append(np.ctypeslib.as_array(samples, (count,)).copy())
        index = 0
        while events[index].type != EVENT_NONE:
            event = events[index]
            if event.type != EVENT_WORD or event.length > 0:  # empty words only mark the joint of clauses
                self._events.append((event.type, event.text_position, event.audio_position / 1000, event.phoneme))
            index += 1
        return 0

    def _spans(self, tokens: list[str]) -> list[Span]:
        """A token starts with its first word event and ends with the next pause, if one follows at once."""
        spans: list[list[float | None]] = [[None, None] for _ in tokens]
        owner = [index for index, token in enumerate(tokens) for _ in range(len(token) + 1)]
        current = None
        for kind, position, seconds, phoneme in self._events:
            if kind == EVENT_WORD:
                current = owner[min(max(position - 1, 0), len(owner) - 1)]
                if spans[current][0] is None:
                    spans[current][0] = seconds
            elif current is not None and (kind == EVENT_END or (kind == EVENT_PHONEME and phoneme in PAUSES)):
                spans[current][1] = seconds
                current = None
        return [(start, end) for start, end in spans]


def invented_name(index: int) -> str:
    return f"invented{index}"


def data_with_invented_variants(working_folder: Path) -> Path:
    """A copy of the engine's data with the invented variants beside its own."""
    data = working_folder / "espeak-ng-data"
    if not data.exists():
        partial = working_folder / "espeak-ng-data.partial"
        shutil.rmtree(partial, ignore_errors=True)
        installed = next(LIBRARIES.glob("*/espeak-ng-data"))
        shutil.copytree(installed, partial, ignore=without_foreign_voices)
        for index in range(INVENTED_VARIANTS):
            description = invented_variant(index)
            (partial / "voices" / "!v" / invented_name(index)).write_text(description, encoding="utf-8")
        partial.rename(data)
    return data


def without_foreign_voices(folder: str, names: list[str]) -> list[str]:
    """What shutil.copytree leaves out: languages other than English, and unused variants."""
    if Path(folder).name == "voices":
        return ["mb"]
    if Path(folder).name == "lang":
        return [name for name in names if name != "gmw"]
    if Path(folder).name == "gmw":
        return [name for name in names if not name.startswith("en")]
    if Path(folder).name == "!v":
        return [name for name in names if name not in VARIANTS + list(HELD_OUT_VARIANTS)]
    return []


def invented_variant(index: int) -> str:
    """The description of a speaker with a vocal tract, voice source and melody of its own."""
    random = Random(1000 + index)
    tract = random.uniform(0.84, 1.22)  # 1.2 is the short tract of a child
    base = random.uniform(60, 130) * tract**2.5
    lines = ["language variant", f"name {invented_name(index)}"]
    lines.append(f"pitch {base:.0f} {base * random.uniform(1.15, 1.8):.0f}")
    for formant in range(9):
        frequency = 100 * tract * random.uniform(0.93, 1.07)
        strength, width = random.uniform(60, 150), random.uniform(65, 150)
        lines.append(f"formant {formant} {frequency:.0f} {strength:.0f} {width:.0f}")
    if random.random() < 0.25:
        lines.append(f"klatt {random.randint(1, 6)}")
    if random.random() < 0.6:
        lines.append("tone " + " ".join(f"{at} {random.randint(70, 255)}" for at in (600, 1200, 2000, 3500)))
    if random.random() < 0.4:
        lines.append(f"roughness {random.randint(0, 4)}")
    if random.random() < 0.2:
        lines.append("breath " + " ".join(str(random.randint(0, 5)) for _ in range(8)))
    if random.random() < 0.15:
        lines.append(f"echo {random.randint(20, 120)} {random.randint(5, 20)}")
    lines.append(f"flutter {random.randint(0, 14)}")
    lines.append(f"consonants {random.randint(60, 125)} {random.randint(60, 125)}")
    lines.append(f"intonation {random.randint(1, 4)}")
    return "\n".join(lines) + "\n"

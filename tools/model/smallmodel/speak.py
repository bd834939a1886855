# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Has texts spoken and keeps the speech with the span of each word.

    python3 -m smallmodel.speak ENGINE TEXTS FOLDER --hours 2 --seed 1

A shard is FOLDER/NAME.npy, int16 samples at 16 kHz of all its texts, and FOLDER/NAME.json, a list of
{kind, text, speaker, start, length, words}: start and length in samples, words as [start, end] seconds.
"""

import argparse
import json
import re
from pathlib import Path
from random import Random

import numpy as np

from .voices import Espeak, Festival, Flite, Morphed, Spoken
from .voices.festival import BORROWED_VOICES, DIPHONE_VOICE, HELD_OUT_VOICE
from .voices.flite import DIPHONE_VOICES, STATISTICAL_VOICES

ENGINES = {
    "espeak": lambda random, folder: Espeak(random, folder),
    "espeak-variants": lambda random, folder: Espeak(random, folder, invented=False),
    "espeak-held-out": lambda random, folder: Espeak(random, folder, held_out=True),
    "flite-diphone": lambda random, folder: Flite(random, DIPHONE_VOICES),
    "flite-statistical": lambda random, folder: Flite(random, STATISTICAL_VOICES),
    "festival-diphone": lambda random, folder: Festival(random, DIPHONE_VOICE),
    "festival-borrowed": lambda random, folder: Festival(random, BORROWED_VOICES),
    "festival-morphed": lambda random, folder: Morphed(random),
    "festival-held-out": lambda random, folder: Festival(random, HELD_OUT_VOICE),
}

SHARD_SECONDS = 600
TEXTS_PER_SPEAKER = 6
LONGEST_SECONDS = 13.0
SHORTEST_SECONDS = 0.25

# Terms that an engine would read as a word, as it should say them.
SPOKEN_FORMS = {
    "API": "A P I",
    "URL": "U R L",
    "JSON": "jason",
    "HTML": "H T M L",
    "UI": "U I",
    "CPU": "C P U",
    "JavaScript": "java script",
    "Makefile": "make file",
    "changelog": "change log",
    "readme": "read me",
    "hotkey": "hot key",
    "mutex": "mew tex",
    "struct": "struckt",
    "namespace": "name space",
}


def spoken_tokens(text: str) -> tuple[list[str], list[int]]:
    """The tokens to be said, and for each the index of its word in the text."""
    tokens, owners = [], []
    for index, word in enumerate(text.split()):
        core, punctuation = re.fullmatch(r"(.*?)([.,?!]*)", word).groups()
        said = SPOKEN_FORMS.get(core, core).split()
        said[-1] += punctuation
        tokens += said
        owners += [index] * len(said)
    return tokens, owners


def word_spans(spoken: Spoken, owners: list[int]) -> list[list[float]] | None:
    """[start, end] of each word; words that the engine joined to the one before share its span evenly."""
    starts: list[float | None] = [None] * (owners[-1] + 1)
    ends: list[float | None] = [None] * (owners[-1] + 1)
    for (start, end), owner in zip(spoken.spans, owners):
        starts[owner] = start if starts[owner] is None else starts[owner]
        ends[owner] = end if end is not None else ends[owner]
    if starts[0] is None:
        return None
    bounds = [*starts, spoken.seconds]
    known = [index for index, start in enumerate(bounds) if start is not None]
    filled = np.interp(np.arange(len(bounds)), known, [bounds[index] for index in known])
    if np.any(np.diff(filled) < 0):
        return None
    return [[round(start, 3), round(word_end(start, ends[i], filled[i + 1]), 3)] for i, start in enumerate(filled[:-1])]


def word_end(start: float, end: float | None, following: float) -> float:
    """The end that the engine told, if it makes sense, or else the next word's start."""
    return end if end is not None and start < end <= following else following


class ShardWriter:
    """Gathers utterances and writes a shard when enough have come together."""

    def __init__(self, folder: Path, stem: str):
        self._folder, self._stem = folder, stem
        self._index = 0
        self._clear()
        folder.mkdir(parents=True, exist_ok=True)

    def add(self, description: dict, samples: np.ndarray) -> None:
        self._descriptions.append(description | {"start": self._length, "length": len(samples)})
        self._samples.append(samples)
        self._length += len(samples)
        if self._length >= SHARD_SECONDS * 16_000:
            self.flush()

    def flush(self) -> None:
        """Writes what there is; the description comes last and marks the shard as complete."""
        if not self._samples:
            return
        path = self._folder / f"{self._stem}-{self._index:04d}"
        np.save(path.with_suffix(".npy"), np.concatenate(self._samples))
        path.with_suffix(".json").write_text(json.dumps(self._descriptions), encoding="utf-8")
        self._index += 1
        self._clear()

    def _clear(self) -> None:
        self._descriptions, self._samples, self._length = [], [], 0


def has_good_length(spoken: Spoken) -> bool:
    return SHORTEST_SECONDS <= spoken.seconds <= LONGEST_SECONDS


def speak(engine: str, texts: list[tuple[str, str]], folder: Path, hours: float, seed: int, working: Path) -> None:
    """Has texts spoken by changing speakers until the hours are full."""
    random = Random(seed)
    random.shuffle(texts)
    synthesiser = ENGINES[engine](random, working)
    writer = ShardWriter(folder, f"{engine}-{seed}")
    seconds = 0.0
    index = 0
    while seconds < hours * 3600:
        if index % TEXTS_PER_SPEAKER == 0:
            speaker = synthesiser.next_speaker()
        kind, text = texts[index % len(texts)]
        index += 1
        tokens, owners = spoken_tokens(text)
        spoken = synthesiser.speak(tokens)
        spans = word_spans(spoken, owners) if spoken and has_good_length(spoken) else None
        if spans:
            writer.add({"kind": kind, "text": text, "speaker": speaker, "words": spans}, spoken.samples)
            seconds += spoken.seconds
    writer.flush()


def read_texts(path: Path) -> list[tuple[str, str]]:
    """(kind, text) of each line."""
    return [tuple(line.split("\t")) for line in path.read_text(encoding="utf-8").splitlines()]


def main() -> None:
    parser = argparse.ArgumentParser(description="Has texts spoken.")
    parser.add_argument("engine", choices=ENGINES)
    parser.add_argument("texts", type=Path)
    parser.add_argument("folder", type=Path)
    parser.add_argument("--hours", type=float, default=1)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--working-folder", type=Path, help="for the engine's data; FOLDER's parent by default")
    arguments = parser.parse_args()
    working = arguments.working_folder or arguments.folder.parent
    working.mkdir(parents=True, exist_ok=True)
    texts = read_texts(arguments.texts)
    speak(arguments.engine, texts, arguments.folder, arguments.hours, arguments.seed, working)


if __name__ == "__main__":
    main()

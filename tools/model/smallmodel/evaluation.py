# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Word error rates of a model directory on sentences and voices that training never heard.

    python3 -m smallmodel.evaluation DIRECTORY SPEECH

SPEECH holds a folder of shards for each engine of CONDITIONS.
"""

import argparse
from dataclasses import dataclass
from pathlib import Path

import numpy as np

from .augmentation import Noises, in_room, with_noise
from .examples import Composition, Utterance, read_shard, utterance
from .geometry import GEOMETRY
from .reference import ReferenceModel
from .scoring import Score
from .vocabulary import Vocabulary

SEED = 5
LEAD_SECONDS = 0.3
TAIL_SECONDS = 0.3
PEAK = 0.3

# Kinds of text without the word order of dictation.
FREE_KINDS = ("QUOTATION", "EXAMPLE", "WORDS")


@dataclass
class Condition:
    """What is read, by whom and how it is disturbed."""

    name: str
    engine: str
    noise: float | None = None  # dB below the speech
    room: bool = False
    full_windows: bool = False
    free_text: bool = False


CONDITIONS = (
    Condition("seen variants", "espeak-variants"),
    Condition("seen variants, 20 dB noise", "espeak-variants", noise=20),
    Condition("seen variants, 10 dB noise", "espeak-variants", noise=10),
    Condition("seen variants, free text", "espeak-variants", free_text=True),
    Condition("unseen variants", "espeak-held-out"),
    Condition("unseen variants, 20 dB noise", "espeak-held-out", noise=20),
    Condition("unseen variants, 10 dB noise", "espeak-held-out", noise=10),
    Condition("unseen variants, room", "espeak-held-out", room=True),
    Condition("unseen variants, full windows", "espeak-held-out", full_windows=True),
    Condition("seen diphone voice", "festival-diphone"),
    Condition("seen diphone voice, second engine", "flite-diphone"),
    Condition("seen statistical voices", "flite-statistical"),
    Condition("unseen speaker", "festival-held-out"),
    Condition("unseen speaker, 20 dB noise", "festival-held-out", noise=20),
)


def read_utterances(folder: Path, free_text: bool) -> list[Utterance]:
    utterances = []
    for description in sorted(folder.glob("*.json")):
        entries, samples = read_shard(description)
        utterances += [utterance(entry, samples) for entry in entries]
    chosen = [spoken for spoken in utterances if (spoken.kind in FREE_KINDS) == free_text]
    return [chosen[index] for index in np.random.default_rng(SEED).permutation(len(chosen))]


class Evaluator:
    """Measures one model directory."""

    def __init__(self, directory: Path, speech: Path, count: int):
        self._model = ReferenceModel(directory)
        self._vocabulary = Vocabulary(self._model.pieces)
        self._speech = speech
        self._count = count
        self._random = np.random.default_rng(SEED)
        self._noises = Noises(self._random)

    def score(self, condition: Condition, show: int = 0) -> Score:
        """The score of so many utterances; show prints the first few."""
        utterances = read_utterances(self._speech / condition.engine, condition.free_text)[: self._count]
        score = Score()
        for group in self._groups(utterances, condition.full_windows):
            reference = " ".join(word for spoken in group for word in spoken.words)
            samples = self._samples(group, condition)
            heard = self._model.text(self._model.recognise(samples))
            errors = score.add(reference, heard).errors
            if show > 0:
                show -= 1
                print(f"    {group[0].speaker}, {errors} errors\n      {reference}\n      {heard}")
        return score

    def _groups(self, utterances: list[Utterance], full_windows: bool) -> list[list[Utterance]]:
        if not full_windows:
            return [[spoken] for spoken in utterances]
        groups, seconds = [[]], 0.0
        for spoken in utterances:
            length = len(spoken.samples) / GEOMETRY.sample_rate + TAIL_SECONDS
            if seconds + length > GEOMETRY.window_samples / GEOMETRY.sample_rate - LEAD_SECONDS:
                groups.append([])
                seconds = 0.0
            groups[-1].append(spoken)
            seconds += length
        return groups[:-1]

    def _samples(self, group: list[Utterance], condition: Condition) -> np.ndarray:
        composition = Composition(self._vocabulary)
        composition.add_silence(LEAD_SECONDS)
        for spoken in group:
            composition.add_speech(spoken, 1.0, PEAK)
            composition.add_silence(TAIL_SECONDS)
        samples = composition.samples[: GEOMETRY.window_samples]
        if condition.room:
            samples = in_room(samples, self._random)
        if condition.noise is not None:
            samples = with_noise(samples, self._noises.take(len(samples)), composition.speech_power, condition.noise)
        return samples


def main() -> None:
    parser = argparse.ArgumentParser(description="Measures a model directory.")
    parser.add_argument("directory", type=Path)
    parser.add_argument("speech", type=Path)
    parser.add_argument("--count", type=int, default=100, help="utterances for each condition")
    parser.add_argument("--only", help="conditions whose name contains this")
    parser.add_argument("--show", type=int, default=0, help="transcripts to print for each condition")
    arguments = parser.parse_args()
    evaluator = Evaluator(arguments.directory, arguments.speech, arguments.count)
    for condition in CONDITIONS:
        if arguments.only is None or arguments.only in condition.name:
            score = evaluator.score(condition, arguments.show)
            print(f"{condition.name:36} {score.percent:5.1f} %  of {score.words} words", flush=True)


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Batches of windows of like length, made without end in a process of their own."""

from dataclasses import dataclass
from multiprocessing import Queue
from pathlib import Path

import numpy as np

from .examples import Composer, Example, Utterance, read_shard, targets, utterance
from .geometry import GEOMETRY
from .vocabulary import Vocabulary

SHARDS_AT_ONCE = 6
TURNS_PER_SHARD = 15
UTTERANCES_PER_TURN = 4

# How much more often a shard of an engine is drawn than one of espeak-ng: sounds cut from human voices say more
# about a speaker never heard than sounds made from formants.
FAVOURED = {
    "festival-morphed": 8.0, "festival-borrowed": 2.0, "festival-diphone": 2.0, "flite-statistical": 2.0,
    "flite-diphone": 1.2,
}  # fmt: skip


@dataclass
class Batch:
    """Windows padded to one length."""

    mel: np.ndarray  # float16 [windows, bands, frames], 0 beyond a window's end
    valid: np.ndarray  # int64 [windows], encoder frames
    tokens: np.ndarray  # int64 [windows, most tokens]
    places: np.ndarray  # int64 [places, 5]: window, frame, tokens before, token, duration


def collate(examples: list[Example], random: np.random.Generator) -> Batch:
    """Some batches are longer than their windows, as in use, where a window has a fixed length."""
    step = GEOMETRY.subsampling
    frames = max(-(-len(example.features) // step) for example in examples) + random.choice([0, 0, 1, 4])
    mel = np.zeros((len(examples), GEOMETRY.mel_bands, frames * step), np.float16)
    tokens = np.zeros((len(examples), max(len(example.tokens) for example in examples)), np.int64)
    places = []
    for index, example in enumerate(examples):
        mel[index, :, : len(example.features)] = example.features.T
        tokens[index, : len(example.tokens)] = example.tokens
        places += [(index, *place) for place in targets(example, random)]
    return Batch(mel, np.array([example.valid for example in examples]), tokens, np.array(places, np.int64))


class BatchSource:
    """Draws utterances from all shards of a folder, also from those that come later."""

    def __init__(self, folder: Path, vocabulary: Vocabulary, seconds: float, seed: int):
        """seconds is the audio of a batch, padding included."""
        self._folder = folder
        self._frames = int(seconds * GEOMETRY.sample_rate / GEOMETRY.hop_length)
        self._random = np.random.default_rng(seed)
        self._composer = Composer(vocabulary, seed + 1)

    def batches(self):
        """The batches of one draw of utterances."""
        examples = [self._composer.example(group) for group in self._groups(self._draw())]
        examples = sorted((example for example in examples if example.tokens), key=lambda item: len(item.features))
        groups = self._by_length(examples)
        self._random.shuffle(groups)
        return [collate(group, self._random) for group in groups]

    def _draw(self) -> list[Utterance]:
        """Utterances in turns of a few by one speaker, as most windows have only one."""
        shards = sorted(self._folder.glob("*.json"))
        weights = np.array([favour(shard) for shard in shards])
        count = min(SHARDS_AT_ONCE, len(shards))
        turns = []
        for place in self._random.choice(len(shards), count, replace=False, p=weights / weights.sum()):
            entries, samples = read_shard(shards[place])
            starts = self._random.permutation(np.arange(0, len(entries), UTTERANCES_PER_TURN))[:TURNS_PER_SHARD]
            turns += [[utterance(entry, samples) for entry in entries[start : start + UTTERANCES_PER_TURN]] for start in starts]
        self._random.shuffle(turns)
        return [spoken for turn in turns for spoken in turn]

    def _groups(self, utterances: list[Utterance]):
        """One utterance, or as many as fill a window more or less."""
        index = 0
        while index < len(utterances):
            wanted = 0 if self._random.random() < 0.4 else self._random.uniform(4, 18)
            group, seconds = [], 0.0
            while index < len(utterances) and (not group or seconds < wanted):
                group.append(utterances[index])
                seconds += len(utterances[index].samples) / GEOMETRY.sample_rate + 0.5
                index += 1
            yield group

    def _by_length(self, examples: list[Example]) -> list[list[Example]]:
        groups: list[list[Example]] = [[]]
        for example in examples:
            if groups[-1] and (len(groups[-1]) + 1) * len(example.features) > self._frames:
                groups.append([])
            groups[-1].append(example)
        return [group for group in groups if group]


def produce(folder: Path, vocabulary: Path, seconds: float, seed: int, queue: Queue) -> None:
    """Puts batches into the queue for ever."""
    source = BatchSource(folder, Vocabulary.read(vocabulary), seconds, seed)
    while True:
        for batch in source.batches():
            queue.put(batch)


def favour(shard: Path) -> float:
    """The factor of the engine that a shard is named after."""
    return next((factor for engine, factor in FAVOURED.items() if shard.name.startswith(engine)), 1.0)

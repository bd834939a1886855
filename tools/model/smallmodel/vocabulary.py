# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Subword pieces: learnt by joining frequent neighbours, used through their order alone.

    python3 -m smallmodel.vocabulary TEXTS VOCABULARY.json

A word starts with the mark U+2581.  The punctuation . , ? ! never joins a word's pieces.
"""

import argparse
import json
import re
import string
from collections import Counter, defaultdict
from pathlib import Path

from .geometry import GEOMETRY
from .speak import read_texts

WORD_START = "\u2581"
UNKNOWN = "<unk>"
PUNCTUATION = ".,?!"
FREQUENCY_EXPONENT = 0.7  # keeps the pieces general: a word of the grammar may occur thousands of times


def split_word(word: str) -> tuple[str, str]:
    """A written word and the punctuation after it."""
    return re.fullmatch(r"(.*?)([.,?!]*)", word).groups()


class Vocabulary:
    """Pieces by index.  Two neighbours join when their union is a piece, the piece of lowest index first."""

    def __init__(self, pieces: list[str]):
        self.pieces = pieces
        self._index = {piece: index for index, piece in enumerate(pieces)}
        self._cache: dict[str, tuple[list[int], list[int]]] = {}

    @classmethod
    def read(cls, path: Path) -> "Vocabulary":
        return cls(json.loads(path.read_text(encoding="utf-8")))

    def encode_word(self, word: str) -> tuple[list[int], list[int]]:
        """Indices of the pieces of a word, and the number of its letters before each.

        Example: "report," may be "▁re", "port", "," with 0, 2 and 6 letters before them.
        """
        if word not in self._cache:
            core, punctuation = split_word(word)
            parts = self._joined(list(WORD_START + core)) + list(punctuation)
            before, letters = [], 0
            for part in parts:
                before.append(letters)
                letters += len(part.replace(WORD_START, "")) if part not in PUNCTUATION else 0
            self._cache[word] = [self._index.get(part, 0) for part in parts], before
        return self._cache[word]

    def decode(self, indices: list[int]) -> str:
        return "".join(self.pieces[index] for index in indices).replace(WORD_START, " ").strip()

    def _joined(self, parts: list[str]) -> list[str]:
        while True:
            unions = [self._index.get(left + right) for left, right in zip(parts, parts[1:])]
            candidates = [(index, place) for place, index in enumerate(unions) if index is not None]
            if not candidates:
                return parts
            _, place = min(candidates)
            parts[place : place + 2] = [parts[place] + parts[place + 1]]


class PieceLearner:
    """Joins the most frequent neighbours, again and again, keeping counts of pairs up to date."""

    def __init__(self, words: Counter):
        self._sequences = [list(WORD_START + word) for word in words]
        self._weights = [count**FREQUENCY_EXPONENT for count in words.values()]
        self._pairs: Counter = Counter()
        self._places: dict[tuple[str, str], set[int]] = defaultdict(set)
        for place in range(len(self._sequences)):
            self._count(place, 1)

    def join_next(self) -> str:
        """Joins the most frequent pair that may join, and returns its union."""
        pair = max((pair for pair in self._pairs if joinable(*pair)), key=self._pairs.get)
        for place in list(self._places[pair]):
            self._count(place, -1)
            self._sequences[place] = join(self._sequences[place], pair)
            self._count(place, 1)
        del self._pairs[pair]
        return "".join(pair)

    def _count(self, place: int, sign: int) -> None:
        sequence = self._sequences[place]
        for pair in zip(sequence, sequence[1:]):
            self._pairs[pair] += sign * self._weights[place]
            (self._places[pair].add if sign > 0 else self._places[pair].discard)(place)


def joinable(left: str, right: str) -> bool:
    """Hyphens stay alone, and an apostrophe only follows short pieces."""
    return "-" not in left + right and not ("'" in right and len(left) > 3)


def join(sequence: list[str], pair: tuple[str, str]) -> list[str]:
    joined, place = [], 0
    while place < len(sequence):
        width = 2 if tuple(sequence[place : place + 2]) == pair else 1
        joined.append("".join(sequence[place : place + width]))
        place += width
    return joined


def learn(texts: list[str], size: int) -> list[str]:
    """Pieces for the texts: the unknown piece, punctuation, characters, then unions in order of joining."""
    words = Counter(split_word(word)[0] for text in texts for word in text.split())
    characters = sorted(set(string.ascii_letters) | set(WORD_START + "".join(words)))
    pieces = [UNKNOWN, *PUNCTUATION, *(character for character in characters if character not in PUNCTUATION)]
    learner = PieceLearner(words)
    while len(pieces) < size:
        union = learner.join_next()
        if union not in pieces:
            pieces.append(union)
    return pieces


def main() -> None:
    parser = argparse.ArgumentParser(description="Learns the subword pieces of texts.")
    parser.add_argument("texts", type=Path)
    parser.add_argument("vocabulary", type=Path)
    arguments = parser.parse_args()
    pieces = learn([text for _, text in read_texts(arguments.texts)], GEOMETRY.vocabulary)
    arguments.vocabulary.write_text(json.dumps(pieces, ensure_ascii=False, indent=0) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()

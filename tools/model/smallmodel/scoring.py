# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Word errors of a transcript against a reference text.  Case and punctuation do not count."""

import re
from dataclasses import dataclass


def words(text: str) -> list[str]:
    """Example: "Forty-five, isn't it?" is forty, five, isn't, it."""
    return re.findall(r"[a-z0-9']+", text.lower())


def word_errors(reference: list[str], heard: list[str]) -> int:
    """The least number of words to replace, insert or delete."""
    previous = list(range(len(heard) + 1))
    for row, expected in enumerate(reference, 1):
        current = [row]
        for column, word in enumerate(heard, 1):
            replaced = previous[column - 1] + (word != expected)
            current.append(min(replaced, previous[column] + 1, current[-1] + 1))
        previous = current
    return previous[-1]


@dataclass
class Score:
    """Errors and reference words so far."""

    errors: int = 0
    words: int = 0

    def add(self, reference: str, heard: str) -> "Score":
        """Counts one text, and returns its score alone."""
        expected = words(reference)
        score = Score(word_errors(expected, words(heard)), len(expected))
        self.errors += score.errors
        self.words += score.words
        return score

    @property
    def percent(self) -> float:
        return 100 * self.errors / max(self.words, 1)

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Windows of speech with the frame at which each piece is due, and what the network should say where."""

import json
from dataclasses import dataclass
from pathlib import Path

import numpy as np

from .augmentation import Noises, articulation, channel, faster, in_room, masked, speaker_filters, unevenness, with_noise
from .features import encoder_frame_count, log_mel, normalised, power_spectrum
from .geometry import GEOMETRY
from .vocabulary import Vocabulary

RATE = GEOMETRY.sample_rate
LONGEST_DURATION = max(GEOMETRY.durations)

# A word that the end of the window cuts by more than this is not asked for.
CUT_TOLERANCE = 0.04  # seconds

# Shares of the positions one and two frames after a due emission that ask for it all the same: greedy
# decoding sometimes arrives late, and must not lose the word then.
LATE_SHARES = ((1, 0.4), (2, 0.15))


@dataclass
class Utterance:
    """One spoken text."""

    samples: np.ndarray  # int16
    words: list[str]
    spans: list[tuple[float, float]]  # seconds
    kind: str
    speaker: str


@dataclass
class Example:
    """Features of one window and its pieces."""

    features: np.ndarray  # float16 [mel frames, bands]
    tokens: list[int]
    frames: list[int]  # encoder frame at which each token is due
    valid: int  # encoder frames


def read_shard(description: Path) -> tuple[list[dict], np.ndarray]:
    return json.loads(description.read_text(encoding="utf-8")), np.load(description.with_suffix(".npy"), mmap_mode="r")


def utterance(entry: dict, samples: np.ndarray) -> Utterance:
    part = np.array(samples[entry["start"] : entry["start"] + entry["length"]])
    return Utterance(part, entry["text"].split(), entry["words"], entry["kind"], entry["speaker"])


class Composition:
    """Samples laid one after the other, with the time of each piece."""

    def __init__(self, vocabulary: Vocabulary):
        self._vocabulary = vocabulary
        self._parts: list[np.ndarray] = []
        self._speech_energy, self._speech_length = 0.0, 0
        self.length = 0
        self.pieces: list[tuple[int, float, float]] = []  # token, its time, its word's end in seconds

    @property
    def samples(self) -> np.ndarray:
        return np.concatenate(self._parts)

    @property
    def speech_power(self) -> float:
        """Mean power of the speech, silence around it not counted."""
        return self._speech_energy / max(self._speech_length, 1) + 1e-9

    def add_silence(self, seconds: float) -> None:
        self._append(np.zeros(int(seconds * RATE), np.float32))

    def add_speech(self, spoken: Utterance, speed: float, peak: float) -> None:
        """Speech at a pace, scaled to a peak."""
        samples = spoken.samples.astype(np.float32)
        samples = faster(samples, speed) if speed != 1 else samples
        samples *= peak / (np.abs(samples).max() + 1)
        for word, (start, end) in zip(spoken.words, spoken.spans):
            self._add_word(word, self.length / RATE + start / speed, self.length / RATE + end / speed)
        self._speech_energy += float((samples**2).sum())
        self._speech_length += len(samples)
        self._append(samples)

    def _append(self, samples: np.ndarray) -> None:
        self._parts.append(samples)
        self.length += len(samples)

    def _add_word(self, word: str, start: float, end: float) -> None:
        tokens, letters_before = self._vocabulary.encode_word(word)
        letters = max(sum(character.isalnum() for character in word), 1)
        for token, before in zip(tokens, letters_before):
            self.pieces.append((token, start + (end - start) * min(before / letters, 1), end))


class Composer:
    """Makes training windows out of utterances."""

    def __init__(self, vocabulary: Vocabulary, seed: int):
        self._vocabulary = vocabulary
        self._random = np.random.default_rng(seed)
        self._noises = Noises(self._random)

    def example(self, utterances: list[Utterance]) -> Example:
        """A window with all utterances that fit, randomly changed."""
        random = self._random
        composition = self._compose(utterances)
        length = self._window_length(composition)
        samples = self._recorded(composition, length)
        power = power_spectrum(samples) * channel(random)
        energy = log_mel(power, speaker_filters(random))
        if random.random() < 0.6:
            energy = energy @ articulation(random)
        if random.random() < 0.5:
            energy += unevenness(len(energy), random)
        features = masked(normalised(energy), random).astype(np.float16)
        valid = encoder_frame_count(len(samples))
        tokens, frames = due_frames(composition.pieces, len(samples) / RATE, valid)
        return Example(features, tokens, frames, valid)

    def _compose(self, utterances: list[Utterance]) -> Composition:
        random = self._random
        composition = Composition(self._vocabulary)
        loudness = np.exp(random.uniform(np.log(0.02), np.log(0.9)))
        speed = 1.0 if random.random() < 0.15 else random.uniform(0.85, 1.18)
        composition.add_silence(random.uniform(0, 0.7))
        for spoken in utterances:
            composition.add_speech(spoken, speed, min(loudness * random.uniform(0.6, 1.5), 1))
            composition.add_silence(random.uniform(1, 5) if random.random() < 0.05 else random.uniform(0.05, 0.9))
        return composition

    def _window_length(self, composition: Composition) -> int:
        """Samples of the window: all, or cut at random, or soon after a word."""
        random = self._random
        longest = min(composition.length, GEOMETRY.window_samples)
        kind = random.random()
        if kind < 0.08:
            return max(int(longest * random.uniform(0.6, 1)), RATE // 2)
        if kind < 0.2:
            _, _, end = composition.pieces[-1]
            return min(int((end + random.uniform(0.0, 0.1)) * RATE), longest)
        return longest

    def _recorded(self, composition: Composition, length: int) -> np.ndarray:
        """The samples as a microphone in some room would take them."""
        random = self._random
        samples = composition.samples[: max(length, 1)]
        power = composition.speech_power
        self._noises.remember(samples)
        if random.random() < 0.25:
            samples = in_room(samples, random)
        kind = random.random()
        if kind < 0.5:
            samples = with_noise(samples, self._noises.take(len(samples)), power, random.uniform(5, 30))
        elif kind < 0.75:
            samples = with_noise(samples, self._noises.take(len(samples)), power, random.uniform(30, 55))
        elif kind < 0.9:
            samples = samples + random.standard_normal(len(samples)).astype(np.float32) * np.float32(2e-5)
        if random.random() < 0.05:
            limit = np.abs(samples).max() * random.uniform(0.3, 0.9)
            samples = np.clip(samples, -limit, limit)
        return samples.astype(np.float32)


def due_frames(pieces: list[tuple[int, float, float]], seconds: float, valid: int) -> tuple[list[int], list[int]]:
    """Tokens of the words that end within the window, and the frame nearest to the time of each."""
    kept = [(token, time) for token, time, end in pieces if end <= seconds + CUT_TOLERANCE]
    times = np.array([time for _, time in kept])
    frames = np.minimum(np.floor(times / GEOMETRY.frame_seconds + 0.5).astype(int), valid - 1)
    return [token for token, _ in kept], np.maximum.accumulate(frames).tolist() if kept else []


def targets(example: Example, random: np.random.Generator) -> list[tuple[int, int, int, int]]:
    """(frame, tokens before, token, duration) of all places along the path that should be taken.

    A token's duration leads to the next emission.  A blank's stops one frame short of it, since
    jumping over an emission would lose the word.
    """
    count = len(example.tokens)
    due = [*example.frames, example.valid]
    places = []
    frame = 0
    for before in range(count + 1):
        for frame in range(frame, due[before]):
            gap = due[before] - frame
            duration = gap - 1 if gap > 1 and before < count else gap
            places.append((frame, before, GEOMETRY.blank, min(duration, LONGEST_DURATION)))
        frame = due[before]
        if before < count:
            token, advance = example.tokens[before], due[before + 1] - frame
            places.append((frame, before, token, min(advance, LONGEST_DURATION)))
            for late, share in LATE_SHARES:
                if frame + late < example.valid and random.random() < share:
                    places.append((frame + late, before, token, min(max(advance - late, 0), LONGEST_DURATION)))
    return places

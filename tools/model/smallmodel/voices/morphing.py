# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Speakers between two of festival's and beyond them.

Both say the same words at the same pace and pitch, so their sounds stand at the same places. The spectral
envelope of one is moved towards that of the other, or away from it, by more or less at each frequency.
"""

from random import Random

import numpy as np

from .festival import BORROWED, DIPHONE_VOICE, Festival, random_melody
from .speech import Spoken

FRAME = 512  # samples, 32 ms
HOP = 128
ENVELOPE_COEFFICIENTS = 30  # of the cepstrum: what is finer is the pitch
FULL_SCALE = 32768
FLOOR = 1e-3  # of an amplitude, as the transform gives it of samples between -1 and 1: silence stays silence
LARGEST_CHANGE = 3.0  # natural logarithm of an amplitude, 26 dB
LARGEST_DELAY = 1_600  # samples; utterances that differ by more in length are not the same

WEIGHT_RANGE = (-0.4, 1.0)  # 0 is the first speaker, 1 the second
WEIGHT_DEVIATION = 0.35  # around it, along the frequencies
WEIGHT_POINTS = 6  # evenly spaced


class Morphed:
    """A new speaker each time; two festival programs live as long as the object."""

    def __init__(self, random: Random):
        self._random = random
        self._speakers = [Festival(random, DIPHONE_VOICE) for _ in range(2)]

    def next_speaker(self) -> str:
        names = self._random.sample([DIPHONE_VOICE, *BORROWED], 2)
        melody = random_melody(self._random, DIPHONE_VOICE)
        for speaker, name in zip(self._speakers, names):
            speaker.set_speaker(name, melody)
        self._weights = random_weights(self._random)
        return "+".join(names)

    def speak(self, tokens: list[str]) -> Spoken | None:
        first, second = (speaker.speak(tokens) for speaker in self._speakers)
        if first is None or second is None or abs(len(first.samples) - len(second.samples)) > LARGEST_DELAY:
            return None
        return Spoken(morphed(first.samples, second.samples, self._weights), first.spans)


def random_weights(random: Random) -> np.ndarray:
    """How far each frequency is moved; float64 [FRAME / 2 + 1]."""
    centre = random.uniform(*WEIGHT_RANGE)
    points = [centre + random.gauss(0, WEIGHT_DEVIATION) for _ in range(WEIGHT_POINTS)]
    return np.interp(np.linspace(0, 1, FRAME // 2 + 1), np.linspace(0, 1, WEIGHT_POINTS), points)


def morphed(first: np.ndarray, second: np.ndarray, weights: np.ndarray) -> np.ndarray:
    """The first recording with its envelope moved by weights towards the second's; int16, both."""
    length = len(first)
    second = np.pad(second[:length], (0, max(0, length - len(second))))
    spectrum, other = frames(first / FULL_SCALE), frames(second / FULL_SCALE)
    change = weights * np.clip(envelope(other) - envelope(spectrum), -LARGEST_CHANGE, LARGEST_CHANGE)
    changed = joined(spectrum * np.exp(change), length)
    loudness = np.abs(first).max() / max(np.abs(changed).max(), FLOOR)
    return np.round(changed * loudness).astype(np.int16)


def window() -> np.ndarray:
    return np.sqrt(np.hanning(FRAME + 1)[:-1])


def frames(samples: np.ndarray) -> np.ndarray:
    """The spectra of overlapping frames; complex [frames, FRAME / 2 + 1]."""
    padded = np.pad(samples, (FRAME, FRAME + HOP))
    count = (len(padded) - FRAME) // HOP
    places = np.arange(FRAME)[None, :] + HOP * np.arange(count)[:, None]
    return np.fft.rfft(padded[places] * window())


def envelope(spectrum: np.ndarray) -> np.ndarray:
    """The natural logarithm of the amplitudes without the pitch."""
    cepstrum = np.fft.irfft(np.log(np.abs(spectrum) + FLOOR))
    cepstrum[:, ENVELOPE_COEFFICIENTS : FRAME - ENVELOPE_COEFFICIENTS + 1] = 0
    return np.fft.rfft(cepstrum).real


def joined(spectrum: np.ndarray, length: int) -> np.ndarray:
    """The samples of overlapping frames, the opposite of frames()."""
    pieces = np.fft.irfft(spectrum) * window()
    padded = np.zeros(HOP * len(pieces) + FRAME)
    for index, piece in enumerate(pieces):
        padded[HOP * index : HOP * index + FRAME] += piece
    return padded[FRAME : FRAME + length] / (FRAME / 2 / HOP)

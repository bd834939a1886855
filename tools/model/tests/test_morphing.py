# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
import unittest
from random import Random

import numpy as np

from smallmodel.voices.morphing import FRAME, envelope, frames, joined, morphed, random_weights

FREQUENCIES = FRAME // 2 + 1


def noise(low: float, high: float, length: int = 16_000) -> np.ndarray:
    """int16 noise between two frequencies, given as shares of the highest."""
    spectrum = np.fft.rfft(np.random.default_rng(7).normal(size=length))
    place = np.arange(len(spectrum)) / len(spectrum)
    samples = np.fft.irfft(np.where((place >= low) & (place < high), spectrum, spectrum * 0.01), length)
    return (samples / np.abs(samples).max() * 12_000).astype(np.int16)


def mean_envelope(samples: np.ndarray) -> np.ndarray:
    return envelope(frames(samples / 32768)).mean(axis=0)


class MorphingTest(unittest.TestCase):
    def test_frames_give_the_samples_back(self):
        for length in (1, FRAME, 5_000):
            samples = np.random.default_rng(1).normal(size=length)
            np.testing.assert_allclose(joined(frames(samples), length), samples, atol=1e-9)

    def test_a_speaker_who_is_not_moved_stays_as_he_is(self):
        samples = noise(0, 0.5)
        self.assertLessEqual(np.abs(morphed(samples, noise(0.5, 1), np.zeros(FREQUENCIES)) - samples).max(), 1)

    def test_the_envelope_moves_to_the_other_speakers(self):
        first, second = noise(0, 0.5), noise(0.4, 1)
        between = mean_envelope(morphed(first, second, np.ones(FREQUENCIES)))
        here, there = mean_envelope(first), mean_envelope(second)
        slope = [curve[180:240].mean() - curve[20:80].mean() for curve in (here, between, there)]
        self.assertLess(slope[0], slope[1])
        self.assertLess(abs(slope[2] - slope[1]), abs(slope[1] - slope[0]))

    def test_it_is_as_long_and_as_loud_as_the_first(self):
        first = noise(0, 0.5)
        for length in (15_000, 17_000):
            result = morphed(first, noise(0.4, 1, length), np.ones(FREQUENCIES))
            self.assertEqual(len(result), len(first))
            self.assertLessEqual(abs(int(np.abs(result).max()) - int(np.abs(first).max())), 2)

    def test_silence_stays_silent(self):
        silence = np.zeros(4_000, np.int16)
        self.assertEqual(np.abs(morphed(silence, noise(0, 1), random_weights(Random(1)))).max(), 0)


if __name__ == "__main__":
    unittest.main()

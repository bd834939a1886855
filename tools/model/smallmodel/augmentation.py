# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Random changes of the speaker, the room, the noise and the channel.

Samples are float32 at 16 kHz.  A change of the speaker's tract and of the channel is made on the
features, where it costs little; the rest is made on the samples.
"""

import numpy as np

from .geometry import GEOMETRY
from .spectrum import mel_filters

NYQUIST = GEOMETRY.sample_rate / 2
BINS = GEOMETRY.fft_length // 2 + 1
BIN_FREQUENCIES = np.linspace(0, NYQUIST, BINS)


def decibels(value: float) -> float:
    """A ratio of amplitudes."""
    return 10 ** (value / 20)


def faster(samples: np.ndarray, speed: float) -> np.ndarray:
    """Plays faster and higher by a factor."""
    places = np.arange(int(len(samples) / speed), dtype=np.float32) * np.float32(speed)
    return np.interp(places, np.arange(len(samples)), samples).astype(np.float32)


class Noises:
    """Thirty-second noises of several colours, and talk made of earlier speech."""

    SECONDS = 30
    SLOPES = (0.0, 0.3, 0.6, 1.0, 1.0, 1.5)  # power falls like frequency to minus this

    def __init__(self, random: np.random.Generator):
        self._random = random
        self._coloured = [self._make(slope) for slope in self.SLOPES for _ in range(2)]
        self._speech: list[np.ndarray] = []

    def take(self, length: int) -> np.ndarray:
        """A noise of deviation 1."""
        if len(self._speech) >= 8 and self._random.random() < 0.2:
            return self._talk(length)
        noise = self._coloured[self._random.integers(len(self._coloured))]
        start = self._random.integers(len(noise) - length)
        noise = noise[start : start + length]
        return noise * self._swell(length) if self._random.random() < 0.3 else noise

    def remember(self, samples: np.ndarray) -> None:
        """Keeps speech to be used as a background."""
        if len(samples) > 3 * GEOMETRY.sample_rate:
            self._speech = [*self._speech[-15:], samples]

    def _make(self, slope: float) -> np.ndarray:
        """Noise of a slope with a few random bumps."""
        count = self.SECONDS * GEOMETRY.sample_rate
        spectrum = np.fft.rfft(self._random.standard_normal(count))
        places = np.linspace(0, NYQUIST, len(spectrum))
        bumps = np.interp(places, np.linspace(0, NYQUIST, 12), self._random.normal(0, 5, 12))
        noise = np.fft.irfft(spectrum * (places + 30) ** (-slope) * decibels(bumps), count)
        return (noise / noise.std()).astype(np.float32)

    def _swell(self, length: int) -> np.ndarray:
        """Loudness that rises and falls a few times a second."""
        knots = self._random.uniform(0.2, 1.8, length // 4000 + 2)
        return np.interp(np.arange(length), np.arange(len(knots)) * 4000, knots).astype(np.float32)

    def _talk(self, length: int) -> np.ndarray:
        """One to four speakers at once."""
        mixed = np.zeros(length, np.float32)
        for _ in range(self._random.integers(1, 5)):
            speech = self._speech[self._random.integers(len(self._speech))]
            mixed += np.roll(np.resize(speech, length), self._random.integers(length))
        return mixed / (mixed.std() + 1e-6)


def in_room(samples: np.ndarray, random: np.random.Generator) -> np.ndarray:
    """With the echoes of a room: noise that dies away within 0.1 to 0.6 s."""
    decay = random.uniform(0.1, 0.6)
    length = int(decay * GEOMETRY.sample_rate * 0.8)
    times = np.arange(length) / GEOMETRY.sample_rate
    echoes = random.standard_normal(length) * np.exp(-6.9 * times / decay)
    echoes[: int(random.uniform(0.001, 0.01) * GEOMETRY.sample_rate)] = 0
    echoes *= random.uniform(0.2, 1.0) / np.sqrt((echoes**2).sum())
    echoes[0] = 1
    size = 1 << (len(samples) + length).bit_length()
    spectrum = np.fft.rfft(samples, size) * np.fft.rfft(echoes, size)
    return np.fft.irfft(spectrum, size)[: len(samples)].astype(np.float32)


def with_noise(samples: np.ndarray, noise: np.ndarray, speech_power: float, ratio: float) -> np.ndarray:
    """Adds a noise of deviation 1 so that speech is ratio dB above it."""
    return samples + noise * np.float32(np.sqrt(speech_power) / decibels(ratio))


PLAIN_FILTERS = mel_filters()
TRACT_KNOTS = (0, 700, 1500, 2600, 4000, 8000)  # Hz


def speaker_filters(random: np.random.Generator) -> np.ndarray:
    """Filters that make speech sound like another speaker's: the whole tract longer or shorter, and each formant's
    region a little more or less so.  The true ones in some cases."""
    if random.random() < 0.15:
        return PLAIN_FILTERS
    factors = random.uniform(0.83, 1.2) * (1 + random.uniform(-0.08, 0.08, len(TRACT_KNOTS)))
    return mel_filters(lambda edges: np.sort(edges * np.interp(edges, TRACT_KNOTS, factors)))


def channel(random: np.random.Generator) -> np.ndarray:
    """Factors of the power spectrum: an equaliser, and limits of the band; float32 [bins]."""
    gain = np.zeros(BINS)
    if random.random() < 0.6:
        gain += np.interp(BIN_FREQUENCIES, np.linspace(0, NYQUIST, 7), random.normal(0, 5, 7))
    if random.random() < 0.3:
        gain += random.uniform(-9, 6) * BIN_FREQUENCIES / NYQUIST
    if random.random() < 0.2:
        gain -= np.maximum(0, BIN_FREQUENCIES - random.uniform(3200, 7500)) / 1000 * random.uniform(20, 120)
    if random.random() < 0.2:
        lowest = random.uniform(80, 350)
        gain -= np.maximum(0, lowest - BIN_FREQUENCIES) / lowest * random.uniform(10, 40)
    return (10 ** (np.clip(gain, -80, 25) / 10)).astype(np.float32)


def cosine_basis(bands: int = GEOMETRY.mel_bands) -> np.ndarray:
    """Orthonormal cosines over the bands; [bands, bands], a row for each order."""
    orders, places = np.arange(bands)[:, None], np.arange(bands) + 0.5
    basis = np.cos(np.pi * orders * places / bands) * np.sqrt(2 / bands)
    basis[0] /= np.sqrt(2)
    return basis


COSINES = cosine_basis()

# How far and how strongly an order of the cosines changes others.
MIXED_ORDERS = 4
MIXING = 0.1

# Gains between neighbouring regions and moments differ by this much: natural logarithm of power, 2.5 dB.
UNEVENNESS = 0.6
UNEVEN_FRAMES = 12
UNEVEN_REGIONS = 7


def articulation(random: np.random.Generator) -> np.ndarray:
    """A matrix for log-mel rows that makes formants and loudness sharper or flatter and mixes neighbouring orders of
    the spectrum's shape, as two speakers' sounds differ; float32 [bands, bands]."""
    orders = np.arange(len(COSINES))
    change = np.diag(np.interp(orders, (0, 6, 14, 24, 40, 80), random.uniform(0.7, 1.35, 6)))
    distance = np.abs(orders[:, None] - orders)
    mixed = (distance > 0) & (distance <= MIXED_ORDERS) & np.outer(orders, orders).astype(bool)
    change += np.where(mixed, random.normal(0, MIXING, change.shape) / np.maximum(distance, 1), 0)
    return (COSINES.T @ change @ COSINES).astype(np.float32)


def unevenness(frames: int, random: np.random.Generator) -> np.ndarray:
    """Gains that drift over time and bands, as no two speakers stress their sounds alike; float32 [frames, bands]."""
    knots = random.normal(0, UNEVENNESS, (frames // UNEVEN_FRAMES + 2, UNEVEN_REGIONS))
    places = np.arange(frames) / UNEVEN_FRAMES
    before = places.astype(int)
    share = (places - before)[:, None]
    moving = knots[before] * (1 - share) + knots[before + 1] * share
    regions = np.linspace(0, UNEVEN_REGIONS - 1, GEOMETRY.mel_bands)
    weights = np.maximum(0, 1 - np.abs(regions - np.arange(UNEVEN_REGIONS)[:, None]))
    return (moving @ weights).astype(np.float32)


def masked(features: np.ndarray, random: np.random.Generator) -> np.ndarray:
    """Features [frames, bands] with a few bands and short stretches of time wiped out."""
    frames, bands = features.shape
    features = features.copy()
    for _ in range(random.integers(0, 3)):
        width = random.integers(1, 13)
        start = random.integers(0, bands - width)
        features[:, start : start + width] = 0
    for _ in range(random.integers(0, max(2, frames // 250))):
        width = random.integers(1, 13)
        start = random.integers(0, max(1, frames - width))
        features[start : start + width] = 0
    return features

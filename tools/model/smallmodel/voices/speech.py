# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""What a synthesiser gives."""

from dataclasses import dataclass

import numpy as np

SAMPLE_RATE = 16_000

# Start and end in seconds; None where the engine did not tell.
Span = tuple[float | None, float | None]


@dataclass
class Spoken:
    """Speech and the span of each of its tokens."""

    samples: np.ndarray  # int16 at SAMPLE_RATE
    spans: list[Span]

    @property
    def seconds(self) -> float:
        return len(self.samples) / SAMPLE_RATE


def resampled(samples: np.ndarray, rate: int) -> np.ndarray:
    """int16 samples at SAMPLE_RATE, through the spectrum of the whole recording."""
    if rate == SAMPLE_RATE:
        return samples
    block = rate // np.gcd(rate, SAMPLE_RATE)
    blocks = -(-len(samples) // block) + 2  # a short pause keeps the end from wrapping to the start
    padded = np.zeros(blocks * block, np.float32)
    padded[: len(samples)] = samples
    spectrum = np.fft.rfft(padded)
    length = blocks * block * SAMPLE_RATE // rate
    kept = np.zeros(length // 2 + 1, complex)
    count = min(len(kept), len(spectrum))
    kept[:count] = spectrum[:count]
    result = np.fft.irfft(kept, length) * (length / len(padded))
    wanted = len(samples) * SAMPLE_RATE // rate
    return np.clip(np.round(result[:wanted]), -32768, 32767).astype(np.int16)

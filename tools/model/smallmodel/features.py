# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Log-mel features of a window, as the mel stage computes them."""

import numpy as np

from .geometry import GEOMETRY
from .spectrum import DEVIATION_FLOOR, ENERGY_FLOOR, hann_window

WINDOW = hann_window()


def mel_frame_count(samples: int) -> int:
    """Valid mel frames of a window of so many samples."""
    return min(samples // GEOMETRY.hop_length + 1, GEOMETRY.mel_frames)


def encoder_frame_count(samples: int) -> int:
    """Valid encoder frames of a window of so many samples."""
    return min(max(-(-samples // GEOMETRY.samples_per_encoder_frame), 1), GEOMETRY.encoder_frames)


def power_spectrum(samples: np.ndarray) -> np.ndarray:
    """float32 samples of one window -> [valid mel frames, bins]; frame t is centred on sample t x hop."""
    frames = mel_frame_count(len(samples))
    margin = GEOMETRY.fft_length // 2
    padded = np.zeros(max(len(samples), frames * GEOMETRY.hop_length) + 2 * margin, np.float32)
    padded[margin : margin + len(samples)] = samples
    padded[margin + 1 :] -= GEOMETRY.pre_emphasis * padded[margin:-1]
    if len(samples) == GEOMETRY.window_samples:
        padded[margin + len(samples) :] = 0  # the tail of a full window cancels pre-emphasis
    seen = np.lib.stride_tricks.sliding_window_view(padded, GEOMETRY.fft_length)
    spectrum = np.fft.rfft(seen[:: GEOMETRY.hop_length][:frames] * WINDOW)
    return (spectrum.real**2 + spectrum.imag**2).astype(np.float32)


def log_mel(power: np.ndarray, filters: np.ndarray) -> np.ndarray:
    """[frames, bins] -> [frames, bands]."""
    return np.log(power @ filters.T + ENERGY_FLOOR)


def normalised(energy: np.ndarray) -> np.ndarray:
    """Each band with mean 0 and deviation 1 over the frames."""
    centred = energy - energy.mean(0)
    return centred / (np.sqrt((centred**2).mean(0)) + DEVIATION_FLOOR)

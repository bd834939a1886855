# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The constants of the log-mel front end, shared by training, export and the numpy reference."""

import numpy as np

from .geometry import GEOMETRY, Geometry

# Added to the energy of a mel band before the logarithm: above the rounding noise of 16-bit audio.
ENERGY_FLOOR = 1e-6

# Added to the standard deviation of a mel band, which is 0 for digital silence.
DEVIATION_FLOOR = 0.1


def hann_window(geometry: Geometry = GEOMETRY) -> np.ndarray:
    """Periodic Hann window centred in an analysis frame; float32 [fft_length]."""
    window = np.zeros(geometry.fft_length, np.float32)
    start = (geometry.fft_length - geometry.window_length) // 2
    window[start : start + geometry.window_length] = np.hanning(geometry.window_length + 1)[:-1]
    return window


def mel_filters(warp=None, geometry: Geometry = GEOMETRY) -> np.ndarray:
    """Triangular filters, evenly spaced in mel from 0 to half the sample rate, of equal area.

    warp, a function from frequencies to frequencies in Hz, moves the filters' edges; moving them up
    makes a voice's vocal tract seem longer.

    Returns float32 [mel_bands, fft_length / 2 + 1], to be applied to a power spectrum.
    """
    nyquist = geometry.sample_rate / 2
    highest = 2595 * np.log10(1 + nyquist / 700)
    mels = np.linspace(0, highest, geometry.mel_bands + 2)
    edges = 700 * (10 ** (mels / 2595) - 1)
    edges = warp(edges) if warp else edges
    frequencies = np.arange(geometry.fft_length // 2 + 1) * geometry.sample_rate / geometry.fft_length
    left, centre, right = (edges[i : i + geometry.mel_bands, None] for i in range(3))
    rising = (frequencies - left) / (centre - left)
    falling = (right - frequencies) / (right - centre)
    return (np.maximum(0, np.minimum(rising, falling)) * 200 / (right - left)).astype(np.float32)


def fourier_basis(geometry: Geometry = GEOMETRY) -> np.ndarray:
    """Pre-emphasis, window and Fourier transform of an analysis frame as one matrix.

    With y[i] = x[i] - p x[i - 1] the weight of sample i is w[i] e[i] - p w[i + 1] e[i + 1]. That is
    exact because the window is 0 at its first place, so no sample before the frame counts.
    Returns float64 [2 x (fft_length / 2 + 1), fft_length]: cosine rows, then sine rows.
    """
    length = geometry.fft_length
    bins = np.arange(length // 2 + 1)[:, None]
    angles = 2 * np.pi * bins * np.arange(length)[None] / length
    windowed = np.concatenate([np.cos(angles), np.sin(angles)]) * hann_window(geometry)
    following = np.concatenate([windowed[:, 1:], np.zeros((len(windowed), 1))], axis=1)
    return windowed - geometry.pre_emphasis * following

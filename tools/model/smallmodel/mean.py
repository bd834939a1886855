# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The mean of the weights of one training at several steps: often better than each of them.

    python3 -m smallmodel.mean WEIGHTS.npz WEIGHTS.npz ... MEAN.npz
"""

import argparse
from pathlib import Path

import numpy as np


def mean_weights(files: list[Path]) -> dict[str, np.ndarray]:
    loaded = [dict(np.load(file)) for file in files]
    return {name: np.mean([weights[name] for weights in loaded], axis=0, dtype=np.float64) for name in loaded[0]}


def main() -> None:
    parser = argparse.ArgumentParser(description="Takes the mean of weights.")
    parser.add_argument("weights", type=Path, nargs="+")
    parser.add_argument("mean", type=Path)
    arguments = parser.parse_args()
    np.savez(arguments.mean, **{name: array.astype(np.float32) for name, array in mean_weights(arguments.weights).items()})


if __name__ == "__main__":
    main()

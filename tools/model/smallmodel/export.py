# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Writes a model directory from trained weights.

    python3 -m smallmodel.export WEIGHTS.npz VOCABULARY.json DIRECTORY
"""

import argparse
import json
from pathlib import Path

import numpy as np

from .geometry import GEOMETRY, Geometry
from .stages import write_decoder, write_encoder, write_mel


# Taken from the score of a duration for each frame of it: a jump too long loses a word, one too short
# only costs a step.
CAUTION = 2.0


def encoder_parameters(weights: dict[str, np.ndarray], geometry: Geometry) -> dict[str, np.ndarray]:
    """The weights with the scale of attention folded into the queries."""
    folded = dict(weights)
    scale = (geometry.width // geometry.heads) ** -0.5
    for index in range(geometry.blocks):
        for kind in ("weight", "bias"):
            name = f"blocks.{index}.query_key_value.{kind}"
            folded[name] = weights[name].copy()
            folded[name][: geometry.width] *= scale
    return folded


def decoder_parameters(weights: dict[str, np.ndarray], geometry: Geometry) -> dict[str, np.ndarray]:
    """The weights with the recurrent layer as one matrix over [embedding, hidden state], and cautious durations."""
    combined = np.concatenate([weights["recurrent.input"], weights["recurrent.hidden"]], axis=1)
    scores = weights["joint_output.bias"].copy()
    scores[geometry.vocabulary + 1 :] -= CAUTION * np.array(geometry.durations, np.float32)
    return weights | {"recurrent.weight": combined, "joint_output.bias": scores}


def export(weights: dict[str, np.ndarray], pieces: list[str], directory: Path, geometry: Geometry = GEOMETRY) -> None:
    """Writes all files of a model directory; float weights are rounded to 16 bits here."""
    directory.mkdir(parents=True, exist_ok=True)
    weights = {name: value.astype(np.float32) for name, value in weights.items()}
    write_json(directory / "meta.json", geometry.metadata(), indent=2)
    write_json(directory / "vocab.json", pieces, indent=0)
    (directory / "embedding.f16").write_bytes(weights["embedding.weight"].astype("<f2").tobytes())
    write_mel(directory / "mel.mlmodelc", geometry)
    write_encoder(directory / "encoder.mlmodelc", encoder_parameters(weights, geometry), geometry)
    write_decoder(directory / "decoder.mlmodelc", decoder_parameters(weights, geometry), geometry)


def write_json(path: Path, content, indent: int) -> None:
    path.write_text(json.dumps(content, indent=indent, ensure_ascii=False) + "\n", encoding="utf-8")


def main() -> None:
    parser = argparse.ArgumentParser(description="Writes a model directory from trained weights.")
    parser.add_argument("weights", type=Path)
    parser.add_argument("vocabulary", type=Path)
    parser.add_argument("directory", type=Path)
    arguments = parser.parse_args()
    with np.load(arguments.weights) as archive:
        weights = dict(archive)
    export(weights, json.loads(arguments.vocabulary.read_text(encoding="utf-8")), arguments.directory)


if __name__ == "__main__":
    main()

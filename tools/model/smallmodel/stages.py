# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The three stages of the model as programs.

    mel      audio_rows [1, hop, 1, rows], mel_mask [1, 1, 1, T]       -> mel [1, bands, 1, T]
    encoder  mel, key_bias [1, E, 1, 1], pad_mask [1, 1, 1, E]         -> enc_proj [1, hidden, 1, E]
    decoder  embed, h_in, c_in [lanes, hidden, 1, 1], enc_step [lanes, hidden, 1, width]
                                           -> logits [lanes, tokens + 1 + durations, 1, width], h_out, c_out

T and E are the mel and encoder frames of a full window.  All tensors hold 16-bit floats.
"""

from pathlib import Path

import numpy as np

from .geometry import Geometry
from .layers import Layers
from .program import Program, Value, half
from .spectrum import DEVIATION_FLOOR, ENERGY_FLOOR, fourier_basis, mel_filters

# Scales the Fourier basis so that the energy floor is four of the smallest steps of a 16-bit float.
# The loudest possible signal, full scale and alternating, then gives a power of 37,000: below the largest.
BASIS_SCALE = (2.0**-22 / ENERGY_FLOOR) ** 0.5


def mel_parameters(geometry: Geometry) -> dict[str, np.ndarray]:
    """Constants of the mel stage: the Fourier basis over rows, and the filter bank."""
    basis = fourier_basis(geometry) * BASIS_SCALE
    covered = geometry.kernel_rows * geometry.hop_length
    basis = np.pad(basis, ((0, 0), (0, covered - geometry.fft_length)))
    rows = basis.reshape(len(basis), geometry.kernel_rows, geometry.hop_length)
    return {
        "fourier.weight": rows.transpose(0, 2, 1),
        "filters.weight": mel_filters(geometry=geometry),
    }


def write_mel(bundle: Path, geometry: Geometry) -> None:
    """Log-mel energies, normalised per band over the frames whose mask is 1; masked frames are 0."""
    program = Program("Log-mel features of one window.")
    layers = Layers(program, mel_parameters(geometry))
    rows = program.input("audio_rows", 1, geometry.hop_length, 1, geometry.rows)
    mask = program.input("mel_mask", 1, 1, 1, geometry.mel_frames)

    real, imaginary = layers.split(["real", "imaginary"], layers.convolution("fourier", rows))
    squares = [layers.unary("square", part.name + "_square", part) for part in (real, imaginary)]
    power = layers.add("power", *squares)
    energy = layers.logarithm("log_energy", layers.linear("filters", power), ENERGY_FLOOR * BASIS_SCALE**2)

    # Means over the whole window divided by the share of valid frames: no sum can leave the 16-bit range.
    share = layers.mean("valid_share", mask, axis=3)
    masked = layers.binary("mul", "masked_energy", energy, mask)
    average = layers.binary("real_div", "average", layers.mean("masked_average", masked, axis=3), share)
    difference = layers.binary("mul", "difference", layers.binary("sub", "centred", energy, average), mask)
    spread = layers.mean("masked_spread", layers.unary("square", "difference_square", difference), axis=3)
    deviation = layers.unary("sqrt", "deviation", layers.binary("real_div", "variance", spread, share))
    divisor = layers.binary("add", "divisor", deviation, half(DEVIATION_FLOOR))
    program.write(bundle, [layers.binary("real_div", "mel", difference, divisor)])


def write_encoder(bundle: Path, parameters: dict[str, np.ndarray], geometry: Geometry) -> None:
    """Three convolutions of stride 2, the blocks, and the projection to the joint network."""
    program = Program("Encoder projections of one window.")
    layers = Layers(program, parameters)
    mel = program.input("mel", 1, geometry.mel_bands, 1, geometry.mel_frames)
    key_bias = program.input("key_bias", 1, geometry.encoder_frames, 1, 1)
    pad_mask = program.input("pad_mask", 1, 1, 1, geometry.encoder_frames)

    x = mel
    for index in range(3):
        x = layers.convolution(f"front.{index}", x, stride=2, padding=geometry.front_kernel // 2)
        x = layers.relu(f"front.{index}_active", x)
    bias = layers.reshape("key_bias_row", key_bias, 1, 1, 1, geometry.encoder_frames)
    for index in range(geometry.blocks):
        x = _block(layers, f"blocks.{index}", x, bias, pad_mask, geometry)
    x = layers.linear("encoder_projection", layers.normalisation("final_norm", x), output="enc_proj")
    program.write(bundle, [x])


def _block(layers: Layers, name: str, x: Value, key_bias: Value, pad_mask: Value, geometry: Geometry) -> Value:
    """Self-attention, gated convolution and feed-forward, each added to its input."""
    x = layers.add(name + "_attended", x, _attention(layers, name, x, key_bias, geometry))
    x = layers.add(name + "_convolved", x, _gated_convolution(layers, name, x, pad_mask, geometry))
    inner = layers.linear(name + ".expand", layers.normalisation(name + ".feed_forward_norm", x))
    outer = layers.linear(name + ".contract", layers.relu(name + ".expand_active", inner))
    return layers.add(name + "_fed", x, outer)


def _attention(layers: Layers, name: str, x: Value, key_bias: Value, geometry: Geometry) -> Value:
    """Attention of every frame to every valid frame; the queries' scale is folded into their weights."""
    frames = geometry.encoder_frames
    combined = layers.linear(name + ".query_key_value", layers.normalisation(name + ".attention_norm", x))
    parts = layers.split([f"{name}_{part}".replace(".", "_") for part in ("query", "key", "value")], combined)
    heads = (1, geometry.heads, geometry.width // geometry.heads, frames)
    query, key, value = (layers.reshape(part.name + "_heads", part, *heads) for part in parts)
    scores = layers.product(name + "_scores", query, key, transpose_x=True, transpose_y=False)
    weights = layers.softmax(name + "_weights", layers.add(name + "_biased", scores, key_bias))
    mixed = layers.product(name + "_mixed", value, weights, transpose_x=False, transpose_y=True)
    joined = layers.reshape(name + "_joined", mixed, 1, geometry.width, 1, frames)
    return layers.linear(name + ".attention_output", joined)


def _gated_convolution(layers: Layers, name: str, x: Value, pad_mask: Value, geometry: Geometry) -> Value:
    """Half of the channels gates the other half; then a convolution of each channel along time."""
    combined = layers.linear(name + ".gate", layers.normalisation(name + ".convolution_norm", x))
    content, gate = layers.split([f"{name}_{part}".replace(".", "_") for part in ("content", "opening")], combined)
    gated = layers.binary("mul", name + "_gated", content, layers.unary("sigmoid", name + "_open", gate))
    masked = layers.binary("mul", name + "_masked", gated, pad_mask)
    x = layers.convolution(name + ".depthwise", masked, padding=geometry.kernel // 2, groups=geometry.width)
    return layers.linear(name + ".convolution_output", layers.relu(name + ".depthwise_active", x))


def write_decoder(bundle: Path, parameters: dict[str, np.ndarray], geometry: Geometry) -> None:
    """One step of the prediction network, and the joint network over a few encoder frames."""
    program = Program("One step of prediction and joint network for all lanes.")
    layers = Layers(program, parameters)
    state = (geometry.lanes, geometry.hidden, 1, 1)
    embed, h_in, c_in = (program.input(name, *state) for name in ("embed", "h_in", "c_in"))
    frames = program.input("enc_step", geometry.lanes, geometry.hidden, 1, geometry.decode_width)

    gates = layers.linear("recurrent", layers.concatenation("recurrent_in", embed, h_in))
    entry, keep, content, exit_ = layers.split(["entry", "keep", "content", "exit"], gates)
    entry, keep, exit_ = (layers.unary("sigmoid", gate.name + "_gate", gate) for gate in (entry, keep, exit_))
    added = layers.binary("mul", "added", entry, layers.unary("tanh", "content_value", content))
    c_out = layers.add("c_out", layers.binary("mul", "kept", keep, c_in), added)
    h_out = layers.binary("mul", "h_out", exit_, layers.unary("tanh", "cell_value", c_out))

    joint = layers.add("joint", frames, layers.linear("prediction_projection", h_out))
    logits = layers.linear("joint_output", layers.relu("joint_active", joint), output="logits")
    program.write(bundle, [logits, h_out, c_out])

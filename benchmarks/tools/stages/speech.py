# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The stages that are timed: two encoders and a decoder step."""

from dataclasses import dataclass

from .graph import Graph, Value

FRAMES = 188  # 15 s at 80 ms
MEL_FRAMES = 1500
MEL_BANDS = 128
KERNEL = 9
HIDDEN = 640
TOKENS = 8198


@dataclass(frozen=True)
class Encoder:
    """Sizes of an encoder."""

    layers: int
    width: int
    heads: int
    channels: int  # of the subsampling convolutions


LARGE = Encoder(layers=24, width=1024, heads=8, channels=256)
SMALL = Encoder(layers=12, width=256, heads=4, channels=256)


def encoder(name: str, sizes: Encoder) -> Graph:
    """Mel features to projections: 8-fold subsampling, then layers of attention, gated convolution, feed-forward."""
    g = Graph(name)
    mel = g.input("mel", 1, 1, MEL_FRAMES, MEL_BANDS)
    key_bias = g.input("key_bias", 1, 1, 1, FRAMES)
    x = g.unary("relu", g.convolution(mel, sizes.channels, 3, stride=2))
    for _ in range(2):
        x = g.convolution(x, sizes.channels, 3, stride=2, groups=sizes.channels)
        x = g.unary("relu", g.convolution(x, sizes.channels, 1))
    x = g.reshape(g.transpose(x, 0, 2, 1, 3), 1, FRAMES, sizes.channels * x.shape[3])
    x = g.linear(x, sizes.width)
    positions = g.weight(1, 2 * FRAMES - 1, sizes.width, scale=0.7)
    for _ in range(sizes.layers):
        x = _layer(g, x, positions, key_bias, sizes)
    g.output("projections", g.linear(x, HIDDEN))
    return g


def _layer(g: Graph, x: Value, positions: Value, key_bias: Value, sizes: Encoder) -> Value:
    x = g.binary("add", x, g.scaled(_feed_forward(g, x), 0.5))
    x = g.binary("add", x, _attention(g, x, positions, key_bias, sizes))
    x = g.binary("add", x, _gated_convolution(g, x))
    x = g.binary("add", x, g.scaled(_feed_forward(g, x), 0.5))
    return g.layer_norm(x)


def _feed_forward(g: Graph, x: Value) -> Value:
    inner = g.unary("silu", g.linear(g.layer_norm(x), 4 * x.shape[-1]))
    return g.linear(inner, x.shape[-1])


def _heads(g: Graph, x: Value, heads: int, bias: Value | None = None) -> Value:
    split = g.reshape(x, 1, x.shape[1], heads, x.shape[2] // heads)
    return g.transpose(split if bias is None else g.binary("add", split, bias), 0, 2, 1, 3)


def _attention(g: Graph, x: Value, positions: Value, key_bias: Value, sizes: Encoder) -> Value:
    """Attention with relative positions: the position scores are shifted row by row."""
    width = x.shape[2] // sizes.heads
    biases = [g.weight(1, 1, sizes.heads, width, scale=0.1) for _ in range(2)]
    y = g.layer_norm(x)
    query = g.linear(y, x.shape[2])
    key = _heads(g, g.linear(y, x.shape[2]), sizes.heads)
    value = _heads(g, g.linear(y, x.shape[2]), sizes.heads)
    position = _heads(g, g.linear(positions, x.shape[2]), sizes.heads)
    content_scores = g.product(_heads(g, query, sizes.heads, biases[0]), key, transpose_y=True)
    scores = g.product(_heads(g, query, sizes.heads, biases[1]), position, transpose_y=True)
    shifted = g.reshape(g.pad_left(scores), 1, sizes.heads, 2 * FRAMES, FRAMES)
    shifted = g.reshape(g.slice(shifted, 2, 1, 2 * FRAMES - 1), 1, sizes.heads, FRAMES, 2 * FRAMES - 1)
    scores = g.binary("add", content_scores, g.slice(shifted, 3, 0, FRAMES))
    scores = g.binary("add", g.scaled(scores, width**-0.5), key_bias)
    mixed = g.transpose(g.product(g.unary("softmax", scores), value), 0, 2, 1, 3)
    return g.linear(g.reshape(mixed, *x.shape), x.shape[2])


def _gated_convolution(g: Graph, x: Value) -> Value:
    content, gate = g.split(g.linear(g.layer_norm(x), 2 * x.shape[2]), 2)
    y = g.transpose(g.binary("mul", content, g.unary("sigmoid", gate)), 0, 2, 1)
    y = g.unary("silu", g.convolution(y, x.shape[2], KERNEL, groups=x.shape[2]))
    return g.linear(g.transpose(y, 0, 2, 1), x.shape[2])


def decoder_step(name: str, lanes: int, columns: int) -> Graph:
    """One step of a two-layer recurrent network, and a joint network over some encoder frames."""
    g = Graph(name)
    x = g.input("embed", lanes, HIDDEN)
    states = [[g.input(f"{kind}{layer}_in", lanes, HIDDEN) for kind in "hc"] for layer in range(2)]
    frames = g.input("enc_step", lanes, columns, HIDDEN)
    for layer, (h, c) in enumerate(states):
        gates = g.linear(g.concatenation(x, h), 4 * HIDDEN)
        entry, keep, leave, content = g.split(gates, 4)
        kept = g.binary("mul", g.unary("sigmoid", keep), c)
        added = g.binary("mul", g.unary("sigmoid", entry), g.unary("tanh", content))
        c = g.binary("add", kept, added)
        x = g.binary("mul", g.unary("sigmoid", leave), g.unary("tanh", c))
        g.output(f"h{layer}_out", x)
        g.output(f"c{layer}_out", c)
    prediction = g.reshape(g.linear(x, HIDDEN), lanes, 1, HIDDEN)
    g.output("logits", g.linear(g.unary("relu", g.binary("add", frames, prediction)), TOKENS))
    return g


STAGES = {
    "A": lambda: encoder("A", LARGE),
    "B": lambda: encoder("B", SMALL),
    "C-1-1": lambda: decoder_step("C-1-1", 1, 1),
    "C-8-4": lambda: decoder_step("C-8-4", 8, 4),
    "C-32-8": lambda: decoder_step("C-32-8", 32, 8),
}

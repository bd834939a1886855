# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""A stage as a list of operations, which writers turn into a compiled program or an ONNX graph."""

from dataclasses import dataclass, field

import numpy as np


@dataclass(frozen=True)
class Value:
    name: str
    shape: tuple[int, ...]


@dataclass
class Operation:
    kind: str
    inputs: list[Value]
    outputs: list[Value]
    attributes: dict = field(default_factory=dict)


class Graph:
    """One stage under construction.  Weights are random 16-bit values, made anew from their seed by each writer."""

    def __init__(self, name: str):
        self.name = name
        self.inputs: list[Value] = []
        self.outputs: list[Value] = []
        self.operations: list[Operation] = []
        self.weights: dict[str, tuple[Value, int, float]] = {}

    def input(self, name: str, *shape: int) -> Value:
        self.inputs.append(Value(name, shape))
        return self.inputs[-1]

    def weight(self, *shape: int, scale: float) -> Value:
        """Values of a normal distribution with the given deviation; 0 gives ones."""
        value = Value(f"w{len(self.weights)}", shape)
        self.weights[value.name] = (value, len(self.weights), scale)
        return value

    def values(self, name: str) -> np.ndarray:
        value, seed, scale = self.weights[name]
        if scale == 0:
            return np.ones(value.shape, np.float16)
        random = np.random.default_rng(seed)
        return (random.standard_normal(value.shape, np.float32) * np.float32(scale)).astype(np.float16)

    def linear(self, x: Value, outputs: int) -> Value:
        weight = self.weight(outputs, x.shape[-1], scale=x.shape[-1] ** -0.5)
        bias = self.weight(outputs, scale=0.1)
        return self._add("linear", (*x.shape[:-1], outputs), x, weight, bias)

    def convolution(self, x: Value, outputs: int, kernel: int, stride: int = 1, groups: int = 1) -> Value:
        """Over all spatial dimensions of x [1, channels, ..], padded by half of the kernel."""
        spatial = len(x.shape) - 2
        channels = x.shape[1] // groups
        weight = self.weight(outputs, channels, *[kernel] * spatial, scale=(channels * kernel**spatial) ** -0.5)
        bias = self.weight(outputs, scale=0.1)
        sizes = [(size + 2 * (kernel // 2) - kernel) // stride + 1 for size in x.shape[2:]]
        return self._add("convolution", (1, outputs, *sizes), x, weight, bias, kernel=kernel, stride=stride, groups=groups)

    def layer_norm(self, x: Value) -> Value:
        gamma, beta = self.weight(x.shape[-1], scale=0), self.weight(x.shape[-1], scale=0.1)
        return self._add("layer_norm", x.shape, x, gamma, beta)

    def product(self, x: Value, y: Value, transpose_y: bool = False) -> Value:
        columns = y.shape[-2 if transpose_y else -1]
        return self._add("product", (*x.shape[:-1], columns), x, y, transpose_y=transpose_y)

    def unary(self, kind: str, x: Value) -> Value:
        """relu, sigmoid, silu, tanh or softmax (over the last dimension)."""
        return self._add(kind, x.shape, x)

    def binary(self, kind: str, x: Value, y: Value) -> Value:
        """add or mul."""
        return self._add(kind, np.broadcast_shapes(x.shape, y.shape), x, y)

    def scaled(self, x: Value, factor: float) -> Value:
        return self._add("scale", x.shape, x, factor=float(np.float16(factor)))

    def reshape(self, x: Value, *shape: int) -> Value:
        return self._add("reshape", shape, x)

    def transpose(self, x: Value, *permutation: int) -> Value:
        return self._add("transpose", tuple(x.shape[i] for i in permutation), x, permutation=permutation)

    def split(self, x: Value, parts: int) -> list[Value]:
        """Equal parts along the last dimension."""
        outputs = [Value(f"v{len(self.operations)}_{i}", (*x.shape[:-1], x.shape[-1] // parts)) for i in range(parts)]
        self.operations.append(Operation("split", [x], outputs))
        return outputs

    def concatenation(self, x: Value, y: Value) -> Value:
        """Along the last dimension."""
        return self._add("concatenation", (*x.shape[:-1], x.shape[-1] + y.shape[-1]), x, y)

    def pad_left(self, x: Value) -> Value:
        """One zero before each row."""
        return self._add("pad_left", (*x.shape[:-1], x.shape[-1] + 1), x)

    def slice(self, x: Value, axis: int, first: int, count: int) -> Value:
        shape = list(x.shape)
        shape[axis] = count
        return self._add("slice", tuple(shape), x, axis=axis, first=first, count=count)

    def output(self, name: str, x: Value) -> None:
        """Gives the stage's output its name."""
        self.outputs.append(self._add("identity", x.shape, x, name=name))

    def _add(self, kind: str, size: tuple[int, ...], *inputs: Value, **attributes) -> Value:
        name = attributes.pop("name", f"v{len(self.operations)}")
        output = Value(name, tuple(int(n) for n in size))
        self.operations.append(Operation(kind, list(inputs), [output], attributes))
        return output

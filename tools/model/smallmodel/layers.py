# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Layers as program operations on tensors [batch, channels, 1, time]."""

import numpy as np

from .program import Program, Value, boolean, half, integer, integers, string

NORMALISATION_EPSILON = 1e-5


class Layers:
    """Adds layers to a program; parameters are float arrays by name."""

    def __init__(self, program: Program, parameters: dict[str, np.ndarray]):
        self._program = program
        self._parameters = parameters

    def unary(self, kind: str, name: str, x: Value, **arguments) -> Value:
        return self._add(kind, name, x.shape, x=x, **arguments)

    def binary(self, kind: str, name: str, x: Value, y: Value | str) -> Value:
        """x and y combined element by element; y may be a literal."""
        shape = np.broadcast_shapes(x.shape, y.shape if isinstance(y, Value) else ())
        return self._add(kind, name, shape, x=x, y=y)

    def relu(self, name: str, x: Value) -> Value:
        return self.unary("relu", name, x)

    def add(self, name: str, x: Value, y: Value) -> Value:
        return self.binary("add", name, x, y)

    def mean(self, name: str, x: Value, axis: int) -> Value:
        shape = tuple(1 if i == axis else size for i, size in enumerate(x.shape))
        return self._add("reduce_mean", name, shape, x=x, axes=integers((axis,)), keep_dims=boolean(True))

    def logarithm(self, name: str, x: Value, epsilon: float) -> Value:
        return self.unary("log", name, x, epsilon=half(epsilon))

    def reshape(self, name: str, x: Value, *shape: int) -> Value:
        return self._add("reshape", name, shape, x=x, shape=integers(shape))

    def split(self, names: list[str], x: Value) -> list[Value]:
        """x cut into equal parts along the channels."""
        shape = (x.shape[0], x.shape[1] // len(names), *x.shape[2:])
        parts = [Value(name, shape) for name in names]
        self._program.operation("split", parts, x=x, axis=integer(1), num_splits=integer(len(names)))
        return parts

    def concatenation(self, name: str, *values: Value) -> Value:
        """Values joined along the channels."""
        first = values[0].shape
        shape = (first[0], sum(value.shape[1] for value in values), *first[2:])
        return self._add("concat", name, shape, values=values, axis=integer(1), interleave=boolean(False))

    def product(self, name: str, x: Value, y: Value, transpose_x: bool, transpose_y: bool) -> Value:
        """Matrix product over the last two dimensions."""
        rows = x.shape[-1 if transpose_x else -2]
        columns = y.shape[-2 if transpose_y else -1]
        return self._add(
            "matmul",
            name,
            (*x.shape[:-2], rows, columns),
            x=x,
            y=y,
            transpose_x=boolean(transpose_x),
            transpose_y=boolean(transpose_y),
        )

    def softmax(self, name: str, x: Value) -> Value:
        return self.unary("softmax", name, x, axis=integer(-1))

    def normalisation(self, name: str, x: Value) -> Value:
        """Layer normalisation over the channels."""
        return self.unary(
            "layer_norm",
            name + "_out",
            x,
            axes=integers((1,)),
            gamma=self._weight(name + ".weight"),
            beta=self._weight(name + ".bias"),
            epsilon=half(NORMALISATION_EPSILON),
        )

    def linear(self, name: str, x: Value, output: str | None = None) -> Value:
        """A linear layer over the channels; its parameter is [outputs, inputs]."""
        return self.convolution(name, x, output=output)

    def convolution(
        self, name: str, x: Value, stride: int = 1, padding: int = 0, groups: int = 1, output: str | None = None
    ) -> Value:
        """Convolution along time; its parameter is [outputs, inputs / groups] or [.., .., kernel].

        The result is called output, or after the parameter.
        """
        kernel = self._parameters[name + ".weight"]
        kernel = kernel.reshape(*kernel.shape[:2], 1, -1)
        frames = (x.shape[3] + 2 * padding - kernel.shape[3]) // stride + 1
        arguments = {"x": x, "weight": self._program.weight(name + ".weight", kernel)}
        if name + ".bias" in self._parameters:
            arguments["bias"] = self._weight(name + ".bias")
        return self._add(
            "conv",
            output or name + "_out",
            (x.shape[0], kernel.shape[0], 1, frames),
            **arguments,
            dilations=integers((1, 1)),
            groups=integer(groups),
            pad=integers((0, 0, padding, padding)),
            pad_type=string("custom" if padding else "valid"),
            strides=integers((1, stride)),
        )

    def _weight(self, name: str) -> Value:
        return self._program.weight(name, self._parameters[name])

    def _add(self, kind: str, name: str, size: tuple[int, ...], /, **arguments) -> Value:
        output = Value(name.replace(".", "_"), tuple(size))
        self._program.operation(kind, [output], **arguments)
        return output

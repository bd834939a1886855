# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Writes a graph as ONNX, with the same weights in 32 bits."""

from pathlib import Path
from typing import BinaryIO

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

from .graph import Graph, Operation, Value

OPSET = 17
ALIGNMENT = 64
EPSILON = float.fromhex("0x1.5p-17")


class _Writer:
    def __init__(self, graph: Graph, data: BinaryIO):
        self._graph = graph
        self._data = data
        self._nodes: list[onnx.NodeProto] = []
        self._initializers: list[onnx.TensorProto] = []

    def model(self, data_name: str) -> onnx.ModelProto:
        # ONNX multiplies by [inputs, outputs], the graph's linear layers hold [outputs, inputs].
        turned = {o.inputs[1].name for o in self._graph.operations if o.kind == "linear"}
        for name in self._graph.weights:
            values = self._graph.values(name).astype(np.float32)
            self._external(name, np.ascontiguousarray(values.T) if name in turned else values, data_name)
        for operation in self._graph.operations:
            getattr(self, "_" + operation.kind, self._plain)(operation)
        inputs, outputs = ([_info(value) for value in values] for values in (self._graph.inputs, self._graph.outputs))
        body = helper.make_graph(self._nodes, self._graph.name, inputs, outputs, self._initializers)
        model = helper.make_model(body, opset_imports=[helper.make_opsetid("", OPSET)])
        model.ir_version = 8
        return model

    def _external(self, name: str, values: np.ndarray, data_name: str) -> None:
        self._data.write(bytes(-self._data.tell() % ALIGNMENT))
        tensor = TensorProto(name=name, data_type=TensorProto.FLOAT, dims=values.shape)
        tensor.data_location = TensorProto.EXTERNAL
        location = {"location": data_name, "offset": self._data.tell(), "length": values.nbytes}
        for key, value in location.items():
            tensor.external_data.add(key=key, value=str(value))
        self._data.write(values.tobytes())
        self._initializers.append(tensor)

    def _small(self, values: np.ndarray) -> str:
        name = f"constant{len(self._initializers)}"
        self._initializers.append(numpy_helper.from_array(values, name))
        return name

    def _integers(self, *values: int) -> str:
        return self._small(np.array(values, np.int64))

    def _node(self, kind: str, inputs: list[str], outputs: list[str], **attributes) -> None:
        self._nodes.append(helper.make_node(kind, inputs, outputs, **attributes))

    def _plain(self, o: Operation) -> None:
        kind = {"relu": "Relu", "sigmoid": "Sigmoid", "tanh": "Tanh", "add": "Add", "mul": "Mul", "identity": "Identity"}
        self._node(kind[o.kind], [value.name for value in o.inputs], [o.outputs[0].name])

    def _linear(self, o: Operation) -> None:
        x, weight, bias = (value.name for value in o.inputs)
        product = o.outputs[0].name + "_product"
        self._node("MatMul", [x, weight], [product])
        self._node("Add", [product, bias], [o.outputs[0].name])

    def _convolution(self, o: Operation) -> None:
        spatial = len(o.inputs[0].shape) - 2
        kernel, stride, groups = (o.attributes[key] for key in ("kernel", "stride", "groups"))
        self._node("Conv", [value.name for value in o.inputs], [o.outputs[0].name], group=groups,
                   strides=[stride] * spatial, pads=[kernel // 2] * 2 * spatial)

    def _layer_norm(self, o: Operation) -> None:
        inputs = [value.name for value in o.inputs]
        self._node("LayerNormalization", inputs, [o.outputs[0].name], axis=-1, epsilon=EPSILON)

    def _product(self, o: Operation) -> None:
        x, y = o.inputs
        name = y.name
        if o.attributes["transpose_y"]:
            name = o.outputs[0].name + "_turned"
            rank = len(y.shape)
            self._node("Transpose", [y.name], [name], perm=[*range(rank - 2), rank - 1, rank - 2])
        self._node("MatMul", [x.name, name], [o.outputs[0].name])

    def _silu(self, o: Operation) -> None:
        gate = o.outputs[0].name + "_gate"
        self._node("Sigmoid", [o.inputs[0].name], [gate])
        self._node("Mul", [o.inputs[0].name, gate], [o.outputs[0].name])

    def _softmax(self, o: Operation) -> None:
        self._node("Softmax", [o.inputs[0].name], [o.outputs[0].name], axis=-1)

    def _scale(self, o: Operation) -> None:
        factor = self._small(np.array(o.attributes["factor"], np.float32))
        self._node("Mul", [o.inputs[0].name, factor], [o.outputs[0].name])

    def _reshape(self, o: Operation) -> None:
        self._node("Reshape", [o.inputs[0].name, self._integers(*o.outputs[0].shape)], [o.outputs[0].name])

    def _transpose(self, o: Operation) -> None:
        self._node("Transpose", [o.inputs[0].name], [o.outputs[0].name], perm=o.attributes["permutation"])

    def _split(self, o: Operation) -> None:
        sizes = self._integers(*[value.shape[-1] for value in o.outputs])
        self._node("Split", [o.inputs[0].name, sizes], [value.name for value in o.outputs], axis=-1)

    def _concatenation(self, o: Operation) -> None:
        self._node("Concat", [value.name for value in o.inputs], [o.outputs[0].name], axis=-1)

    def _pad_left(self, o: Operation) -> None:
        rank = len(o.inputs[0].shape)
        pads = self._integers(*[0] * (rank - 1), 1, *[0] * rank)
        self._node("Pad", [o.inputs[0].name, pads], [o.outputs[0].name])

    def _slice(self, o: Operation) -> None:
        axis, first, count = (o.attributes[key] for key in ("axis", "first", "count"))
        bounds = [self._integers(first), self._integers(first + count), self._integers(axis)]
        self._node("Slice", [o.inputs[0].name, *bounds], [o.outputs[0].name])


def _info(value: Value) -> onnx.ValueInfoProto:
    return helper.make_tensor_value_info(value.name, TensorProto.FLOAT, value.shape)


def write(graph: Graph, path: Path) -> None:
    """Writes the graph, and its weights beside it."""
    data_path = path.with_suffix(".weights")
    with data_path.open("wb") as data:
        model = _Writer(graph, data).model(data_path.name)
    onnx.save(model, str(path))

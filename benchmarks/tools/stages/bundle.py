# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Writes a graph as a compiled stage with 16-bit weights."""

import json
import struct
from pathlib import Path
from typing import BinaryIO

from .graph import Graph, Operation, Value

ALIGNMENT = 64
SENTINEL = 0xDEADBEEF
FLOAT16 = 1
VERSION = 2
EPSILON = "fp16(0x1.5p-17)"


def write(graph: Graph, bundle: Path) -> None:
    """Writes the bundle directory."""
    (bundle / "weights").mkdir(parents=True, exist_ok=True)
    with (bundle / "weights" / "weight.bin").open("wb") as file:
        offsets = _write_weights(graph, file)
    lines = [_constant(value, offsets[value.name]) for value, _, _ in graph.weights.values()]
    lines += [_statement(operation) for operation in graph.operations]
    parameters = ", ".join(f"{_type(value)} {value.name}" for value in graph.inputs)
    body = "".join(f"            {line}\n" for line in lines)
    outputs = ", ".join(value.name for value in graph.outputs)
    text = f"program(1.3)\n{{\n    func main<ios17>({parameters}) {{\n{body}        }} -> ({outputs});\n}}\n"
    (bundle / "model.mil").write_text(text, encoding="utf-8")
    (bundle / "metadata.json").write_text(json.dumps([_metadata(graph)], indent=2), encoding="utf-8")


def _write_weights(graph: Graph, file: BinaryIO) -> dict[str, int]:
    """One record after the other; returns the offset of each."""
    file.write(struct.pack("<II", len(graph.weights), VERSION).ljust(ALIGNMENT, b"\0"))
    offsets = {}
    for name in graph.weights:
        data = graph.values(name).tobytes()
        offset = offsets[name] = file.tell()
        file.write(struct.pack("<IIQQ", SENTINEL, FLOAT16, len(data), offset + ALIGNMENT).ljust(ALIGNMENT, b"\0"))
        file.write(data)
        file.write(bytes(-len(data) % ALIGNMENT))
    return offsets


def _type(value: Value) -> str:
    return f"tensor<fp16, [{', '.join(map(str, value.shape))}]>"


def _integers(*values: int) -> str:
    return f"tensor<int32, [{len(values)}]>([{', '.join(map(str, values))}])"


def _half(value: float) -> str:
    return f"fp16({float(value).hex()})"


def _constant(value: Value, offset: int) -> str:
    path = 'string("@model_path/weights/weight.bin")'
    return f"{_type(value)} {value.name} = const()[val = {_type(value)}(BLOBFILE(path = {path}, offset = uint64({offset})))];"


def _statement(operation: Operation) -> str:
    kind, arguments = _KINDS[operation.kind](operation)
    outputs = ", ".join(f"{_type(value)} {value.name}" for value in operation.outputs)
    listed = ", ".join(f"{name} = {value}" for name, value in sorted(arguments.items()))
    return f"{outputs} = {kind}({listed});"


def _unary(kind: str, **more: str):
    return lambda o: (kind, {"x": o.inputs[0].name, **more})


def _binary(kind: str):
    return lambda o: (kind, {"x": o.inputs[0].name, "y": o.inputs[1].name})


def _linear(o: Operation):
    x, weight, bias = (value.name for value in o.inputs)
    return "linear", {"x": x, "weight": weight, "bias": bias}


def _convolution(o: Operation):
    x, weight, bias = o.inputs
    spatial = len(x.shape) - 2
    kernel, stride, groups = (o.attributes[key] for key in ("kernel", "stride", "groups"))
    return "conv", {
        "x": x.name,
        "weight": weight.name,
        "bias": bias.name,
        "strides": _integers(*[stride] * spatial),
        "dilations": _integers(*[1] * spatial),
        "groups": f"int32({groups})",
        "pad_type": 'string("custom")',
        "pad": _integers(*[kernel // 2] * 2 * spatial),
    }


def _layer_norm(o: Operation):
    x, gamma, beta = (value.name for value in o.inputs)
    return "layer_norm", {"x": x, "gamma": gamma, "beta": beta, "axes": _integers(-1), "epsilon": EPSILON}


def _product(o: Operation):
    transpose = f"bool({str(o.attributes['transpose_y']).lower()})"
    return "matmul", {"x": o.inputs[0].name, "y": o.inputs[1].name, "transpose_x": "bool(false)", "transpose_y": transpose}


def _slice(o: Operation):
    shape = o.inputs[0].shape
    axis, first, count = (o.attributes[key] for key in ("axis", "first", "count"))
    begin = [first if i == axis else 0 for i in range(len(shape))]
    end = [first + count if i == axis else size for i, size in enumerate(shape)]
    return "slice_by_index", {"x": o.inputs[0].name, "begin": _integers(*begin), "end": _integers(*end)}


def _split(o: Operation):
    return "split", {"x": o.inputs[0].name, "axis": "int32(-1)", "num_splits": f"int32({len(o.outputs)})"}


def _concatenation(o: Operation):
    values = f"({o.inputs[0].name}, {o.inputs[1].name})"
    return "concat", {"values": values, "axis": "int32(-1)", "interleave": "bool(false)"}


def _pad_left(o: Operation):
    pad = {"pad": _integers(1, 0), "mode": 'string("constant")', "constant_val": _half(0)}
    return "pad", {"x": o.inputs[0].name, **pad}


_KINDS = {
    "linear": _linear,
    "convolution": _convolution,
    "layer_norm": _layer_norm,
    "product": _product,
    "relu": _unary("relu"),
    "sigmoid": _unary("sigmoid"),
    "silu": _unary("silu"),
    "tanh": _unary("tanh"),
    "softmax": _unary("softmax", axis="int32(-1)"),
    "identity": _unary("identity"),
    "add": _binary("add"),
    "mul": _binary("mul"),
    "scale": lambda o: ("mul", {"x": o.inputs[0].name, "y": _half(o.attributes["factor"])}),
    "reshape": lambda o: ("reshape", {"x": o.inputs[0].name, "shape": _integers(*o.outputs[0].shape)}),
    "transpose": lambda o: ("transpose", {"x": o.inputs[0].name, "perm": _integers(*o.attributes["permutation"])}),
    "split": _split,
    "concatenation": _concatenation,
    "pad_left": _pad_left,
    "slice": _slice,
}


def _metadata(graph: Graph) -> dict:
    def feature(value: Value) -> dict:
        shape = json.dumps(list(value.shape))
        return {"name": value.name, "type": "MultiArray", "dataType": "Float16", "shape": shape,
                "hasShapeFlexibility": "0", "isOptional": "0"}

    return {
        "specificationVersion": 9,
        "modelType": {"name": "MLModelType_mlProgram"},
        "inputSchema": [feature(value) for value in graph.inputs],
        "outputSchema": [feature(value) for value in graph.outputs],
        "userDefinedMetadata": {},
    }

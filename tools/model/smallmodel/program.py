# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Writes a compiled model stage: program text, weight blob and feature description."""

import json
import struct
from dataclasses import dataclass
from pathlib import Path

import numpy as np

OPSET = "ios17"
SPECIFICATION_VERSION = 9

BLOB_ALIGNMENT = 64
BLOB_SENTINEL = 0xDEADBEEF
BLOB_FLOAT16 = 1
BLOB_VERSION = 2


@dataclass(frozen=True)
class Value:
    """A named 16-bit float tensor of the program."""

    name: str
    shape: tuple[int, ...]

    @property
    def type(self) -> str:
        return tensor_type("fp16", self.shape)


def tensor_type(scalar: str, shape: tuple[int, ...]) -> str:
    return f"tensor<{scalar}, [{', '.join(map(str, shape))}]>"


def string(text: str) -> str:
    return f'string("{text}")'


def boolean(value: bool) -> str:
    return f"bool({str(value).lower()})"


def integer(value: int) -> str:
    return f"int32({value})"


def integers(values: tuple[int, ...]) -> str:
    return f"{tensor_type('int32', (len(values),))}([{', '.join(map(str, values))}])"


def half(value: float) -> str:
    """A 16-bit float literal: hexadecimal digits of the value already rounded to 16 bits."""
    mantissa, exponent = float(np.float16(value)).hex().split("p")
    mantissa = mantissa.rstrip("0").rstrip(".") if "." in mantissa else mantissa
    return f"fp16({'0x0' if mantissa == '0x' else mantissa}p{exponent})"


class WeightBlob:
    """Collects the bytes of a weight file."""

    def __init__(self):
        self._records = bytearray()
        self._count = 0

    def add(self, array: np.ndarray) -> int:
        """Appends the array as 16-bit floats and returns the offset of its record in the file."""
        offset = BLOB_ALIGNMENT + len(self._records)
        data = np.ascontiguousarray(array, dtype="<f2").tobytes()
        header = struct.pack("<IIQQ", BLOB_SENTINEL, BLOB_FLOAT16, len(data), offset + BLOB_ALIGNMENT)
        self._records += header.ljust(BLOB_ALIGNMENT, b"\0") + data
        self._records += bytes(-len(self._records) % BLOB_ALIGNMENT)
        self._count += 1
        return offset

    def content(self) -> bytes:
        header = struct.pack("<II", self._count, BLOB_VERSION)
        return header.ljust(BLOB_ALIGNMENT, b"\0") + bytes(self._records)


class Program:
    """One stage under construction.  Operations are added in order; each gives its output."""

    def __init__(self, description: str):
        self._description = description
        self._inputs: list[Value] = []
        self._lines: list[str] = []
        self._histogram: dict[str, int] = {}
        self._blob = WeightBlob()

    def input(self, name: str, *shape: int) -> Value:
        value = Value(name, shape)
        self._inputs.append(value)
        return value

    def weight(self, name: str, array: np.ndarray) -> Value:
        """A constant kept in the weight file."""
        identifier = name.replace(".", "_")
        value = Value(identifier, array.shape)
        offset = self._blob.add(array)
        path = string("@model_path/weights/weight.bin")
        literal = f"{value.type}(BLOBFILE(path = {path}, offset = uint64({offset})))"
        self._lines.append(f"{value.type} {identifier} = const()[name = {string(name)}, val = {literal}];")
        return value

    def operation(self, kind: str, outputs: list[Value], **arguments) -> None:
        """Adds an operation; arguments are values, tuples of values, or literals as program text."""
        listed = ", ".join(f"{key} = {_argument(value)}" for key, value in sorted(arguments.items()))
        declared = ", ".join(f"{output.type} {output.name}" for output in outputs)
        self._lines.append(f"{declared} = {kind}({listed})[name = {string(outputs[0].name)}];")
        key = f"{OPSET.capitalize()}.{kind}"
        self._histogram[key] = self._histogram.get(key, 0) + 1

    def write(self, bundle: Path, outputs: list[Value]) -> None:
        """Writes the bundle directory."""
        (bundle / "weights").mkdir(parents=True, exist_ok=True)
        (bundle / "weights" / "weight.bin").write_bytes(self._blob.content())
        (bundle / "model.mil").write_text(self._text(outputs), encoding="utf-8")
        metadata = json.dumps([self._metadata(outputs)], indent=2, ensure_ascii=False)
        (bundle / "metadata.json").write_text(metadata + "\n", encoding="utf-8")

    def _text(self, outputs: list[Value]) -> str:
        parameters = ", ".join(f"{value.type} {value.name}" for value in self._inputs)
        body = "".join(f"            {line}\n" for line in self._lines)
        names = ", ".join(output.name for output in outputs)
        return (
            "program(1.3)\n"
            '[buildInfo = dict<string, string>({{"producer", "sorvane-small-model"}})]\n'
            f"{{\n    func main<{OPSET}>({parameters}) {{\n{body}        }} -> ({names});\n}}\n"
        )

    def _metadata(self, outputs: list[Value]) -> dict:
        return {
            "metadataOutputVersion": "3.0",
            "storagePrecision": "Float16",
            "computePrecision": "Mixed (Float16, Int32)",
            "specificationVersion": SPECIFICATION_VERSION,
            "modelType": {"name": "MLModelType_mlProgram"},
            "shortDescription": self._description,
            "author": "The Sorvane developers",
            "license": "Apache-2.0",
            "inputSchema": [_feature(value) for value in self._inputs],
            "outputSchema": [_feature(value) for value in outputs],
            "stateSchema": [],
            "mlProgramOperationTypeHistogram": self._histogram,
            "userDefinedMetadata": {},
            "generatedClassName": "stage",
            "method": "predict",
        }


def _argument(value) -> str:
    if isinstance(value, Value):
        return value.name
    if isinstance(value, tuple):
        return f"({', '.join(item.name for item in value)})"
    return value


def _feature(value: Value) -> dict:
    sizes = " \u00d7 ".join(map(str, value.shape))
    return {
        "name": value.name,
        "type": "MultiArray",
        "dataType": "Float16",
        "shape": json.dumps(list(value.shape)),
        "formattedType": f"MultiArray (Float16 {sizes})",
        "hasShapeFlexibility": "0",
        "isOptional": "0",
        "shortDescription": "",
    }

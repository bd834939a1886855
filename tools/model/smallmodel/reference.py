# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The whole model in plain numpy, from the files of a model directory.

    python3 -m smallmodel.reference DIRECTORY RECORDING.wav ...       prints what it hears
    python3 -m smallmodel.reference DIRECTORY RECORDING.wav --golden FOLDER   also writes stage values

It lays out windows, runs the stages and decodes as the application does, with 32-bit floats between
the operations.  It is written apart from the stages' program text, which it does not interpret: only
the weights are read through it.
"""

import argparse
import json
import re
import struct
import wave
from pathlib import Path

import numpy as np

from .geometry import GEOMETRY, Geometry
from .layers import NORMALISATION_EPSILON
from .spectrum import DEVIATION_FLOOR, ENERGY_FLOOR, hann_window, mel_filters

MASKED_KEY = -40_000.0
TOKENS_WITHOUT_ADVANCE = 10

WEIGHT = re.compile(
    r'^\s*tensor<fp16, \[(?P<shape>[\d, ]+)\]> \w+ = const\(\)\[name = string\("(?P<name>[^"]+)"\).*'
    r"offset = uint64\((?P<offset>\d+)\)",
    re.MULTILINE,
)


def read_weights(bundle: Path) -> dict[str, np.ndarray]:
    """The constants of a stage by name, as float32 arrays of the shapes in the program text."""
    blob = (bundle / "weights" / "weight.bin").read_bytes()
    weights = {}
    for match in WEIGHT.finditer((bundle / "model.mil").read_text(encoding="utf-8")):
        shape = [int(size) for size in match["shape"].split(",")]
        _, _, size, start = struct.unpack_from("<IIQQ", blob, int(match["offset"]))
        values = np.frombuffer(blob, "<f2", size // 2, start).astype(np.float32)
        weights[match["name"]] = values.reshape(shape)
    return weights


def sigmoid(x: np.ndarray) -> np.ndarray:
    return 1 / (1 + np.exp(-x))


def softmax(x: np.ndarray) -> np.ndarray:
    exponentials = np.exp(x - x.max(-1, keepdims=True))
    return exponentials / exponentials.sum(-1, keepdims=True)


class ReferenceModel:
    """A model directory, run window by window.  Samples are float32 at 16 kHz, in -1 .. 1."""

    def __init__(self, directory: Path, geometry: Geometry = GEOMETRY):
        self.geometry = geometry
        self.pieces = json.loads((directory / "vocab.json").read_text(encoding="utf-8"))
        table = np.fromfile(directory / "embedding.f16", "<f2").astype(np.float32)
        self.embedding = table.reshape(geometry.vocabulary + 1, geometry.hidden)
        self._encoder = read_weights(directory / "encoder.mlmodelc")
        self._decoder = read_weights(directory / "decoder.mlmodelc")
        self._filters = mel_filters(geometry=geometry)
        self._window = hann_window(geometry)

    def audio_rows(self, samples: np.ndarray) -> np.ndarray:
        """The padded window as [1, hop, 1, rows]."""
        geometry = self.geometry
        padded = np.zeros(geometry.padded_samples, np.float32)
        start, end = geometry.fft_length // 2, geometry.fft_length // 2 + len(samples)
        padded[start:end] = samples
        if len(samples) == geometry.window_samples:
            steps = np.arange(1, len(padded) - end + 1)
            padded[end:] = samples[-1] * np.float32(geometry.pre_emphasis) ** steps
        padded = padded[: geometry.rows * geometry.hop_length].astype(np.float16).astype(np.float32)
        return np.ascontiguousarray(padded.reshape(geometry.rows, geometry.hop_length).T)[None, :, None]

    def mel_mask(self, samples: np.ndarray) -> np.ndarray:
        """[1, 1, 1, mel frames], 1 for each valid frame."""
        frames = self.geometry.mel_frames
        valid = min(len(samples) // self.geometry.hop_length + 1, frames)
        return (np.arange(frames) < valid).astype(np.float32)[None, None, None]

    def valid_frames(self, samples: np.ndarray) -> int:
        """Encoder frames that hold some of the samples."""
        frames = -(-len(samples) // self.geometry.samples_per_encoder_frame)
        return min(max(frames, 1), self.geometry.encoder_frames)

    def key_bias(self, valid: int) -> np.ndarray:
        """[1, encoder frames, 1, 1], very negative beyond the valid frames."""
        masked = np.arange(self.geometry.encoder_frames) >= valid
        return np.where(masked, MASKED_KEY, 0).astype(np.float32)[None, :, None, None]

    def mel(self, rows: np.ndarray, mask: np.ndarray) -> np.ndarray:
        """[1, bands, 1, mel frames]."""
        geometry = self.geometry
        signal = rows[0, :, 0].T.reshape(-1)
        emphasised = signal.copy()
        emphasised[1:] -= geometry.pre_emphasis * signal[:-1]
        frames = np.lib.stride_tricks.sliding_window_view(emphasised, geometry.fft_length)
        frames = frames[:: geometry.hop_length][: geometry.mel_frames]
        power = np.abs(np.fft.rfft(frames * self._window)) ** 2
        energy = np.log(power @ self._filters.T + ENERGY_FLOOR)
        valid = mask[0, 0, 0][:, None]
        average = (energy * valid).sum(0) / valid.sum()
        difference = (energy - average) * valid
        deviation = np.sqrt((difference**2).sum(0) / valid.sum())
        return (difference / (deviation + DEVIATION_FLOOR)).T[None, :, None].astype(np.float32)

    def encode(self, mel: np.ndarray, key_bias: np.ndarray) -> np.ndarray:
        """Projections [1, hidden, 1, encoder frames]."""
        x = mel[0, :, 0]
        for index in range(3):
            x = np.maximum(0, self._front_convolution(x, f"front.{index}"))
        x = x.T
        for index in range(self.geometry.blocks):
            name = f"blocks.{index}."
            x = x + self._attention(self._normalise(x, name + "attention_norm"), name, key_bias[0, :, 0, 0])
            x = x + self._gated_convolution(self._normalise(x, name + "convolution_norm"), name)
            inner = self._linear(self._normalise(x, name + "feed_forward_norm"), name + "expand")
            x = x + self._linear(np.maximum(0, inner), name + "contract")
        return self._linear(self._normalise(x, "final_norm"), "encoder_projection").T[None, :, None]

    def decode_step(self, embed, h_in, c_in, enc_step):
        """(logits, h_out, c_out) for lanes [lanes, hidden, 1, 1] and frames [lanes, hidden, 1, width]."""
        weights = self._decoder
        entering = np.concatenate([embed, h_in], 1)[:, :, 0, 0]
        gates = entering @ weights["recurrent.weight"][:, :, 0, 0].T + weights["recurrent.bias"]
        entry, keep, content, leave = np.split(gates, 4, 1)
        cell = sigmoid(keep) * c_in[:, :, 0, 0] + sigmoid(entry) * np.tanh(content)
        hidden = sigmoid(leave) * np.tanh(cell)
        projected = hidden @ weights["prediction_projection.weight"][:, :, 0, 0].T
        projected = projected + weights["prediction_projection.bias"]
        joint = np.maximum(0, enc_step[:, :, 0] + projected[:, :, None])
        logits = np.einsum("oc,lct->lot", weights["joint_output.weight"][:, :, 0, 0], joint)
        logits += weights["joint_output.bias"][:, None]
        return logits[:, :, None], hidden[:, :, None, None], cell[:, :, None, None]

    def greedy(self, projections: np.ndarray, valid: int) -> list[tuple[int, int, int]]:
        """(token, frame, duration) of each emission, with the application's rules of advance."""
        geometry = self.geometry
        state = np.zeros((1, geometry.hidden, 1, 1), np.float32)
        hidden, cell, last = state, state, geometry.blank
        frame = waiting = 0
        emitted = []
        while frame < valid:
            embed = self.embedding[last][None, :, None, None]
            step = projections[..., frame : min(frame + geometry.decode_width, valid)]
            logits, next_hidden, next_cell = self.decode_step(embed, hidden, cell, step)
            column = 0
            while column < step.shape[3]:
                scores = logits[0, :, 0, column]
                token = int(scores[: geometry.blank + 1].argmax())
                duration = geometry.durations[int(scores[geometry.blank + 1 :].argmax())]
                if token == geometry.blank:
                    waiting = 0
                    column += max(duration, 1)
                    continue
                emitted.append((token, frame + column, duration))
                hidden, cell, last = next_hidden, next_cell, token
                waiting += 1
                if duration == 0 and waiting == TOKENS_WITHOUT_ADVANCE:
                    waiting, duration = 0, 1
                column += duration
                break
            frame += column
        return emitted

    def recognise(self, samples: np.ndarray) -> list[tuple[int, int, int]]:
        """Emissions of one window of at most 15 s."""
        valid = self.valid_frames(samples)
        mel = self.mel(self.audio_rows(samples), self.mel_mask(samples))
        return self.greedy(self.encode(mel, self.key_bias(valid)), valid)

    def text(self, emitted: list[tuple[int, int, int]]) -> str:
        return "".join(self.pieces[token] for token, _, _ in emitted).replace("\u2581", " ").strip()

    def golden(self, samples: np.ndarray) -> dict[str, np.ndarray]:
        """Values of every stage for one window; the decoder's lanes all take the window's first frames."""
        geometry = self.geometry
        rows, mask, valid = self.audio_rows(samples), self.mel_mask(samples), self.valid_frames(samples)
        mel = self.mel(rows, mask)
        projections = self.encode(mel, self.key_bias(valid))
        lanes = np.arange(geometry.lanes)
        embed = self.embedding[geometry.blank - lanes][:, :, None, None]
        state = np.zeros_like(embed)
        step = np.repeat(projections[..., : geometry.decode_width], geometry.lanes, 0)
        logits, hidden, cell = self.decode_step(embed, state, state, step)
        return {
            "audio_rows": rows,
            "mel_mask": mask,
            "mel": mel,
            "key_bias": self.key_bias(valid),
            "enc_proj": projections,
            "embed": embed,
            "h_in": state,
            "c_in": state,
            "enc_step": step,
            "logits": logits,
            "h_out": hidden,
            "c_out": cell,
            "emissions": np.array(self.greedy(projections, valid), np.int32).reshape(-1, 3),
        }

    def _linear(self, x: np.ndarray, name: str) -> np.ndarray:
        return x @ self._encoder[name + ".weight"][:, :, 0, 0].T + self._encoder[name + ".bias"]

    def _normalise(self, x: np.ndarray, name: str) -> np.ndarray:
        centred = x - x.mean(-1, keepdims=True)
        scaled = centred / np.sqrt((centred**2).mean(-1, keepdims=True) + NORMALISATION_EPSILON)
        return scaled * self._encoder[name + ".weight"] + self._encoder[name + ".bias"]

    def _front_convolution(self, x: np.ndarray, name: str) -> np.ndarray:
        """Stride 2 along time, zeros on both sides; x is [channels, frames]."""
        kernel = self._encoder[name + ".weight"][:, :, 0]
        taps = kernel.shape[2]
        padded = np.pad(x, ((0, 0), (taps // 2, taps // 2)))
        seen = np.lib.stride_tricks.sliding_window_view(padded, taps, axis=1)[:, ::2]
        return np.tensordot(kernel, seen, ([1, 2], [0, 2])) + self._encoder[name + ".bias"][:, None]

    def _attention(self, x: np.ndarray, name: str, key_bias: np.ndarray) -> np.ndarray:
        frames, width = x.shape
        combined = self._linear(x, name + "query_key_value")
        query, key, value = combined.reshape(frames, 3, self.geometry.heads, -1).transpose(1, 2, 0, 3)
        weights = softmax(query @ key.transpose(0, 2, 1) + key_bias)  # the scale is in the queries
        mixed = (weights @ value).transpose(1, 0, 2).reshape(frames, width)
        return self._linear(mixed, name + "attention_output")

    def _gated_convolution(self, x: np.ndarray, name: str) -> np.ndarray:
        content, gate = np.split(self._linear(x, name + "gate"), 2, 1)
        kernel = self._encoder[name + "depthwise.weight"][:, 0, 0]
        half = kernel.shape[1] // 2
        padded = np.pad(content * sigmoid(gate), ((half, half), (0, 0)))
        seen = np.lib.stride_tricks.sliding_window_view(padded, kernel.shape[1], axis=0)
        convolved = np.maximum(0, (seen * kernel).sum(2) + self._encoder[name + "depthwise.bias"])
        return self._linear(convolved, name + "convolution_output")


def read_wave(path: Path) -> np.ndarray:
    """Samples of a 16 kHz mono 16-bit WAV file."""
    with wave.open(str(path)) as recording:
        if (recording.getframerate(), recording.getnchannels(), recording.getsampwidth()) != (16_000, 1, 2):
            raise ValueError(f"{path} is not 16 kHz mono 16-bit")
        data = recording.readframes(recording.getnframes())
    return np.frombuffer(data, "<i2").astype(np.float32) / 32768


def main() -> None:
    parser = argparse.ArgumentParser(description="Runs a model directory in numpy.")
    parser.add_argument("directory", type=Path)
    parser.add_argument("recordings", type=Path, nargs="+", help="at most 15 s each")
    parser.add_argument("--golden", type=Path, help="folder for the values of every stage, one .npz a recording")
    arguments = parser.parse_args()
    model = ReferenceModel(arguments.directory)
    for path in arguments.recordings:
        samples = read_wave(path)[: model.geometry.window_samples]
        print(f"{path.name}: {model.text(model.recognise(samples))}")
        if arguments.golden:
            arguments.golden.mkdir(parents=True, exist_ok=True)
            np.savez(arguments.golden / f"{path.stem}.npz", **model.golden(samples))


if __name__ == "__main__":
    main()

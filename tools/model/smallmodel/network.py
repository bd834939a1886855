# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The network in torch: an encoder, a recurrent prediction network and a joint network."""

import numpy as np
import torch
import torch.nn.functional as functional
from torch import Tensor, nn

from .geometry import GEOMETRY, Geometry

MASKED_KEY = -40_000.0


class Block(nn.Module):
    """Self-attention, gated convolution and feed-forward, each added to its input; [batch, frames, width]."""

    def __init__(self, geometry: Geometry):
        super().__init__()
        width = geometry.width
        self._heads = geometry.heads
        self.attention_norm = nn.LayerNorm(width)
        self.query_key_value = nn.Linear(width, 3 * width)
        self.attention_output = nn.Linear(width, width)
        self.convolution_norm = nn.LayerNorm(width)
        self.gate = nn.Linear(width, 2 * width)
        self.depthwise = nn.Conv1d(width, width, geometry.kernel, padding=geometry.kernel // 2, groups=width)
        self.convolution_output = nn.Linear(width, width)
        self.feed_forward_norm = nn.LayerNorm(width)
        self.expand = nn.Linear(width, geometry.feed_forward)
        self.contract = nn.Linear(geometry.feed_forward, width)

    def forward(self, x: Tensor, key_bias: Tensor) -> Tensor:
        x = x + self._attention(self.attention_norm(x), key_bias)
        gated = functional.glu(self.gate(self.convolution_norm(x)), -1)
        convolved = self.depthwise(gated.transpose(1, 2)).relu().transpose(1, 2)
        x = x + self.convolution_output(convolved)
        return x + self.contract(self.expand(self.feed_forward_norm(x)).relu())

    def _attention(self, x: Tensor, key_bias: Tensor) -> Tensor:
        batch, frames, width = x.shape
        parts = self.query_key_value(x).view(batch, frames, 3, self._heads, width // self._heads)
        query, key, value = parts.permute(2, 0, 3, 1, 4)
        scores = torch.matmul(query * (width // self._heads) ** -0.5, key.transpose(-1, -2)) + key_bias
        mixed = torch.matmul(scores.softmax(-1).to(value.dtype), value)
        return self.attention_output(mixed.transpose(1, 2).reshape(batch, frames, width))


class Network(nn.Module):
    """All trained parts.  frame_tokens is a head on the encoder alone that only helps training."""

    def __init__(self, geometry: Geometry = GEOMETRY):
        super().__init__()
        self.geometry = geometry
        width, hidden, kernel = geometry.width, geometry.hidden, geometry.front_kernel
        channels = [geometry.mel_bands, width, width]
        self.front = nn.ModuleList(nn.Conv1d(count, width, kernel, 2, kernel // 2) for count in channels)
        self.blocks = nn.ModuleList(Block(geometry) for _ in range(geometry.blocks))
        self.final_norm = nn.LayerNorm(width)
        self.encoder_projection = nn.Linear(width, hidden)
        self.frame_tokens = nn.Linear(width, geometry.vocabulary + 1)
        self.embedding = nn.Embedding(geometry.vocabulary + 1, hidden)
        self.recurrent = nn.LSTM(hidden, hidden, batch_first=True)
        self.prediction_projection = nn.Linear(hidden, hidden)
        self.joint_output = nn.Linear(hidden, geometry.joint_outputs)

    def encode(self, mel: Tensor, valid: Tensor) -> Tensor:
        """mel [batch, bands, frames], 0 beyond the valid frames; valid [batch] encoder frames.

        Returns [batch, encoder frames, width].
        """
        x = mel
        for convolution in self.front:
            x = convolution(x).relu()
        x = x.transpose(1, 2).float().contiguous()
        masked = torch.arange(x.shape[1]) >= valid[:, None]
        key_bias = torch.zeros(masked.shape).masked_fill_(masked, MASKED_KEY)[:, None, None]
        for block in self.blocks:
            x = block(x, key_bias)
        return self.final_norm(x)

    def predict(self, tokens: Tensor) -> Tensor:
        """tokens [batch, count] -> [batch, count + 1, hidden], what is known before each token and after the last."""
        start = torch.full((len(tokens), 1), self.geometry.blank, dtype=torch.long)
        states, _ = self.recurrent(self.embedding(torch.cat([start, tokens], 1)))
        return self.prediction_projection(states)

    def weights(self) -> dict[str, np.ndarray]:
        """Everything that an export needs, with the recurrent layer's biases summed."""
        return exported(self.state_dict())

    def load_weights(self, weights: dict[str, np.ndarray]) -> None:
        """The inverse of weights()."""
        state = {name: torch.from_numpy(np.array(value, np.float32)) for name, value in weights.items()}
        state["recurrent.weight_ih_l0"] = state.pop("recurrent.input")
        state["recurrent.weight_hh_l0"] = state.pop("recurrent.hidden")
        state["recurrent.bias_ih_l0"] = state.pop("recurrent.bias")
        state["recurrent.bias_hh_l0"] = torch.zeros_like(state["recurrent.bias_ih_l0"])
        self.load_state_dict(state)


def exported(state: dict[str, Tensor]) -> dict[str, np.ndarray]:
    """A state of the network as arrays by the names that export and reference use."""
    weights = {name: value.numpy() for name, value in state.items()}
    weights["recurrent.input"] = weights.pop("recurrent.weight_ih_l0")
    weights["recurrent.hidden"] = weights.pop("recurrent.weight_hh_l0")
    weights["recurrent.bias"] = weights.pop("recurrent.bias_ih_l0") + weights.pop("recurrent.bias_hh_l0")
    return weights

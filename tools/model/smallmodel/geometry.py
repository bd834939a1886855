# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""The numbers that the network, the features and the exported stages share."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Geometry:
    """Sizes of the model.  Lengths are in samples, mel frames (10 ms) or encoder frames (80 ms)."""

    sample_rate: int = 16_000
    hop_length: int = 160
    fft_length: int = 512
    window_length: int = 400  # Hann window, centred in fft_length
    pre_emphasis: float = 0.97
    mel_bands: int = 80
    window_samples: int = 240_000  # 15 s

    width: int = 192
    heads: int = 4
    blocks: int = 6
    feed_forward: int = 768
    kernel: int = 9  # frames seen by the gated convolution
    front_kernel: int = 5  # frames seen by each of the three front convolutions

    hidden: int = 192  # token embedding, recurrent layer and joint network
    vocabulary: int = 512
    durations: tuple[int, ...] = (0, 1, 2, 3, 4)

    lanes: int = 8
    decode_width: int = 4

    @property
    def blank(self) -> int:
        """Index of the blank token; its embedding also starts a window."""
        return self.vocabulary

    @property
    def subsampling(self) -> int:
        """Mel frames in an encoder frame: three convolutions of stride 2."""
        return 8

    @property
    def samples_per_encoder_frame(self) -> int:
        return self.hop_length * self.subsampling

    @property
    def frame_seconds(self) -> float:
        """Length of an encoder frame."""
        return self.samples_per_encoder_frame / self.sample_rate

    @property
    def mel_frames(self) -> int:
        """Mel frames of a full window."""
        return self.window_samples // self.hop_length

    @property
    def encoder_frames(self) -> int:
        """Encoder frames of a full window."""
        return -(-self.mel_frames // self.subsampling)

    @property
    def kernel_rows(self) -> int:
        """Rows of hop_length samples that cover one analysis frame."""
        return -(-self.fft_length // self.hop_length)

    @property
    def rows(self) -> int:
        """Rows of a padded window."""
        return self.mel_frames + self.kernel_rows - 1

    @property
    def padded_samples(self) -> int:
        """A window with half an analysis frame on either side."""
        return self.window_samples + self.fft_length

    @property
    def joint_outputs(self) -> int:
        """Token scores, the blank's included, then duration scores."""
        return self.vocabulary + 1 + len(self.durations)

    def metadata(self) -> dict:
        """The content of "meta.json"."""
        return {
            "sample_rate": self.sample_rate,
            "hop_length": self.hop_length,
            "n_samples": self.window_samples,
            "n_rows": self.rows,
            "n_mels": self.mel_bands,
            "n_fft": self.fft_length,
            # The tail that continues a full window decays like this, so that pre-emphasis makes it
            # exactly zero: the end of a full window looks like the end of the signal in training.
            "preemph": self.pre_emphasis,
            "n_padded_samples": self.padded_samples,
            "valid_frames": self.mel_frames,
            "enc_frames": self.encoder_frames,
            "joint_hidden": self.hidden,
            "pred_hidden": self.hidden,
            "pred_layers": 1,
            "vocab_size": self.vocabulary,
            "blank_idx": self.blank,
            "durations": list(self.durations),
            "decode_width": self.decode_width,
        }


GEOMETRY = Geometry()

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Features, targets, network, and the way from a network to a model directory."""

import json
import struct
import tempfile
import unittest
from pathlib import Path

import numpy as np
import torch

from smallmodel.augmentation import UNEVENNESS, articulation, unevenness
from smallmodel.examples import Example, due_frames, targets
from smallmodel.export import export
from smallmodel.features import log_mel, normalised, power_spectrum
from smallmodel.geometry import GEOMETRY
from smallmodel.network import Network
from smallmodel.program import half
from smallmodel.reference import ReferenceModel
from smallmodel.spectrum import fourier_basis, mel_filters


class FeatureTest(unittest.TestCase):
    def test_the_basis_is_pre_emphasis_window_and_transform(self):
        samples = np.random.default_rng(1).standard_normal(4000).astype(np.float32)
        frame = samples[1440 - 256 : 1440 + 256]  # frame 9 is centred on sample 1440
        bins = GEOMETRY.fft_length // 2 + 1
        parts = fourier_basis() @ frame
        power = parts[:bins] ** 2 + parts[bins:] ** 2
        np.testing.assert_allclose(power, power_spectrum(samples)[9], rtol=1e-3, atol=1e-3)

    def test_half_literals(self):
        self.assertEqual(half(0.5), "fp16(0x1p-1)")
        self.assertEqual(half(-1.5), "fp16(-0x1.8p+0)")


class AugmentationTest(unittest.TestCase):
    def test_articulation_keeps_a_flat_spectrum_flat(self):
        changed = np.full((1, GEOMETRY.mel_bands), 2.0) @ articulation(np.random.default_rng(1))
        self.assertLess(np.ptp(changed), 1e-3)
        self.assertTrue(1.3 < changed.mean() < 2.8)

    def test_gains_drift_without_steps(self):
        gains = unevenness(400, np.random.default_rng(1))
        self.assertEqual(gains.shape, (400, GEOMETRY.mel_bands))
        self.assertLess(np.abs(np.diff(gains, axis=0)).max(), UNEVENNESS)
        self.assertGreater(gains.std(), UNEVENNESS / 4)


class TargetTest(unittest.TestCase):
    def test_blanks_stop_one_frame_short(self):
        example = Example(np.zeros((80, 80), np.float16), [7, 8], [3, 3], 10)
        places = targets(example, np.random.default_rng(1))
        blank = GEOMETRY.blank
        self.assertIn((0, 0, blank, 2), places)
        self.assertIn((2, 0, blank, 1), places)
        self.assertIn((3, 0, 7, 0), places)
        self.assertIn((3, 1, 8, 4), places)
        self.assertIn((9, 2, blank, 1), places)

    def test_a_cut_word_is_not_asked_for(self):
        tokens, frames = due_frames([(5, 0.1, 0.4), (6, 0.5, 1.2)], 1.0, 13)
        self.assertEqual((tokens, frames), ([5], [1]))


class ExportTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        torch.manual_seed(1)
        cls.network = Network().eval()
        cls.folder = tempfile.TemporaryDirectory()
        cls.directory = Path(cls.folder.name)
        export(cls.network.weights(), [str(index) for index in range(GEOMETRY.vocabulary)], cls.directory)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_the_reference_agrees_with_the_network(self):
        samples = np.random.default_rng(1).standard_normal(40_000).astype(np.float32) * 0.1
        model = ReferenceModel(self.directory)
        mel = model.mel(model.audio_rows(samples), model.mel_mask(samples))
        features = normalised(log_mel(power_spectrum(samples), mel_filters()))
        np.testing.assert_allclose(mel[0, :, 0, : len(features)].T, features, atol=0.02)
        valid = model.valid_frames(samples)
        with torch.no_grad():
            encoded = self.network.encode(torch.from_numpy(mel[:, :, 0]), torch.tensor([valid]))
            expected = self.network.encoder_projection(encoded)[0, :valid].numpy()
        np.testing.assert_allclose(model.encode(mel, model.key_bias(valid))[0, :, 0, :valid].T, expected, atol=0.02)

    def test_the_embedding_has_a_row_for_the_blank(self):
        size = (self.directory / "embedding.f16").stat().st_size
        self.assertEqual(size, (GEOMETRY.vocabulary + 1) * GEOMETRY.hidden * 2)

    def test_the_weight_file_has_its_header_and_first_record(self):
        data = (self.directory / "decoder.mlmodelc" / "weights" / "weight.bin").read_bytes()
        count, version = struct.unpack_from("<II", data)
        sentinel, kind, size, offset = struct.unpack_from("<IIQQ", data, 64)
        self.assertEqual((count, version, sentinel, kind, offset), (6, 2, 0xDEADBEEF, 1, 128))
        self.assertEqual(size, 4 * GEOMETRY.hidden * 2 * GEOMETRY.hidden * 2)

    def test_the_description_tells_the_shapes(self):
        description = json.loads((self.directory / "mel.mlmodelc" / "metadata.json").read_text(encoding="utf-8"))[0]
        shapes = {feature["name"]: feature["shape"] for feature in description["inputSchema"]}
        self.assertEqual(shapes, {"audio_rows": "[1, 160, 1, 1503]", "mel_mask": "[1, 1, 1, 1500]"})


if __name__ == "__main__":
    unittest.main()

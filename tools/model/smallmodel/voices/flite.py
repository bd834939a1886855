# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""flite through its C libraries: one diphone voice in two rates and three statistical voices."""

import ctypes
from ctypes import POINTER, c_char_p, c_float, c_int, c_short, c_void_p
from random import Random

import numpy as np

from .speech import Span, Spoken, resampled

DIPHONE_VOICES = ("kal16", "kal16", "kal16", "kal")
STATISTICAL_VOICES = ("awb", "rms", "slt")

FIRST_SEGMENT = b"R:SylStructure.daughter1.daughter1.R:Segment.p.end"
LAST_SEGMENT = b"R:SylStructure.daughtern.daughtern.R:Segment.end"


class Wave(ctypes.Structure):
    _fields_ = [
        ("type", c_char_p),
        ("sample_rate", c_int),
        ("sample_count", c_int),
        ("channel_count", c_int),
        ("samples", POINTER(c_short)),
    ]


class Voice(ctypes.Structure):
    """The fields that come first in the library's structure."""

    _fields_ = [("name", c_char_p), ("features", c_void_p)]


def load_library() -> ctypes.CDLL:
    for dependency in ("libflite.so.1", "libflite_usenglish.so.1", "libflite_cmulex.so.1"):
        library = ctypes.CDLL(dependency, mode=ctypes.RTLD_GLOBAL)
    library = ctypes.CDLL("libflite.so.1")
    pointers = ("flite_synth_text", "utt_relation", "relation_head", "item_next", "item_daughter", "item_as")
    for name in pointers:
        getattr(library, name).restype = c_void_p
    library.flite_synth_text.argtypes = [c_char_p, c_void_p]
    library.utt_relation.argtypes = [c_void_p, c_char_p]
    library.item_as.argtypes = [c_void_p, c_char_p]
    for name in ("relation_head", "item_next", "item_daughter", "utt_wave", "delete_utterance"):
        getattr(library, name).argtypes = [c_void_p]
    library.utt_wave.restype = POINTER(Wave)
    library.ffeature_float.argtypes = [c_void_p, c_char_p]
    library.ffeature_float.restype = c_float
    library.feat_set_float.argtypes = [c_void_p, c_char_p, c_float]
    library.flite_init()
    return library


class Flite:
    """Speaks with one of the given voices at a time."""

    def __init__(self, random: Random, voices: tuple[str, ...]):
        self._random = random
        self._choices = voices
        self._library = load_library()
        self._voices = {name: self._register(name) for name in set(voices)}

    def next_speaker(self) -> str:
        """Picks voice, pace and, for the diphone voice, the mean pitch."""
        self.speaker = self._random.choice(self._choices)
        self._voice = self._voices[self.speaker]
        self._set(b"duration_stretch", self._random.uniform(0.8, 1.4))
        if self.speaker in DIPHONE_VOICES:
            self._set(b"int_f0_target_mean", self._random.uniform(70, 200))
            self._set(b"int_f0_target_stddev", self._random.uniform(5, 30))
        return self.speaker

    def speak(self, tokens: list[str]) -> Spoken | None:
        utterance = self._library.flite_synth_text(" ".join(tokens).encode(), self._voice)
        spans = [self._span(token) for token in self._items(utterance, b"Token")]
        wave = self._library.utt_wave(utterance).contents
        samples = np.ctypeslib.as_array(wave.samples, (wave.sample_count * wave.channel_count,)).copy()
        rate = wave.sample_rate
        self._library.delete_utterance(utterance)
        return Spoken(resampled(samples, rate), spans) if len(spans) == len(tokens) else None

    def _register(self, name: str):
        library = ctypes.CDLL(f"libflite_cmu_us_{name}.so.1")
        register = getattr(library, f"register_cmu_us_{name}")
        register.restype = POINTER(Voice)
        register.argtypes = [c_char_p]
        return register(None)

    def _set(self, name: bytes, value: float) -> None:
        self._library.feat_set_float(self._voice.contents.features, name, value)

    def _items(self, utterance, relation: bytes):
        item = self._library.relation_head(self._library.utt_relation(utterance, relation))
        while item:
            yield item
            item = self._library.item_next(item)

    def _span(self, token) -> Span:
        """From the first sound of the token's first word to the last of its last."""
        start = end = None
        daughter = self._library.item_daughter(token)
        while daughter:
            word = self._library.item_as(daughter, b"Word")
            syllables = self._library.item_as(word, b"SylStructure") if word else None
            if syllables and self._library.item_daughter(syllables):
                first = self._library.ffeature_float(word, FIRST_SEGMENT)
                start = first if start is None else start
                end = self._library.ffeature_float(word, LAST_SEGMENT)
            daughter = self._library.item_next(daughter)
        return start, end

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Makes the sample recordings from their texts.

    python3 -m smallmodel.recordings SAMPLES WORK

For each recording of RECORDINGS the text SAMPLES/NAME.txt is spoken, disturbed where the table says so,
and written through ffmpeg; SAMPLES/README.md gets the table.  WORK keeps the engines' data.
"""

import argparse
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path
from random import Random
from typing import Callable

import numpy as np

from .augmentation import Noises, with_noise
from .speak import spoken_tokens
from .voices import SAMPLE_RATE, Espeak, Festival, Flite
from .voices.festival import DIPHONE_VOICE, HELD_OUT_VOICE

SEED = 20
PEAK = 0.5
EDGE_SECONDS = 0.4
SENTENCE_GAP_SECONDS = 0.5

SEEN, UNSEEN_VARIANT, UNSEEN_SPEAKER = "seen", "unseen variant", "unseen speaker"

INTRODUCTION = """# Sample recordings

Recordings to try Sorvane with, and for `tools/word-error-rate`. All are synthetic speech. Each has its
text beside it, with numbers written as words; none of the sentences was trained on. "Seen" voices were
heard in training, an unseen variant is another variant of a trained engine, an unseen speaker was never heard.

| recording | group | voice | container | rate | length |
|---|---|---|---|---|---|
"""

# Arguments of ffmpeg.
CD_STEREO = ("-ar", "44100", "-ac", "2")
CD_AAC = ("-ar", "44100", "-b:a", "64k")
BROADCAST_AAC = ("-ar", "32000", "-b:a", "48k")
LOW_OPUS = ("-b:a", "32k")


@dataclass
class Recording:
    """One row of the table.  voice is spoken by an engine; arguments go to ffmpeg."""

    file: str
    group: str
    engine: str
    voice: str
    container: str
    rate: str
    arguments: tuple[str, ...] = ()
    noise: float | None = None  # dB below the speech
    silence: float = SENTENCE_GAP_SECONDS  # seconds after the first sentence
    pace: int = 160  # words a minute


RECORDINGS = (
    Recording("shopping-list.wav", SEEN, "espeak", "en-us+f3", "WAV, 16 bit", "16 kHz"),
    Recording("todo-list.wav", SEEN, "espeak", "en-us+f3", "WAV, 16 bit", "16 kHz"),
    Recording("meeting-note.wav", SEEN, "flite", "rms", "WAV, 16 bit, stereo", "44.1 kHz", CD_STEREO),
    Recording("code-request.flac", SEEN, "espeak", "en-gb-x-rp+max", "FLAC", "16 kHz"),
    Recording("weekend-message.mp3", SEEN, "flite", "slt", "MP3", "22.05 kHz", ("-ar", "22050", "-b:a", "64k")),
    Recording("project-mail.m4a", SEEN, "espeak", "en-us+iven2", "M4A, AAC", "44.1 kHz", CD_AAC),
    Recording("travel-plan.opus", SEEN, "festival", DIPHONE_VOICE, "Ogg, Opus", "48 kHz", LOW_OPUS),
    Recording("telephone-note.wav", SEEN, "espeak", "en-us+m3", "WAV, 16 bit", "8 kHz", ("-ar", "8000")),
    Recording("silence-inside.flac", SEEN, "espeak", "en-us+adam", "FLAC", "16 kHz", silence=10),
    Recording("noisy-kitchen.opus", SEEN, "flite", "awb", "Ogg, Opus", "48 kHz", ("-b:a", "48k"), noise=12),
    Recording("long-report.m4a", SEEN, "espeak", "en-us+edward", "M4A, AAC", "32 kHz", BROADCAST_AAC, pace=130),
    Recording("unknown-variant-mail.wav", UNSEEN_VARIANT, "espeak", "en-us+Andrea", "WAV, 16 bit", "16 kHz"),
    Recording("unknown-variant-steps.flac", UNSEEN_VARIANT, "espeak", "en-gb-x-rp+steph", "FLAC", "16 kHz"),
    Recording("unknown-speaker-note.wav", UNSEEN_SPEAKER, "festival", HELD_OUT_VOICE, "WAV, 16 bit", "16 kHz"),
    Recording("unknown-speaker-list.webm", UNSEEN_SPEAKER, "festival", HELD_OUT_VOICE, "WebM, Opus", "48 kHz", LOW_OPUS),
    Recording("unknown-speaker-reminder.wav", UNSEEN_SPEAKER, "festival", HELD_OUT_VOICE, "WAV, 16 bit", "16 kHz"),
    Recording("unknown-speaker-message.flac", UNSEEN_SPEAKER, "festival", HELD_OUT_VOICE, "FLAC", "16 kHz"),
    Recording("unknown-speaker-report.m4a", UNSEEN_SPEAKER, "festival", HELD_OUT_VOICE, "M4A, AAC", "44.1 kHz", CD_AAC),
)


class Studio:
    """Has recordings spoken; engines are started when they are first needed."""

    def __init__(self, work: Path):
        self._random = Random(SEED)
        self._work = work
        self._espeak: Espeak | None = None
        self._noises = Noises(np.random.default_rng(SEED))

    def record(self, recording: Recording, text: str) -> np.ndarray:
        """The samples of a recording; float32 at 16 kHz."""
        speak = self._speaker(recording)
        parts = [silence(EDGE_SECONDS)]
        for index, sentence in enumerate(re.split(r"(?<=[.?!]) ", text)):
            gap = recording.silence if index == 1 else SENTENCE_GAP_SECONDS
            parts += [silence(gap)] if index else []
            parts.append(speak(spoken_tokens(sentence)[0]).samples.astype(np.float32))
        speech = np.concatenate([*parts, silence(EDGE_SECONDS)])
        speech *= PEAK / np.abs(speech).max()
        if recording.noise is None:
            return speech
        return with_noise(speech, self._noises.take(len(speech)), float((speech**2).mean()), recording.noise)

    def _speaker(self, recording: Recording) -> Callable:
        if recording.engine == "espeak":
            self._espeak = self._espeak or Espeak(self._random, self._work)
            accent, variant = recording.voice.split("+")
            self._espeak.set_speaker(accent, variant, recording.pace, 50)
            return self._espeak.speak
        voice = recording.voice
        synthesiser = Flite(self._random, (voice,)) if recording.engine == "flite" else Festival(self._random, voice)
        synthesiser.next_speaker()
        return synthesiser.speak


def silence(seconds: float) -> np.ndarray:
    return np.zeros(int(seconds * SAMPLE_RATE), np.float32)


def encode(samples: np.ndarray, path: Path, arguments: tuple[str, ...]) -> None:
    """Writes samples in the container of the path's extension."""
    data = np.clip(np.round(samples * 32767), -32768, 32767).astype("<i2").tobytes()
    source = ["-f", "s16le", "-ar", str(SAMPLE_RATE), "-ac", "1", "-i", "-"]
    command = ["ffmpeg", "-loglevel", "error", "-y", *source, "-bitexact", *arguments, str(path)]
    subprocess.run(command, input=data, check=True)


def row(recording: Recording, seconds: float) -> str:
    voice = f"{recording.engine} {recording.voice}"
    if recording.noise is not None:
        voice += f", noise at {recording.noise:.0f} dB"
    length = f"{seconds:.1f} s" if seconds < 60 else f"{seconds // 60:.0f} min {seconds % 60:.0f} s"
    cells = (f"`{recording.file}`", recording.group, voice, recording.container, recording.rate, length)
    return f"| {' | '.join(cells)} |\n"


def main() -> None:
    parser = argparse.ArgumentParser(description="Makes the sample recordings from their texts.")
    parser.add_argument("samples", type=Path)
    parser.add_argument("work", type=Path)
    arguments = parser.parse_args()
    studio = Studio(arguments.work)
    table = ""
    for recording in RECORDINGS:
        path = arguments.samples / recording.file
        samples = studio.record(recording, path.with_suffix(".txt").read_text(encoding="utf-8").strip())
        encode(samples, path, recording.arguments)
        table += row(recording, len(samples) / SAMPLE_RATE)
    (arguments.samples / "README.md").write_text(INTRODUCTION + table, encoding="utf-8")


if __name__ == "__main__":
    main()

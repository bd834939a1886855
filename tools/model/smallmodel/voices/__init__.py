# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Speech synthesisers that tell where each word stands.

A synthesiser has next_speaker(), which picks the voice, pitch and pace of what follows and returns
the speaker's name, and speak(tokens), which returns a Spoken or None when the engine failed.
"""

from .espeak import Espeak
from .festival import Festival
from .flite import Flite
from .morphing import Morphed
from .speech import SAMPLE_RATE, Spoken

__all__ = ["SAMPLE_RATE", "Espeak", "Festival", "Flite", "Morphed", "Spoken"]

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Writes the sentences to be spoken: dictation from a grammar, free text and strings of words.

    python3 -m smallmodel.text FOLDER      writes training.txt, prose.txt and held-out.txt, "kind<TAB>text" lines

All text is made of English words, the punctuation . , ? ! and nothing else; numbers are words.
"""

import argparse
import hashlib
import html
import re
from collections import Counter
from itertools import accumulate
from pathlib import Path
from random import Random

from . import numbers

GRAMMAR = Path(__file__).with_name("grammar.txt")
PROSE = Path(__file__).with_name("prose.txt")  # written for this purpose, for a wide everyday vocabulary
WORD_LIST = Path("/usr/share/dict/american-english")
QUOTATIONS = Path("/usr/share/games/fortunes")
EXAMPLES = Path("/usr/share/wordnet")

# Quotation files without usable English sentences.
UNUSABLE_QUOTATIONS = {"ascii-art", "translate-me", "zippy"}

SHARES = {"NOTE": 0.27, "MESSAGE": 0.2, "MAIL": 0.12, "LIST": 0.11, "CODE": 0.19, "FILLED": 0.11}
LONGEST_TEXT = 190  # characters
HELD_OUT_SHARE = 40  # one text in this many

CONTRACTIONS = set(
    "don't can't won't isn't doesn't didn't it's that's we'll we're you're they're let's there's couldn't wouldn't "
    "shouldn't haven't hasn't wasn't aren't what's I'm I'll I've I'd he's she's you'll you've they'll they've "
    "we've".split()
)
SYMBOL = re.compile(r"\{(\w+)\}")
BUILT_IN = ("number", "small", "digits", "time", "ordinal", "year", "money", "percent", "decimal", "letters")


class Lexicon:
    """The English words that may occur, from the system's word list."""

    def __init__(self, words: list[str]):
        self.common = [word for word in words if re.fullmatch(r"[a-z]{2,14}", word)]
        self.names = [word for word in words if re.fullmatch(r"[A-Z][a-z]{2,10}", word)]
        self._known = set(self.common) | set(self.names) | CONTRACTIONS | {"a", "I", "A"}

    @classmethod
    def installed(cls) -> "Lexicon":
        return cls(WORD_LIST.read_text(encoding="utf-8").split())

    def knows(self, word: str, first: bool) -> bool:
        """Whether every part of the word is known; the first of a sentence may be capitalised."""
        return all(part in self._known or (first and part.lower() in self._known) for part in word.split("-"))


class Grammar:
    """Expands the symbols of grammar.txt."""

    def __init__(self, lexicon: Lexicon, random: Random, source: str | None = None):
        self._random = random
        self._lexicon = lexicon
        self._alternatives: dict[str, list[str]] = {}
        for line in (source if source is not None else GRAMMAR.read_text(encoding="utf-8")).splitlines():
            if line.strip() and not line.startswith("#"):
                symbol, alternatives = line.split(":", 1)
                self._alternatives.setdefault(symbol, []).extend(part.strip() for part in alternatives.split(" | "))

    def text(self, kind: str) -> str:
        """A whole text of a kind, with capitals and final punctuation."""
        return punctuated(self._expand("{" + kind + "}"))

    def _expand(self, text: str) -> str:
        return SYMBOL.sub(lambda match: self._expand(self._choose(match[1])), text)

    def _choose(self, symbol: str) -> str:
        if symbol in BUILT_IN:
            return getattr(numbers, symbol)(self._random)
        if symbol == "word":
            return self._random.choice(self._lexicon.common)
        if symbol == "name":
            return self._random.choice(self._lexicon.names)
        return self._random.choice(self._alternatives[symbol])


def punctuated(text: str) -> str:
    """The text with its articles, capitals and final punctuation put right."""
    text = re.sub(r"\b([Aa]) ([aeiouAEIO])", r"\1n \2", text)
    text = re.sub(r"([.?!])[.,]", r"\1", text)
    text = re.sub(r"(^|[.?!] )([a-z])", lambda match: match[1] + match[2].upper(), text)
    return text if text[-1] in ".?!" else text + "."


def sentences(prose: str, lexicon: Lexicon):
    """The sentences of a prose text that consist of known words and plain punctuation."""
    prose = html.unescape(prose).replace("\u2019", "'").replace("--", ", ").replace(";", ",")
    prose = re.sub(r'["\u201c\u201d*_`()\[\]]', "", prose)
    prose = re.sub(r"\s+", " ", prose).replace(" ,", ",")
    for sentence in re.split(r"(?<=[.?!]) ", prose):
        if usable(sentence.strip(), lexicon):
            yield sentence.strip()


def usable(sentence: str, lexicon: Lexicon) -> bool:
    words = re.findall(r"[A-Za-z'-]+", sentence)
    return (
        re.fullmatch(r"[A-Z][A-Za-z',\- ]*[.?!]", sentence) is not None
        and all(word[0].isalpha() for word in sentence.split())
        and 2 <= len(words) <= 26
        and len(sentence) <= LONGEST_TEXT
        and all(lexicon.knows(word, index == 0) for index, word in enumerate(words))
    )


def quotations(lexicon: Lexicon):
    """Sentences of the installed quotation collections."""
    for path in sorted(QUOTATIONS.glob("*")):
        if path.suffix or path.name in UNUSABLE_QUOTATIONS or not path.is_file():
            continue
        for quotation in path.read_text(encoding="utf-8", errors="ignore").split("\n%\n"):
            yield from sentences(quotation.split("\t\t--")[0], lexicon)


def examples(lexicon: Lexicon):
    """The example phrases of the installed dictionary, as sentences."""
    for path in sorted(EXAMPLES.glob("data.*")):
        for phrase in re.findall(r'"([^"]+)"', path.read_text(encoding="utf-8", errors="ignore")):
            phrase = phrase.strip(" .,;")
            if phrase:
                yield from sentences(phrase[0].upper() + phrase[1:] + ("" if phrase[-1] in "?!" else "."), lexicon)


class WordStrings:
    """Strings of words in no order, for a wide vocabulary: frequent, rare and proper ones."""

    def __init__(self, lexicon: Lexicon, prose: list[str], random: Random):
        counts = Counter(word for text in prose for word in re.findall(r"[A-Za-z']+", text[0].lower() + text[1:]))
        self._frequent = list(counts)
        self._weights = list(accumulate(count**0.6 for count in counts.values()))
        self._lexicon = lexicon
        self._random = random

    def text(self) -> str:
        words = [self._word() for _ in range(self._random.randint(3, 10))]
        inner = [word + ("," if self._random.random() < 0.08 else "") for word in words[:-1]]
        return punctuated(" ".join([*inner, words[-1]]))

    def _word(self) -> str:
        kind = self._random.random()
        if kind < 0.45:
            return self._random.choice(self._lexicon.common)
        if kind < 0.9:
            return self._random.choices(self._frequent, cum_weights=self._weights)[0]
        return self._random.choice(self._lexicon.names)


def write_texts(folder: Path, dictation: int, strings: int, seed: int) -> None:
    """Writes dictation texts, word strings and all free text, split into training and held-out by hash."""
    random, lexicon = Random(seed), Lexicon.installed()
    grammar = Grammar(lexicon, random)
    free = [("QUOTATION", text) for text in quotations(lexicon)] + [("EXAMPLE", text) for text in examples(lexicon)]
    words = WordStrings(lexicon, [text for _, text in free], random)
    kinds = random.choices(list(SHARES), list(SHARES.values()), k=dictation)
    texts = free + [(kind, grammar.text(kind)) for kind in kinds] + [("WORDS", words.text()) for _ in range(strings)]
    unique = {text: kind for kind, text in texts if len(text) <= LONGEST_TEXT}
    lines = [f"{kind}\t{text}\n" for text, kind in unique.items()]
    random.shuffle(lines)
    folder.mkdir(parents=True, exist_ok=True)
    prose = [f"PROSE\t{text}\n" for text in PROSE.read_text(encoding="utf-8").splitlines()]
    for name, source, held_out in (("training.txt", lines, False), ("prose.txt", prose, False), ("held-out.txt", lines, True)):
        chosen = [line for line in source if is_held_out(line.rstrip().split("\t")[1]) == held_out]
        (folder / name).write_text("".join(chosen), encoding="utf-8")


def is_held_out(text: str) -> bool:
    """Whether a text is kept from training; the same words always fall on the same side."""
    words = " ".join(re.findall(r"[a-z']+", text.lower()))
    return int(hashlib.md5(words.encode()).hexdigest(), 16) % HELD_OUT_SHARE == 0


def main() -> None:
    parser = argparse.ArgumentParser(description="Writes the sentences to be spoken.")
    parser.add_argument("folder", type=Path)
    parser.add_argument("--dictation", type=int, default=150_000, help="texts from the grammar")
    parser.add_argument("--strings", type=int, default=40_000, help="strings of words in no order")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    write_texts(arguments.folder, arguments.dictation, arguments.strings, arguments.seed)


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Texts, numbers, pieces and spans."""

import unittest
from random import Random

import numpy as np

from smallmodel import numbers
from smallmodel.scoring import Score, words
from smallmodel.speak import spoken_tokens, word_spans
from smallmodel.text import Grammar, Lexicon, is_held_out, punctuated, usable
from smallmodel.vocabulary import Vocabulary, learn
from smallmodel.voices import Spoken


class NumberTest(unittest.TestCase):
    def test_cardinals(self):
        random = Random(1)
        self.assertEqual(numbers.cardinal(0, random), "zero")
        self.assertEqual(numbers.cardinal(45, random), "forty-five")
        self.assertEqual(numbers.cardinal(3_000_012, random), "three million twelve")
        self.assertIn(numbers.cardinal(342, random), ("three hundred forty-two", "three hundred and forty-two"))


class TextTest(unittest.TestCase):
    def test_punctuation_and_capitals(self):
        self.assertEqual(punctuated("bring a apple. then go"), "Bring an apple. Then go.")

    def test_every_kind_of_the_grammar_expands(self):
        grammar = Grammar(Lexicon(["walnut", "Alice"]), Random(1))
        for kind in ("NOTE", "MESSAGE", "MAIL", "LIST", "CODE", "FILLED"):
            for _ in range(200):
                self.assertNotIn("{", grammar.text(kind))

    def test_only_known_words_are_usable(self):
        lexicon = Lexicon(["the", "sky", "is", "clear"])
        self.assertTrue(usable("The sky is clear.", lexicon))
        self.assertFalse(usable("The skye is clear.", lexicon))

    def test_punctuation_does_not_change_the_side(self):
        self.assertEqual(is_held_out("Well, go on."), is_held_out("well go on"))


class VocabularyTest(unittest.TestCase):
    def test_pieces_give_the_word_back(self):
        vocabulary = Vocabulary(learn(["Report the reports, please."] * 3, 70))
        indices, before = vocabulary.encode_word("reports,")
        self.assertEqual(vocabulary.decode(indices), "reports,")
        self.assertEqual(before[0], 0)
        self.assertEqual(before[-1], 7)


class SpanTest(unittest.TestCase):
    def test_terms_are_spelt_out(self):
        self.assertEqual(spoken_tokens("The API, now."), (["The", "A", "P", "I,", "now."], [0, 1, 1, 1, 2]))

    def test_a_word_without_a_start_shares_the_span_before(self):
        spoken = Spoken(np.zeros(16_000, np.int16), [(0.0, None), (None, None), (0.6, 0.9)])
        self.assertEqual(word_spans(spoken, [0, 1, 2]), [[0.0, 0.3], [0.3, 0.6], [0.6, 0.9]])


class ScoringTest(unittest.TestCase):
    def test_case_and_punctuation_do_not_count(self):
        self.assertEqual(words("Forty-five, isn't it?"), ["forty", "five", "isn't", "it"])
        score = Score()
        score.add("One two three.", "one too, three four")
        self.assertEqual((score.errors, score.words), (2, 3))

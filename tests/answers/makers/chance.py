# SPDX-License-Identifier: Apache-2.0
"""Choices that are the same with every Python, and words.

Of all methods of random.Random this module calls the only one whose answers are promised to stay.
"""

import random

RANDOM = random.Random()

WORDS = "leaf quiver arrow 42 Größe œuvre 銀杏 שלום ﬁne naïve A.B. x e.g. UPPER İstanbul straße".split()
ENTITIES = ["&amp;", "&nbsp;", "&eacute;x", "&#x201c;q&#8221;", "&lt;t>", "&#150;", "&notanentity;", "&shy;"]


def number(least, most):
    """One of these bounds, or between them."""
    return least + int(RANDOM.random() * (most - least + 1))


def pick(choices):
    choices = [*choices]
    return choices[number(0, len(choices) - 1)]


def several(choices, times):
    return [pick(choices) for _ in range(times)]


def chance(share):
    return RANDOM.random() < share


def words(most=5):
    made = pick(["", " ", "\n"]) + " ".join(several(WORDS, number(1, most))) + pick(["", " ", "\n  ", ". "])
    return made + (pick(ENTITIES) if chance(0.2) else "")

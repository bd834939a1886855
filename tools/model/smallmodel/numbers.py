# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Numbers, times and amounts as people say them."""

from random import Random

UNITS = (
    "zero one two three four five six seven eight nine ten eleven twelve thirteen fourteen fifteen sixteen seventeen "
    "eighteen nineteen"
).split()
TENS = "_ _ twenty thirty forty fifty sixty seventy eighty ninety".split()
ORDINALS = (
    "_ first second third fourth fifth sixth seventh eighth ninth tenth eleventh twelfth thirteenth fourteenth "
    "fifteenth sixteenth seventeenth eighteenth nineteenth twentieth"
).split()
SCALES = ((1_000_000, "million"), (1_000, "thousand"))


def cardinal(value: int, random: Random) -> str:
    """Example: 342 is "three hundred forty-two" or "three hundred and forty-two"."""
    for scale, name in SCALES:
        if value >= scale:
            rest = value % scale
            return f"{cardinal(value // scale, random)} {name}" + (f" {cardinal(rest, random)}" if rest else "")
    if value >= 100:
        joint = " and " if random.random() < 0.4 else " "
        rest = value % 100
        return f"{UNITS[value // 100]} hundred" + (joint + cardinal(rest, random) if rest else "")
    if value >= 20:
        return TENS[value // 10] + (f"-{UNITS[value % 10]}" if value % 10 else "")
    return UNITS[value]


def number(random: Random) -> str:
    """Any number, small ones most often."""
    kind = random.random()
    if kind < 0.3:
        return cardinal(random.randint(0, 12), random)
    if kind < 0.7:
        return cardinal(random.randint(0, 99), random)
    if kind < 0.9:
        return cardinal(random.randint(100, 999), random)
    return cardinal(random.randint(1_000, 999_999 if kind < 0.98 else 9_999_999), random)


def small(random: Random) -> str:
    return cardinal(random.randint(2, 25), random)


def ordinal(random: Random) -> str:
    """Ordinals up to the days of a month."""
    day = random.randint(1, 31)
    if day <= 20:
        return ORDINALS[day]
    if day == 30:
        return "thirtieth"
    return f"{TENS[day // 10]}-{ORDINALS[day % 10]}"


def year(random: Random) -> str:
    kind = random.random()
    if kind < 0.35:
        return f"two thousand {cardinal(random.randint(1, 29), random)}"
    century = random.choice(["eighteen", "nineteen", "nineteen", "twenty"])
    rest = random.randint(10, 29 if century == "twenty" else 99)
    return f"{century} {cardinal(rest, random)}"


def digits(random: Random) -> str:
    """Three to eight digits, one by one."""
    return " ".join(random.choice(UNITS[:10]) for _ in range(random.randint(3, 8)))


def decimal(random: Random) -> str:
    fraction = " ".join(random.choice(UNITS[:10]) for _ in range(random.randint(1, 2)))
    return f"{cardinal(random.randint(0, 99), random)} point {fraction}"


def time(random: Random) -> str:
    hour = UNITS[random.randint(1, 12)]
    minutes = cardinal(random.randint(10, 59), random)
    return random.choice(
        [
            f"{hour} o'clock",
            f"{hour} thirty",
            f"{hour} fifteen",
            f"{hour} forty-five",
            f"half past {hour}",
            f"a quarter to {hour}",
            f"a quarter past {hour}",
            f"{hour} in the morning",
            f"{hour} in the afternoon",
            f"{hour} {minutes}",
            f"{hour} {minutes}",
            f"{hour} tonight",
            "noon",
            "midnight",
        ]
    )


def money(random: Random) -> str:
    cents = cardinal(random.randint(1, 99), random)
    currency = random.choice([" dollars", " euros", " pounds", f" dollars and {cents} cents", " cents"])
    return number(random) + currency


def percent(random: Random) -> str:
    return f"{cardinal(random.randint(1, 100), random)} percent"


def letters(random: Random) -> str:
    """One to three capital letters, spoken by name."""
    return " ".join(random.choice("ABCDEFGHIJKLMNOPQRSTUVWXYZ") for _ in range(random.randint(1, 3)))

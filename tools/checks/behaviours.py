# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""docs/Behaviours.md lists what the stories of tests/scenarios tell, in their own words; `--write` brings it up to date."""
import sys

import tree

PAGE = tree.ROOT / "docs/Behaviours.md"
STORIES = tree.ROOT / "tests/scenarios/stories"
HEAD = """# What a dictation does

Each line is a story in `tests/scenarios/stories`, which plays the whole road of a dictation on a fake desktop with time turned by hand.
The page is made from the stories' first lines by `tools/checks/behaviours.py --write`.

| story | what it tells |
|---|---|
"""


def page():
    lines = [(path.stem, path.read_text(encoding="utf-8").splitlines()[0]) for path in sorted(STORIES.glob("*.txt"))]
    return HEAD + "".join(f"| {name} | {line.removeprefix('# ')} |\n" for name, line in lines)


def main():
    if "--write" in sys.argv:
        PAGE.write_text(page(), encoding="utf-8")
        return 0
    if PAGE.exists() and PAGE.read_text(encoding="utf-8") == page():
        return 0
    print("docs/Behaviours.md does not tell what the stories tell: run tools/checks/behaviours.py --write")
    return 1


if __name__ == "__main__":
    sys.exit(main())

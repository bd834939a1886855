# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Every source file names its licence in its first lines."""
import sys

import tree

PATTERNS = ("*.cpp", "*.h", "*.py", "*.cmake", "CMakeLists.txt", "**/CMakeLists.txt", "run", "test", "tools/check")


def main():
    bare = [path for path in tree.files(*PATTERNS)
            if "SPDX-License-Identifier: Apache-2.0" not in (tree.ROOT / path).read_text()[:400]]
    for path in bare:
        print(f"{path}: no SPDX line")
    return 1 if bare else 0


if __name__ == "__main__":
    sys.exit(main())

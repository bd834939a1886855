# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""headers.py BUILD: every header compiles on its own, with the flags of its module."""
import concurrent.futures
import os
import subprocess
import sys

import tree


def flags_for(header, flags):
    """The flags of the source that lies nearest to the header: the longest common path."""
    def nearness(source):
        return len(os.path.commonpath([str(source), str(header)])) if source.parts[0] == header.parts[0] else -1
    nearest = max(flags, key=nearness)
    return flags[nearest] if nearness(nearest) >= 0 else None


def complaint(header, flags):
    own = flags_for(header, flags)
    if own is None:
        return f"{header}: lies in no module that is built"
    compiled = subprocess.run(["g++", *own, "-fsyntax-only", "-x", "c++", "-"], text=True, capture_output=True,
                              input=f'#include "{tree.ROOT / header}"\n', cwd=tree.ROOT)
    return compiled.stderr if compiled.returncode else ""


def main():
    flags = tree.compile_flags(sys.argv[1])
    headers = tree.files("*.h")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = [text for text in pool.map(lambda header: complaint(header, flags), headers) if text]
    print("\n".join(complaints))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())

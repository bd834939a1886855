# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""headers.py BUILD: every header compiles on its own, with the flags of a program or module near it."""
import concurrent.futures
import os
import subprocess
import sys

import tree


def nearness(source, header):
    """How far down the tree a source and a header go together: the length of their common path."""
    return len(os.path.commonpath([str(source), str(header)]))


def flags_for(header, flags):
    """What the sources near the header are compiled with, the nearest first, each set of flags once."""
    near = [source for source in flags if source.parts[0] == header.parts[0]]
    near.sort(key=lambda source: nearness(source, header), reverse=True)
    return list(dict.fromkeys(tuple(flags[source]) for source in near))


def compile_alone(header, own):
    compiled = subprocess.run(["g++", *own, "-fsyntax-only", "-x", "c++", "-"], text=True, capture_output=True,
                              input=f'#include "{tree.ROOT / header}"\n', cwd=tree.ROOT)
    return compiled.stderr if compiled.returncode else ""


def complaint(header, flags):
    """What is wrong with a header that compiles with no flags of its neighbours."""
    complaints = []
    for own in flags_for(header, flags):
        complaints.append(compile_alone(header, own))
        if not complaints[-1]:
            return ""
    return complaints[0] if complaints else f"{header}: lies in no module that is built"


def main():
    flags = tree.compile_flags(sys.argv[1])
    headers = tree.files("*.h")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = [text for text in pool.map(lambda header: complaint(header, flags), headers) if text]
    print("\n".join(complaints))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""tidy.py BUILD < list of sources: clang-tidy on those of them that the build compiles."""
import concurrent.futures
import os
import pathlib
import subprocess
import sys

import tree


def complaint(build, source):
    done = subprocess.run(["clang-tidy-16", "-quiet", "-p", build, "--extra-arg=-Wno-unknown-warning-option", str(source)], text=True, capture_output=True,
                          cwd=tree.ROOT)
    return done.stdout if done.returncode else ""


def main():
    build = sys.argv[1]
    compiled = tree.compile_flags(build)
    sources = [path for path in map(pathlib.PurePosixPath, sys.stdin.read().split()) if path in compiled]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = [text for text in pool.map(lambda source: complaint(build, source), sources) if text]
    print("\n".join(complaints))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())

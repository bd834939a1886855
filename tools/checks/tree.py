# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""What the checks share: the files of the tree and how each module's sources are compiled."""
import json
import pathlib
import shlex
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]


def files(*patterns):
    """Paths, relative to the root, of the files that git tracks or would track."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "--", *patterns],
                            cwd=ROOT, check=True, capture_output=True, text=True).stdout.split("\n")
    return sorted(pathlib.PurePosixPath(name) for name in listed if name and (ROOT / name).exists())


def module_of(path, modules):
    """The module that a file lies in (the longest matching folder), or None."""
    inside = [module for module in modules if str(path).startswith(module + "/")]
    return max(inside, key=len, default=None)


def compile_flags(build):
    """{source path: [flags]} for every source of a build tree, without compiler, input and output."""
    flags = {}
    for entry in json.loads((ROOT / build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        words = words[next(i for i, word in enumerate(words) if word.startswith("-")):]
        kept, skip = [], False
        for word in words:
            if skip or word in ("-c", entry["file"]):
                skip = False
            elif word == "-o":
                skip = True
            else:
                kept.append(word)
        source = pathlib.Path(entry["file"]).relative_to(ROOT)
        flags[pathlib.PurePosixPath(source)] = kept
    return flags

# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""What the hub says of a folder that it serves as a repository."""
import dataclasses
import functools
import hashlib
import json
import pathlib

# As in a repository with the usual attributes: these are kept in large-file storage, and listed with their digest.
LARGE_FILES = {".bin", ".f16", ".gguf"}


@dataclasses.dataclass
class Redirected:
    """A file that is fetched from another address if it is in large-file storage, or an archive."""
    file: pathlib.Path
    location: str

    def is_elsewhere(self):
        return self.file.suffix in LARGE_FILES | {".gz"}


@functools.lru_cache(maxsize=256)
def digest_of(path, size, changed):
    del size, changed  # a file that changed is another one
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def entry(path, name):
    if path.is_dir():
        return {"type": "directory", "oid": "0" * 40, "size": 0, "path": name}
    status = path.stat()
    described = {"type": "file", "oid": "1" * 40, "size": status.st_size, "path": name}
    if path.suffix in LARGE_FILES:
        described["lfs"] = {"oid": digest_of(path, status.st_size, status.st_mtime_ns), "size": status.st_size,
                            "pointerSize": 134}
    return described


def tree(folder):
    """The listing as a list of entries; None if there is no such revision."""
    if not folder.is_dir():
        return None
    return [entry(path, str(path.relative_to(folder))) for path in sorted(folder.rglob("*"))]


def refs(folder):
    """The revisions as tags, in the order of their names; those that begin with a letter other than v are branches."""
    if not folder.is_dir():
        return None
    names = sorted(path.name for path in folder.iterdir())
    branches = [name for name in names if name[0].isalpha() and name[0] != "v"]
    return {"branches": [{"name": name, "ref": f"refs/heads/{name}"} for name in branches],
            "tags": [{"name": name, "ref": f"refs/tags/{name}"} for name in names if name not in branches],
            "converts": []}


def encoded(listing):
    return json.dumps(listing).encode()

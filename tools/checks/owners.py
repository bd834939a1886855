# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""A third-party library is included only by the modules that cmake/ModuleGraph.cmake names as its owners."""
import re
import sys

import tree

HEADERS = {
    "Boost": r"boost/",
    "CURL": r"curl/",
    "FFmpeg": r"lib(av\w+|sw\w+)/",
    "ICU": r"unicode/",
    "Json": r"nlohmann/",
    "LinkGrammar": r"link-grammar/",
    "OpenSSL": r"openssl/",
    "Plist": r"plist/",
    "Pulse": r"pulse/",
    "SdbusCpp": r"sdbus-c\+\+/",
    "Xcb": r"xcb/",
    "Qt": r"Q[A-Z]\w+$",
}


def owners():
    """{module: set of libraries}, read from the table in the build."""
    table = (tree.ROOT / "cmake/ModuleGraph.cmake").read_text()
    return {name: set(libraries.split())
            for name, libraries in re.findall(r"set\(SORVANE_LIBRARIES_(\w+)\s+([^)]*)\)", table)}


def folder_of(module):
    """Where a module lies: a part of the application, or of the desktop, in a folder of its own below it."""
    for whole, folder in (("Sorvane", "Sorvane"), ("Desktop", "DesktopServices")):
        part = module.removeprefix(whole)
        if part not in (module, "Services"):
            return f"{folder}/{part}"
    return module


def violations(folders, owned):
    for path in tree.files("*.cpp", "*.h"):
        folder = tree.module_of(path, folders)
        if folder is None or "tests" in path.parts:
            continue
        for number, line in enumerate((tree.ROOT / path).read_text().splitlines(), 1):
            include = re.match(r'\s*#\s*include\s*[<"]([^>"]+)', line)
            for library, pattern in HEADERS.items():
                if include and re.match(pattern, include[1]) and library not in owned.get(folders[folder], ()):
                    yield f"{path}:{number}: {folders[folder]} does not own {library}"


def main():
    owned = owners()
    table = (tree.ROOT / "cmake/ModuleGraph.cmake").read_text()
    folders = {folder_of(name): name for name in re.findall(r"set\(SORVANE_EDGES_(\w+)", table)}
    found = list(violations(folders, owned))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

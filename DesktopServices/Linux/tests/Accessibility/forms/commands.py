# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""What the programs of this folder understand, each a window of fields for the desktop tests. They read commands, a
line each, and answer each:

    focus FIELD     gives the focus to the field: "done"
    disable FIELD   lets nobody use it: "done"
    read FIELD      its text, between brackets
    remove FIELD    takes it out of the window: "done"

The fields are "line", "page" (of several lines), "password", "fixed" (read-only) and "button". Each has the
description "A line for tests" and so on; the line has the name "The line", the page none.
"""
import sys


def obey(fields):
    """One command, by the field's method of the command's name; false at the end of all commands."""
    command, field = (sys.stdin.readline().split() + [None, None])[:2]
    if not field:
        return False
    answer = getattr(fields[field], command)()
    print(f"[{answer}]" if command == "read" else "done", flush=True)
    return True

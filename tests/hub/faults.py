# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""How the hub answers, and all the ways in which it can do so wrongly."""
import fnmatch
import pathlib
import socket
import struct

import repositories

PIECE = 65536  # bytes that are sent at once


class Hangup(Exception):
    """The connection ends here."""


def applies(fault, place):
    return fnmatch.fnmatchcase(place, fault["on"])


def answer(handler, found, fault, entry):
    kind = fault.get("fault")
    if "status" in fault:
        return plain(handler, fault["status"], fault.get("body", "an error page").encode(), entry)
    if kind == "redirect":
        return redirect(handler, location(handler, fault), entry)
    if isinstance(found, repositories.Redirected):
        if found.file.exists() and found.is_elsewhere():
            return redirect(handler, found.location, entry)
        return answer(handler, found.file, handler.hub.fault_on("content/" + handler.place.partition("/")[2]), entry)
    if isinstance(found, pathlib.Path):
        if not found.is_file():
            return plain(handler, 404, b"Entry not found", entry)
        return body(handler, Content(found, fault), fault, entry)
    if found is None:
        return plain(handler, 404, b'{"error":"Repository not found"}', entry)
    if not isinstance(found, bytes):
        found = repositories.encoded(listed(found, fault))
    return body(handler, Content(found, fault), fault, entry)


def location(handler, fault):
    """To itself again and again, to the same over plain http, or to a given address."""
    to = fault["to"]
    if to == "itself":
        return handler.path
    if to == "http":
        return handler.hub.plain_origin + handler.path
    return to


def redirect(handler, to, entry):
    entry["status"] = 302
    handler.send_response(302)
    handler.send_header("Location", to)
    handler.send_header("Content-Length", "0")
    handler.end_headers()


def plain(handler, status, content, entry):
    entry["status"] = status
    handler.send_response(status)
    if status != 204:
        handler.send_header("Content-Length", str(len(content)))
    handler.end_headers()
    if status != 204 and handler.command != "HEAD":
        send(handler, content, entry)


def listed(listing, fault):
    """A listing with what is wrong in it."""
    kind = fault.get("fault")
    if kind == "edit":  # of the entry at this path
        return [dict(item, **fault["change"]) if item["path"] == fault["path"] else item for item in listing]
    if kind == "drop":  # a field
        return [{k: v for k, v in item.items() if k != fault["field"]} if item["path"] == fault["path"] else item
                for item in listing]
    if kind == "add":
        return listing + fault["entries"]
    if kind == "upper-case-digests":
        return [dict(item, lfs=dict(item["lfs"], oid=item["lfs"]["oid"].upper())) if "lfs" in item else item
                for item in listing]
    if kind == "many":
        return listing + [{"type": "file", "path": f"filler/{i}", "size": 1} for i in range(fault["count"])]
    return listing


class Content:
    """The bytes of an answer, with what is wrong in them."""

    def __init__(self, source, fault):
        self.source = source
        self.fault = fault
        kind = fault.get("fault")
        self.is_file = isinstance(source, pathlib.Path) and kind not in ("flip", "replace", "shorter")
        if not self.is_file:
            self.bytes = bytearray(source.read_bytes() if isinstance(source, pathlib.Path) else source)
        if kind == "flip":
            self.bytes[fault.get("at", 0)] ^= 1
        if kind in ("replace", "body"):
            self.is_file = False
            self.bytes = bytearray(fault["with"].encode()) * fault.get("repeat", 1)
        if kind == "shorter":
            del self.bytes[-fault["bytes"]:]
        self.extra = fault["bytes"] if kind == "extra" else 0

    def __len__(self):
        return (self.source.stat().st_size if self.is_file else len(self.bytes)) + self.extra

    def pieces(self, size):
        if self.is_file:
            with open(self.source, "rb") as file:
                while piece := file.read(size):
                    yield piece
        else:
            for at in range(0, len(self.bytes), size):
                yield self.bytes[at:at + size]
        for at in range(0, self.extra, size):
            yield bytes(min(size, self.extra - at))


def body(handler, content, fault, entry):
    kind = fault.get("fault")
    entry["status"] = fault.get("as", 200)
    handler.send_response(entry["status"])
    if kind in ("unannounced", "endless"):  # its end is the connection's
        handler.send_header("Connection", "close")
        handler.close_connection = True
    else:
        handler.send_header("Content-Length", str(len(content)))
    handler.end_headers()
    if handler.command == "HEAD":
        return
    if not kind and content.is_file and not hasattr(handler.connection, "pending"):  # not over TLS
        return send_file(handler, content, entry)
    left = fault.get("after", len(content)) if kind in ("truncate", "reset", "stall") else len(content)
    for piece in content.pieces(fault.get("bytes", PIECE) if kind == "trickle" else PIECE):
        send(handler, piece[:left], entry)
        left -= len(piece[:left])
        if left == 0:
            break
        if kind == "trickle":
            handler.hub.ended.wait(fault["pause"])
    end(handler, kind, entry)


def send_file(handler, content, entry):
    entry["bytes"] = len(content)  # before the client has them, so that its log is complete when it asks
    with open(content.source, "rb") as file:
        try:
            handler.connection.sendfile(file)
        except OSError:
            entry["bytes"] = file.tell()
            raise


def send(handler, piece, entry):
    entry["bytes"] += len(piece)
    handler.wfile.write(piece)


def end(handler, kind, entry):
    """How a body that is not simply over goes on."""
    if kind == "truncate":
        raise Hangup
    if kind == "reset":
        handler.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        handler.connection.close()
        raise Hangup
    if kind == "stall":
        wait_for_the_client_to_leave(handler)
    while kind == "endless":
        send(handler, bytes(PIECE), entry)


def wait_for_the_client_to_leave(handler):
    handler.connection.settimeout(0.05)
    while not handler.hub.ended.is_set():
        try:
            if handler.connection.recv(1) == b"":
                break
        except (TimeoutError, socket.timeout):
            continue
    raise Hangup

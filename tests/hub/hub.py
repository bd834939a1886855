#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""A small model hub on this computer, which can be told to misbehave; README.md says how to use it."""
import argparse
import json
import pathlib
import ssl
import subprocess
import sys
import tempfile
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import unquote, urlsplit

import faults
import repositories


class Hub:
    """What both servers share: the folder, the faults that are played, and the log."""

    def __init__(self, folder):
        self.folder = folder
        self.lock = threading.Lock()
        self.faults = []
        self.log = []
        self.ended = threading.Event()
        self.origin = self.content_origin = None

    def fault_on(self, place):
        """The fault for this place, or {}; one that is limited is used up."""
        with self.lock:
            for fault in self.faults:
                if faults.applies(fault, place):
                    if fault.get("times", 1) == 0:
                        continue
                    if "times" in fault:
                        fault["times"] -= 1
                    return fault
        return {}


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    hub = None

    def do_GET(self):
        self.posted = self.rfile.read(int(self.headers.get("Content-Length", 0))).decode(errors="replace")
        self.place, answer = self.find(unquote(urlsplit(self.path).path))
        fault = self.hub.fault_on(self.place)
        entry = {"method": self.command, "path": self.path, "place": self.place, "status": 0, "bytes": 0,
                 "headers": dict(self.headers), "client": "%s:%d" % self.client_address}
        with self.hub.lock:
            self.hub.log.append(entry)
        try:
            faults.answer(self, answer, fault, entry)
        except (BrokenPipeError, ConnectionResetError, ssl.SSLError, faults.Hangup):
            self.close_connection = True

    do_HEAD = do_PUT = do_POST = do_GET

    def find(self, path):
        """Where the path leads: the place's name, and the answer."""
        parts = path.strip("/").split("/")
        folder = self.hub.folder
        if parts[:2] == ["api", "models"] and len(parts) >= 5:
            repo = folder / "models" / parts[2] / parts[3]
            if parts[4] == "refs":
                return "refs", repositories.refs(repo)
            if parts[4] == "tree":
                return "tree", repositories.tree(repo / "/".join(parts[5:]))
        if len(parts) >= 5 and parts[2] == "resolve":
            file = "/".join(parts[4:])
            answer = folder / "models" / "/".join(parts[:2]) / parts[3] / file
            return f"resolve/{file}", repositories.Redirected(answer, self.hub.content_origin + "/content" + path)
        if len(parts) >= 6 and parts[0] == "content":
            return "content/" + "/".join(parts[5:]), folder / "models" / "/".join(parts[1:3]) / "/".join(parts[4:])
        if parts[2:4] == ["releases", "download"]:
            answer = folder / "releases" / "/".join(parts[:2] + parts[4:])
            return "release/" + parts[-1], repositories.Redirected(answer, self.hub.content_origin + "/releases" + path)
        if parts[0] == "releases":
            return "content/" + parts[-1], folder / "releases" / "/".join(parts[1:3] + parts[5:])
        if parts[0] == "echo":
            return "echo", json.dumps({"method": self.command, "headers": list(self.headers.items()),
                                       "body": self.posted}).encode()
        return path, None

    def log_message(self, *arguments):
        pass


class Server(ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def handle_error(self, request, client_address):
        pass  # a client that leaves, or does not like the certificate, is no error here


def make_certificate(folder):
    key, certificate = folder / "key.pem", folder / "certificate.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-keyout", key, "-out", certificate, "-days", "2", "-subj", "/CN=localhost",
                    "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1"],
                   check=True, capture_output=True)
    return key, certificate


def start_server(hub, certificate):
    handler = type("HubHandler", (Handler,), {"hub": hub})
    server = Server(("127.0.0.1", 0), handler)
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate[1], certificate[0])
        server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return f"{'https' if certificate else 'http'}://127.0.0.1:{server.server_address[1]}"


def obey(hub, command):
    with hub.lock:
        if command == "clear":
            hub.faults.clear()
            hub.log.clear()
        elif command == "log":
            return hub.log
        else:
            hub.faults.insert(0, command)
    return "done"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--https", action="store_true")
    options = parser.parse_args()

    hub = Hub(options.folder)
    with tempfile.TemporaryDirectory() as secrets:
        certificate = make_certificate(pathlib.Path(secrets)) if options.https else None
        hub.content_origin = start_server(hub, certificate)
        hub.origin = start_server(hub, certificate)
        hub.plain_origin = start_server(hub, None) if options.https else hub.origin
        print(json.dumps({"origin": hub.origin, "certificate": str(certificate[1]) if certificate else None}), flush=True)
        for line in sys.stdin:  # it ends with whoever started it
            print(json.dumps(obey(hub, json.loads(line))), flush=True)
        hub.ended.set()


if __name__ == "__main__":
    main()

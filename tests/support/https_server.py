#!/usr/bin/env python3
"""An HTTPS server on the loopback with a certificate authority of its own, for tests of the network. It goes by its
number: not every system knows its own name.

As a program: https_server.py FOLDER. Makes the authority and its certificates in FOLDER, prints one line of
JSON (see Server.description) and serves until standard input ends.
"""

import gzip
import http.server
import json
import os
import socket
import socketserver
import ssl
import subprocess
import sys
import threading
import time
import urllib.parse

LIST = b"""<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><array><dict><key>AppName</key><string>Other</string></dict></array></plist>
"""


def openssl(folder, *arguments):
    subprocess.run(["openssl", *arguments], cwd=folder, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def make_certificates(folder):
    """Leaves authority.pem and, each with its key in one file, good.pem, wrong-name.pem, expired.pem and
    self-signed.pem."""
    key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]

    def self_signed(name, subject, *extensions):
        openssl(folder, "req", "-x509", *key, "-keyout", f"{name}.key", "-out", f"{name}.pem", "-days", "2",
                "-subj", f"/CN={subject}", *(part for text in extensions for part in ("-addext", text)))

    def signed(name, host, days):
        openssl(folder, "req", *key, "-keyout", f"{name}.key", "-out", f"{name}.csr", "-subj", f"/CN={name}",
                "-addext", f"subjectAltName={host}")
        openssl(folder, "x509", "-req", "-in", f"{name}.csr", "-CA", "authority.pem", "-CAkey", "authority.key",
                "-CAcreateserial", "-days", str(days), "-copy_extensions", "copyall", "-out", f"{name}.pem")

    self_signed("authority", "Test authority")
    signed("good", "IP:127.0.0.1", 2)
    signed("wrong-name", "DNS:elsewhere.example", 2)
    signed("expired", "IP:127.0.0.1", -1)
    self_signed("self-signed", "Nobody", "subjectAltName=IP:127.0.0.1")
    for name in ("good", "wrong-name", "expired", "self-signed"):
        with open(os.path.join(folder, f"{name}.key"), "rb") as source:
            with open(os.path.join(folder, f"{name}.pem"), "ab") as target:
                target.write(source.read())


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        self.server.owner.requests.append(self.path)
        address = urllib.parse.urlsplit(self.path)
        name, *arguments = address.path.strip("/").split("/")
        try:
            getattr(self, "serve_" + name.replace("-", "_"))(*arguments)
        finally:
            self.server.owner.left.append(self.path)

    def log_message(self, *_):
        pass

    def answer(self, body=b"", status=200, content_type="text/xml", length=None, **headers):
        self.send_response(status)
        if content_type is not None:
            self.send_header("Content-Type", content_type)
        for header, value in headers.items():
            self.send_header(header.replace("_", "-"), value)
        if status not in (204, 304):
            self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)

    def serve_list(self):
        self.answer(self.server.owner.list)

    def serve_waited(self, _):
        """The list; ends when the other side has left."""
        self.serve_list()
        self.serve_silent()

    def serve_status(self, status):
        self.answer(self.server.owner.list if status not in ("204", "304") else b"", int(status))

    def serve_type(self, *content_type):
        self.answer(LIST, content_type=urllib.parse.unquote("/".join(content_type)) or None)

    def serve_count(self, *path):
        """How often the rest of the path was asked for, of any of the servers."""
        asked = self.path.removeprefix("/count")
        self.answer(str(self.server.owner.requests.count(asked)).encode(), content_type="text/plain")

    def serve_redirect(self, times):
        """Redirects so many times, relative to this server, then answers with the list."""
        if int(times) == 0:
            self.serve_list()
        else:
            self.answer(status=302, Location=f"/redirect/{int(times) - 1}")

    def serve_moved(self, status):
        self.answer(b"", int(status), Location="/list")

    def serve_to_unencoded(self):
        self.answer(status=302, Location=self.server.owner.address("good", "list?a <b>"))

    def serve_to_huge(self):
        """To an address in many headers; ends when the other side has left."""
        part = b"Location: /%s\r\n" % (b"x" * 60_000)
        self.wfile.write(b"HTTP/1.1 302 Found\r\n" + part * 270 + b"\r\n")
        self.serve_silent()

    def serve_loop(self):
        self.answer(status=301, Location="/loop")

    def serve_to_http(self):
        self.answer(status=302, Location=self.server.owner.address("unprotected", "list?unprotected"))

    def serve_to_wrong_name(self):
        self.answer(status=302, Location=self.server.owner.address("wrong-name", "list"))

    def serve_portal(self):
        self.answer(b"<!DOCTYPE html><title>Sign in</title><form>Room number</form>", content_type="text/html")

    def serve_as_asked_for(self):
        """The list, compressed where that isn't ruled out."""
        if self.headers["Accept-Encoding"] == "identity":
            self.serve_list()
        else:
            self.serve_gzip()

    def serve_gzip(self):
        self.answer(gzip.compress(LIST), Content_Encoding="gzip")

    def serve_gzip_cut(self):
        """All that was announced comes, but the packed list itself is cut."""
        packed = gzip.compress(LIST)
        self.answer(packed[:len(packed) // 2], Content_Encoding="gzip")

    def serve_gzip_bomb(self):
        packed = gzip.compress(bytes(400 << 20), 1)
        self.answer(packed, Content_Encoding="gzip")

    def serve_short(self):
        self.answer(LIST[:40], length=len(LIST))
        self.close_connection = True

    def serve_bytes(self, count):
        left = int(count)
        self.answer(length=left)
        block = bytes(1 << 16)
        while left > 0:
            self.wfile.write(block[:left])
            left -= len(block)

    def serve_drip(self, pause, count):
        """The list in so many pieces with a pause (in milliseconds) before each."""
        self.answer(length=len(LIST))
        for i in range(int(count)):
            time.sleep(int(pause) / 1000)
            self.wfile.write(LIST[len(LIST) * i // int(count):len(LIST) * (i + 1) // int(count)])

    def serve_chunks(self):
        self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nTransfer-Encoding: chunked\r\n\r\n")
        for byte in LIST:
            self.wfile.write(b"1;x=y\r\n%c\r\n" % byte)
        self.wfile.write(b"0\r\nX: y\r\n\r\n")

    def serve_until_close(self):
        self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n" + LIST)
        self.close_connection = True

    def serve_cut(self, size):
        """So many bytes of an answer."""
        head = b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: %d\r\n\r\n" % len(LIST)
        self.wfile.write((head + LIST)[:int(size)])
        self.close_connection = True

    def serve_endless(self, part):
        """An answer of which one part never ends."""
        start = b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n"
        chunked = start + b"Transfer-Encoding: chunked\r\n\r\n"
        start, repeated = {
            "status": (b"HTTP/1.1 200 ", b"x"),
            "hints": (b"", b"HTTP/1.1 103 Early hints\r\nX: y\r\n\r\n"),
            "headers": (start, b"X: y\r\n"),
            "header": (start + b"X: ", b"y"),
            "body": (start + b"\r\n", b"<!-- -->"),
            "chunks": (chunked, b"1\r\n \r\n"),
            "extensions": (chunked + b"1;", b"x"),
            "trailers": (chunked + b"0\r\n", b"X: y\r\n"),
            "drip": (start + b"\r\n", None),
        }[part]
        self.wfile.write(start)
        while repeated is None:
            self.wfile.write(b" ")
            self.server.owner.drops += 1
            time.sleep(0.02)
        while True:
            self.wfile.write(repeated * 10_000)

    def serve_silent(self):
        self.rfile.read(1)  # until the other side gives up
        self.close_connection = True

    def serve_stuck(self):
        """Begins with the list and stops."""
        self.answer(LIST[:40], length=len(LIST))
        self.serve_silent()


class Listener(socketserver.ThreadingMixIn, http.server.HTTPServer):
    daemon_threads = True
    request_queue_size = 128

    def __init__(self, owner, certificate):
        super().__init__(("127.0.0.1", 0), Handler)
        self.owner = owner
        self.context = None
        if certificate:
            self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self.context.load_cert_chain(certificate)

    def finish_request(self, request, client_address):
        """On the connection's own thread, so that a client that is slow to greet holds up nobody else."""
        if self.context:
            request = self.context.wrap_socket(request, server_side=True)
        super().finish_request(request, client_address)
        if self.context:
            request.close()

    def server_bind(self):
        socketserver.TCPServer.server_bind(self)  # without the look-up of the host's own name
        self.server_name, self.server_port = "127.0.0.1", self.server_address[1]

    def handle_error(self, *_):
        pass  # clients that leave at any moment are what the tests are about


class Server:
    """Serves from its making to the end of the process."""

    def __init__(self, folder):
        make_certificates(folder)
        self.authority = os.path.join(os.path.abspath(folder), "authority.pem")
        self.list = LIST
        self.requests = []
        self.left = []  # the requests that have been dealt with
        self.drops = 0
        self.listeners = {"unprotected": Listener(self, None)}
        for name in ("good", "wrong-name", "expired", "self-signed"):
            self.listeners[name] = Listener(self, os.path.join(folder, f"{name}.pem"))
        for listener in self.listeners.values():
            threading.Thread(target=listener.serve_forever, daemon=True).start()
        # Takes connections and never says a word.
        self.mute = socket.create_server(("127.0.0.1", 0), backlog=128)

    def address(self, name, path):
        scheme = "http" if name == "unprotected" else "https"
        port = self.mute.getsockname()[1] if name == "mute" else self.listeners[name].server_port
        return f"{scheme}://127.0.0.1:{port}/{path}"

    def description(self):
        """The authority's file, and under each server's name its address."""
        names = [*self.listeners, "mute"]
        return {"authority": self.authority, **{name: self.address(name, "") for name in names}}


def main():
    server = Server(sys.argv[1])
    print(json.dumps(server.description()), flush=True)
    sys.stdin.read()


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""A speech engine as it should never be: answers the health check and the handshake of a session, then misbehaves.

usage: misbehaving_engine.py dies | hangs | floods | garbage | absurd
"""
import base64
import hashlib
import json
import socketserver
import struct
import sys

MODE = sys.argv[1]


def completed(word, start):
    words = [{"word": word, "start": start, "end": start + start, "speaker": 0}]
    return json.dumps({"type": "x.completed", "transcript": word, "words": words}).encode()


class Session(socketserver.StreamRequestHandler):
    def send(self, data):
        length = struct.pack("!B", len(data)) if len(data) < 126 else struct.pack("!BH", 126, len(data))
        self.wfile.write(b"\x81" + length + data)

    def receive(self):
        """Reads one frame and gives its opcode."""
        first, length = self.rfile.read(2)
        length &= 0x7F
        if length > 125:
            length = int.from_bytes(self.rfile.read(2 if length == 126 else 8), "big")
        self.rfile.read(4 + length)  # the mask and what is masked
        return first & 0x0F

    def handle(self):
        try:
            headers = {}
            while (line := self.rfile.readline()).strip():
                name, _, value = line.decode("latin-1").partition(": ")
                headers[name.lower()] = value.strip()
            if "upgrade" not in headers:
                self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
                return
            key = headers["sec-websocket-key"] + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11"
            self.wfile.write(b"HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                             b"Sec-WebSocket-Accept: " + base64.b64encode(hashlib.sha1(key.encode()).digest()) +
                             b"\r\n\r\n")
            self.misbehave()
        except (ValueError, ConnectionError):
            pass  # the other end is gone

    def misbehave(self):
        self.send(b'{"type": "session.created"}')
        self.receive()
        self.send(b'{"type": "session.updated"}')
        self.send(completed("fine", 0.2))
        blocks = 0
        while self.receive() != 8:
            blocks += 1
            if MODE == "hangs" or blocks < 10:
                continue
            if MODE == "dies":
                return
            if MODE == "garbage":
                self.send(b'{"type": "x.completed", "words": [{]')
            if MODE == "absurd":
                self.send(completed("far", 1e300))
            while MODE == "floods":
                self.send(json.dumps({"type": "x.delta", "delta": "again and again " * 8}).encode())


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = daemon_threads = True


Server(("127.0.0.1", 17863), Session).serve_forever()

#!/usr/bin/python3
"""A speech engine as it should never be: answers the health check and the handshake of a session, then misbehaves.

usage: misbehaving_engine.py dies | hangs | floods | garbage | absurd
"""
import asyncio
import base64
import hashlib
import json
import struct
import sys

GUID = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11"


def frame(text):
    data = text if isinstance(text, bytes) else json.dumps(text).encode()
    length = struct.pack("!B", len(data)) if len(data) < 126 else struct.pack("!BH", 126, len(data))
    return b"\x81" + length + data


async def receive(reader):
    """The opcode and the unmasked payload of the next frame."""
    first, second = await reader.readexactly(2)
    length = second & 0x7F
    if length == 126:
        length = struct.unpack("!H", await reader.readexactly(2))[0]
    elif length == 127:
        length = struct.unpack("!Q", await reader.readexactly(8))[0]
    mask = await reader.readexactly(4)
    payload = bytes(byte ^ mask[index % 4] for index, byte in enumerate(await reader.readexactly(length)))
    return first & 0x0F, payload


async def session(reader, writer, mode):
    writer.write(frame({"type": "session.created"}))
    await receive(reader)
    writer.write(frame({"type": "session.updated"}))
    words = [{"word": "fine", "start": 0.1, "end": 0.4, "speaker": 0}]
    writer.write(frame({"type": "x.completed", "transcript": "fine", "words": words}))
    blocks = 0
    while True:
        opcode, _ = await receive(reader)
        if opcode == 8:
            return
        blocks += 1
        if mode == "hangs" or blocks < 10:
            continue
        if mode == "dies":
            writer.transport.abort()
            return
        if mode == "garbage":
            writer.write(frame(b'{"type": "x.completed", "words": [{]'))
        if mode == "absurd":
            far = [{"word": "far", "start": 1e300, "end": 1e301, "speaker": 0}]
            writer.write(frame({"type": "x.completed", "transcript": "far", "words": far}))
        while mode == "floods":
            writer.write(frame({"type": "x.delta", "delta": "again and again " * 8}) * 100)
            await writer.drain()


async def serve(reader, writer, mode):
    try:
        request = (await reader.readuntil(b"\r\n\r\n")).decode("latin-1")
        headers = dict(line.lower().split(": ", 1) for line in request.split("\r\n")[1:] if ": " in line)
        if "upgrade" not in headers:
            writer.write(b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
            await writer.drain()
            return
        key = next(line.split(": ", 1)[1] for line in request.split("\r\n") if line.lower().startswith("sec-websocket-key"))
        accept = base64.b64encode(hashlib.sha1((key + GUID).encode()).digest()).decode()
        writer.write(f"HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                     f"Sec-WebSocket-Accept: {accept}\r\n\r\n".encode())
        await session(reader, writer, mode)
    except (asyncio.IncompleteReadError, ConnectionError):
        pass
    finally:
        writer.close()


async def main():
    server = await asyncio.start_server(lambda r, w: serve(r, w, sys.argv[1]), "127.0.0.1", 17863)
    async with server:
        await server.serve_forever()


asyncio.run(main())

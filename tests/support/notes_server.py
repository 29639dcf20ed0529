#!/usr/bin/python3
"""A strict stand-in for the model server that drafts notes. It looks at every byte of a request and says what is wrong.

usage: notes_server.py PORT|0 FOLDER

Prints "listening on PORT". It also takes the arguments with which the application starts the real server, and nothing
but them; FOLDER is then $NOTES_SERVER_FOLDER. In it are

key          the key, unless the arguments name another file
behaviour    JSON, read anew at each request; without it {"mode": "recipe"}:
    {"mode": "recipe", "recipes": ["true", "altered", ...]}   points made of the request's own sources, see points()
    {"mode": "answers", "answers": [...]}   what the model writes in the first and the second pass; no points if not said
    {"mode": "slow", "seconds": 2}   one of the above so much later; with "answers" if there are any
    with "unconstrained": true they may be what a decoder that is held to the schema could not have written
    {"mode": "length"}   the same, cut off at its end as if the room had run out
    {"mode": "garbage", "body": "..."}, {"mode": "status", "status": 500}, also with a "location"
    {"mode": "hang"}, {"mode": "exit"}   never answers; ends the process
log          "complaint: ..." for each thing that is wrong, "event: ..." when the client leaves a request
requests     a line of JSON for each request: headers without the key, body
timings      a line for each answer: the seconds between the request's last byte and the answer's
"""
import hashlib
import http.server
import json
import os
import pathlib
import re
import select
import socket
import socketserver
import stat
import sys
import threading
import time

ENGINE_ARGUMENTS = ("--model {} --alias qwen3.5-4b-q4km --host 127.0.0.1 --port 17864 --ctx-size 8192 --parallel 1 "
                    "--threads 4 --batch-size 256 --ubatch-size 128 --jinja --reasoning off --no-context-shift "
                    "--api-key-file {}").split()
HEADERS = {"host", "connection", "accept-encoding", "accept-language", "user-agent", "content-type", "content-length",
           "authorization"}
INSTRUCTION_SHA256 = "9f752caa645e877c5e06baf5cba3667ac042286679cdd2dc2f2ba1219173e2b1"
PASSES = {
    "actions": "This pass extracts ACTIONS ONLY. Return every explicit commitment or assigned task with kind action. Do "
               "not return summaries or decisions. Return an empty items array when there are no actual assignments or "
               "commitments.",
    "context": "This pass extracts DECISIONS and SUMMARY ONLY. Actions are handled separately. Preserve conditions and "
               "negations. Omit repetitive or irrelevant context."}
DATA = "Transcript sources (data only):\n"


def schema(kinds, assignment, most):
    quote = {"type": "object", "properties": {"source": {"type": "string"}, "quote": {"type": "string"}},
             "required": ["source", "quote"], "additionalProperties": False}
    item = {"type": "object", "additionalProperties": False,
            "properties": {"kind": {"type": "string", "enum": kinds}, "text": {"type": "string"},
                           "owner": {"type": assignment}, "due": {"type": assignment},
                           "evidence": {"type": "array", "items": quote, "minItems": 1, "maxItems": 4}},
            "required": ["kind", "text", "owner", "due", "evidence"]}
    return {"type": "object", "properties": {"items": {"type": "array", "items": item, "maxItems": most}},
            "required": ["items"], "additionalProperties": False}


SCHEMAS = {"actions": schema(["action"], ["string", "null"], 16),
           "context": schema(["summary", "decision"], "null", 6)}


def admits(form, value):
    """Whether a decoder that is held to the schema could have written the value."""
    types = {"object": dict, "array": list, "string": str, "null": type(None)}
    names = form["type"] if isinstance(form["type"], list) else [form["type"]]
    if not isinstance(value, tuple(types[name] for name in names)):
        return False
    if isinstance(value, dict):
        return set(value) == set(form["required"]) and all(admits(form["properties"][key], value[key]) for key in value)
    if isinstance(value, list):
        return (form.get("minItems", 0) <= len(value) <= form["maxItems"]
                and all(admits(form["items"], element) for element in value))
    return value in form.get("enum", [value])


class Complaint(Exception):
    pass


def require(condition, complaint):
    if not condition:
        raise Complaint(complaint)


def same(one, other):
    """As JSON: false is not 0."""
    return json.dumps(one, sort_keys=True) == json.dumps(other, sort_keys=True)


def decode(text, what):
    def members(pairs):
        require(len(dict(pairs)) == len(pairs), f"{what} has a key twice")
        return dict(pairs)
    try:
        return json.loads(text.decode() if isinstance(text, bytes) else text, object_pairs_hook=members)
    except ValueError as error:
        raise Complaint(f"{what} is no JSON: {error}") from None


def check_sources(text):
    sources = decode(text, "the list of sources")
    require(isinstance(sources, list) and sources, "there are no sources")
    require(not re.search(r"\s", re.sub(r'"(?:[^"\\]|\\.)*"', "", text)), "the sources have white space between them")
    for source in sources:
        require(list(source) == ["id", "speaker", "text"], f"a source has the keys {list(source)}")
        require(all(isinstance(value, str) for value in source.values()), "a source is not made of texts")
    first = int(sources[0]["id"][1:]) if re.fullmatch("S[1-9][0-9]*", sources[0]["id"]) else 0
    require(first and [source["id"] for source in sources] == [f"S{first + at}" for at in range(len(sources))],
            "the sources are not numbered in order")
    require(len(text.encode()) <= 6000 or len(sources) == 1, "the group of sources is too large")
    return sources


def check_body(body):
    """The pass and the sources of a request, everything else of which is as it should be."""
    request = decode(body, "the body")
    require(isinstance(request, dict), "the body is no object")
    messages, form = request.pop("messages", None), request.pop("response_format", None)
    require(same(request, {"model": "qwen3.5-4b-q4km", "stream": False, "temperature": 0, "max_tokens": 2200,
                           "chat_template_kwargs": {"enable_thinking": False}}), f"the body says {request}")
    require(isinstance(messages, list) and len(messages) == 2, "there are not two messages")
    for message, role in zip(messages, ("system", "user")):
        require(isinstance(message, dict) and set(message) == {"role", "content"} and message["role"] == role
                and isinstance(message["content"], str), f"the {role} message has another form")
    instruction, _, told = messages[0]["content"].rpartition("\n\n")
    require(hashlib.sha256(instruction.encode()).hexdigest() == INSTRUCTION_SHA256, "the instruction is another")
    name = next((name for name, text in PASSES.items() if text == told), None)
    require(name, "the instruction of the pass is another")
    require(same(form, {"type": "json_schema", "json_schema": {"name": "meeting_notes", "strict": True,
                                                               "schema": SCHEMAS[name]}}), "the schema is another")
    require(messages[1]["content"].startswith(DATA), "the sources are announced in other words")
    return name, check_sources(messages[1]["content"][len(DATA):])


def points(recipes, name, sources):
    """One point for each recipe, made of the first source, and of the second where two are needed."""
    cited, neighbour = sources[0], sources[min(1, len(sources) - 1)]
    words, said = cited["text"].split(), " ".join(cited["text"].split()[:8])
    made = {"true": (cited, said), "altered": (cited, "perhaps-" + said),
            "misattributed": (neighbour, said),                                                    # is repaired
            "straddling": (cited, " ".join(words[-4:] + neighbour["text"].split()[:4])),     # becomes two quotes
            "invented": (cited, "The board has approved the purchase of the lighthouse")}
    items = []
    for recipe in recipes or made:
        source, quote = made[recipe]
        kind = "action" if name == "actions" else ("decision", "summary")[len(items) % 2]
        items.append({"kind": kind, "text": said if recipe == "true" else f"{quote} ({recipe})", "owner": None,
                      "due": None, "evidence": [{"source": source["id"], "quote": quote}]})
    return {"items": items}


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True
    wbufsize = -1
    has_slot = False

    def log_message(self, *_):
        pass

    def do_GET(self):
        if self.path == "/health":
            self.send(200, {"status": "ok"})
        else:
            self.do_POST()

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length") or 0))
        begun, server = time.monotonic(), self.server
        in_time = server.slot.acquire(blocking=False)
        self.has_slot = in_time or server.slot.acquire(timeout=2)  # a client that just left may not be missed yet
        try:
            self.note_request(body)
            require(in_time or (self.has_slot and server.last_left), "a request came before the last one was answered")
            if self.reply(*self.checked(body)):
                server.write("timings", f"{time.monotonic() - begun:.6f}")
        except ConnectionError:
            self.leave(client_left=True)
        except Exception as error:  # also a behaviour that makes no sense
            complaint = error if isinstance(error, Complaint) else repr(error)
            server.write("log", f"complaint: {complaint}")
            self.send(400, {"error": str(complaint)})

    do_PUT = do_PATCH = do_DELETE = do_HEAD = do_OPTIONS = do_POST

    def leave(self, client_left):
        if self.has_slot:
            self.has_slot = False
            self.server.last_left = client_left
            self.server.slot.release()

    def note_request(self, body):
        given = self.headers.get("Authorization")
        self.key = "missing" if given is None else "right" if given == f"Bearer {self.server.key}" else "wrong"
        headers = {name.lower(): value for name, value in self.headers.items()}
        try:
            said = json.loads(body)
        except ValueError:
            said = None
        self.server.requests += 1
        self.number = self.server.requests
        self.server.write("requests", json.dumps({"headers": {**headers, "authorization": f"the key is {self.key}"},
                                                  "body": said}, ensure_ascii=False))

    def checked(self, body):
        require(self.command == "POST" and self.path == "/v1/chat/completions", f"{self.command} {self.path}")
        require(self.request_version == "HTTP/1.1", f"the protocol is {self.request_version}")
        names = [name.lower() for name in self.headers.keys()]
        require(len(set(names)) == len(names) and set(names) <= HEADERS, f"the headers are {names}")
        require(self.headers["Content-Type"] == "application/json", f"the type is {self.headers['Content-Type']}")
        require(self.headers.get("Accept-Encoding", "identity") == "identity", "a compressed answer is asked for")
        host = self.headers["Host"]
        require(host.rpartition(":")[0] in ("127.0.0.1", "localhost"), f"the host is {host}")
        require(self.key == "right", f"the key is {self.key}")
        name, sources = check_body(body)
        self.server.check_order(name, sources)
        return name, sources

    def reply(self, name, sources):
        """Answers as the behaviour says. False if the client was gone before."""
        file = self.server.folder / "behaviour"
        behaviour = json.loads(file.read_text(encoding="utf-8")) if file.exists() else {"mode": "recipe"}
        mode = behaviour["mode"]
        if mode == "exit":
            os._exit(1)
        if mode in ("hang", "slow") and self.client_left(behaviour["seconds"] if mode == "slow" else None):
            self.server.write("log", f"event: the client left request {self.number}")
            self.close_connection = True
            self.leave(client_left=True)
            return False
        if mode == "status":
            self.send(behaviour["status"], {"error": "as asked"}, behaviour.get("location"))
        elif mode == "garbage":
            self.send(200, behaviour["body"])
        else:
            content = json.dumps(points(behaviour.get("recipes"), name, sources), ensure_ascii=False)
            if "answers" in behaviour:
                content = (behaviour["answers"][name == "context":] or ['{"items": []}'])[0]
            if not behaviour.get("unconstrained"):
                require(admits(SCHEMAS[name], json.loads(content)), "the schema forbids the answer that was asked for")
            self.send(200, {"choices": [{"finish_reason": "length" if mode == "length" else "stop", "index": 0,
                                         "message": {"role": "assistant", "content": content}}],
                            "model": "qwen3.5-4b-q4km", "usage": {"completion_tokens": 1, "prompt_tokens": 1}})
        return True

    def client_left(self, seconds):
        """Waits so long, or without an end, unless the client goes away."""
        readable, _, _ = select.select([self.connection], [], [], seconds)
        try:
            require(not readable or not self.connection.recv(1, socket.MSG_PEEK), "more came behind the request")
        except ConnectionError:
            pass
        return bool(readable)

    def send(self, status, body, location=None):
        data = (body if isinstance(body, str) else json.dumps(body)).encode()
        self.leave(client_left=False)  # the next request may come as soon as the answer is out
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        if location:
            self.send_header("Location", location)
        self.end_headers()
        self.wfile.write(data)
        self.wfile.flush()


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True

    def __init__(self, port, folder, key_file):
        self.folder, self.key = folder, key_file.read_text().strip()
        self.slot, self.writing = threading.Lock(), threading.Lock()
        self.last_left = False        # of the request that held the slot last
        self.last = ("context", [])   # pass and sources of the last good request
        self.requests = 0
        super().__init__(("127.0.0.1", port), Handler)

    def write(self, file, line):
        with self.writing, open(self.folder / file, "a", encoding="utf-8") as out:
            out.write(line + "\n")

    def check_order(self, name, sources):
        last_name, last_sources = self.last
        if name == "context":
            require(self.last == ("actions", sources), "the second pass is not about the sources of the first")
        else:
            follows = last_name == "context" and last_sources and int(last_sources[-1]["id"][1:]) + 1
            require(int(sources[0]["id"][1:]) in (1, follows), "the sources do not follow those of the last request")
        self.last = (name, sources)


def engine_key_file(arguments):
    """The key file, out of the arguments of the real server."""
    require(len(arguments) == 24, f"there are {len(arguments)} arguments")
    for expected, given in zip(ENGINE_ARGUMENTS, arguments):
        require(expected in ("{}", given), f"an argument is {given}, not {expected}")
    model, key_file = pathlib.Path(arguments[1]), pathlib.Path(arguments[23])
    require(model.is_file(), f"there is no model at {model}")
    require(key_file.is_file() and stat.S_IMODE(key_file.stat().st_mode) == 0o600, "the key file is not private")
    key = key_file.read_text().strip()
    require(key and not any(key in argument for argument in arguments), "an argument holds the key")
    return key_file


def main():
    if sys.argv[1] == "--model":
        port, folder = 17864, pathlib.Path(os.environ["NOTES_SERVER_FOLDER"])
        try:
            key_file = engine_key_file(sys.argv[1:])
        except Complaint as complaint:
            with open(folder / "log", "a", encoding="utf-8") as log:
                log.write(f"complaint: {complaint}\n")
            sys.exit(f"complaint: {complaint}")
    else:
        port, folder = int(sys.argv[1]), pathlib.Path(sys.argv[2])
        key_file = folder / "key"
    with Server(port, folder, key_file) as server:
        print(f"listening on {server.server_address[1]}", flush=True)
        server.serve_forever()


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Writes a spoken dialogue of about a minute: the tracks of a recorded call, their mix, and what was said.

    make_dialogue.py --name slt-rms --out FOLDER      (see dialogues.json for the names)

FOLDER receives microphone.wav, call.wav and mixed.wav, their sum, all 16 kHz mono 16-bit and of one length, and
reference.json: {"duration" in seconds, "turns": [{"speaker", "text"}]}. The output is the same on every run.
"""
import argparse
import array
import json
import pathlib
import subprocess
import tempfile
import wave

RATE = 16000
LEAD = 0.6                                                       # seconds before the first turn and after the last
PAUSES = (0.6, 0.4, 1.1, 0.3, 0.8, 0.5, 1.2, 0.35, 0.7, 1.0)     # between turns, in this order, again and again
PEAK = 0.6                                                       # of full scale, for every turn
FLOOR = 0.01                                                     # of the turn's peak: below it is silence


def speak(voice, text, folder):
    """The sound of one turn without the silence around it, at PEAK."""
    path = folder / "turn.wav"
    subprocess.run(["flite", "-voice", voice, "-t", text, "-o", str(path)], check=True)
    with wave.open(str(path)) as reader:
        samples = array.array("h", reader.readframes(reader.getnframes()))
    peak = max(abs(sample) for sample in samples)
    loud = [index for index, sample in enumerate(samples) if abs(sample) > peak * FLOOR]
    gain = PEAK * 32767 / peak
    return array.array("h", (int(sample * gain) for sample in samples[loud[0]:loud[-1] + 1]))


def write_wav(path, samples):
    with wave.open(str(path), "wb") as writer:
        writer.setparams((1, 2, RATE, len(samples), "NONE", ""))
        writer.writeframes(samples.tobytes())


def make(script, out):
    out.mkdir(parents=True, exist_ok=True)
    silence = lambda frames: array.array("h", bytes(2 * frames))
    lead = int(LEAD * RATE)
    tracks = {name: silence(lead) for name in ("microphone", "call", "mixed")}
    with tempfile.TemporaryDirectory() as scratch:
        for number, (voice, text) in enumerate(script["turns"]):
            samples = speak(voice, text, pathlib.Path(scratch))
            quiet = "call" if voice == script["microphone"] else "microphone"
            pause = lead if number + 1 == len(script["turns"]) else int(PAUSES[number % len(PAUSES)] * RATE)
            for name, track in tracks.items():
                track.extend(silence(len(samples)) if name == quiet else samples)
                track.extend(silence(pause))
    for name, track in tracks.items():
        write_wav(out / f"{name}.wav", track)
    reference = {"duration": round(len(tracks["mixed"]) / RATE, 3),
                 "turns": [{"speaker": voice, "text": text} for voice, text in script["turns"]]}
    (out / "reference.json").write_text(json.dumps(reference, indent=1) + "\n")


def main():
    scripts = json.loads((pathlib.Path(__file__).parent / "dialogues.json").read_text())
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--name", choices=sorted(scripts), required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    make(scripts[arguments.name], arguments.out)


if __name__ == "__main__":
    main()

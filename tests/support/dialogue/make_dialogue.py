#!/usr/bin/env python3
"""Writes a spoken dialogue of about a minute: the tracks of a recorded call, their mix, and what was said.

    make_dialogue.py --name slt-rms --out FOLDER      (see dialogues.json for the names)

FOLDER receives, all 16 kHz mono 16-bit and of one length:
    microphone.wav   the voice at the microphone
    call.wav         the voices in the call
    mixed.wav        the sum of both
    reference.json   {"name", "duration", "turns": [{"speaker", "start", "end", "text"}]}
Times are seconds. A turn's times are those of its sound, without the silence around it. The output is the same on every
run.
"""
import argparse
import array
import json
import pathlib
import subprocess
import sys
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
        if (reader.getframerate(), reader.getnchannels(), reader.getsampwidth()) != (RATE, 1, 2):
            sys.exit(f"flite's voice {voice} is not 16 kHz mono 16-bit")
        samples = array.array("h", reader.readframes(reader.getnframes()))
    peak = max(abs(sample) for sample in samples)
    loud = [index for index, sample in enumerate(samples) if abs(sample) > peak * FLOOR]
    gain = PEAK * 32767 / peak
    return array.array("h", (int(sample * gain) for sample in samples[loud[0]:loud[-1] + 1]))


def write_wav(path, samples):
    with wave.open(str(path), "wb") as writer:
        writer.setnchannels(1)
        writer.setsampwidth(2)
        writer.setframerate(RATE)
        writer.writeframes(samples.tobytes())


def make(name, script, out):
    out.mkdir(parents=True, exist_ok=True)
    position, turns, placed = int(LEAD * RATE), [], []
    with tempfile.TemporaryDirectory() as scratch:
        for number, (voice, text) in enumerate(script["turns"]):
            samples = speak(voice, text, pathlib.Path(scratch))
            start, end = position / RATE, (position + len(samples)) / RATE
            turns.append({"speaker": voice, "start": round(start, 3), "end": round(end, 3), "text": text})
            placed.append((voice, position, samples))
            position += len(samples) + int(PAUSES[number % len(PAUSES)] * RATE)
    total = placed[-1][1] + len(placed[-1][2]) + int(LEAD * RATE)
    tracks = {"microphone": array.array("h", bytes(2 * total)), "call": array.array("h", bytes(2 * total))}
    for voice, position, samples in placed:
        track = tracks["microphone" if voice == script["microphone"] else "call"]
        track[position:position + len(samples)] = samples
    # Turns never overlap, so the sum cannot clip.
    tracks["mixed"] = array.array("h", (a + b for a, b in zip(tracks["microphone"], tracks["call"])))
    for track, samples in tracks.items():
        write_wav(out / f"{track}.wav", samples)
    reference = {"name": name, "duration": round(total / RATE, 3), "turns": turns}
    (out / "reference.json").write_text(json.dumps(reference, indent=1) + "\n")


def main():
    scripts = json.loads((pathlib.Path(__file__).parent / "dialogues.json").read_text())
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--name", choices=sorted(scripts), required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    make(arguments.name, scripts[arguments.name], arguments.out)


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""Two hours of 48 kHz stereo brought to 16 kHz mono: the conversion of the import against the ffmpeg program, whole
processes in turns, by time and by peak memory; and what is left of tones above 8 kHz in what it writes. The files are
made once and kept beside the program.

usage: convert.py PROGRAM
"""
import array
import math
import os
import pathlib
import statistics
import subprocess
import sys
import time

TIME_LIMITS = {"m4a": 0.95, "mp3": 0.95, "opus": 0.95, "flac": 1.0}
MEMORY_LIMIT = 0.75
ALIAS_LIMIT = -120
MINUTES = 120
ENCODERS = {"m4a": ["aac", "-b:a", "128k"], "mp3": ["libmp3lame", "-b:a", "128k"], "opus": ["libopus", "-b:a", "64k"]}
# A voice that is never the same twice: gliding tones with harmonics over noise in syllables.
VOICE = ("aevalsrc=0.15*sin(2*PI*220*t)*(1+sin(2*PI*3*t))+0.1*sin(2*PI*1760*t+3*sin(2*PI*5*t))"
         "+0.1*(random(0)-0.5)*(1+sin(2*PI*4*t))|0.2*sin(2*PI*330*t)+0.1*(random(1)-0.5):s=48000:d=60")
TONES = {8100: 7900, 8700: 7300, 9900: 6100, 12300: 3700, 15100: 900, 18900: 2900, 23700: 7700}  # Hz: where it folds to


def ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-y", *map(str, arguments)], check=True)


def make(folder, kind):
    """A minute's packets repeated, which is quick; FLAC counts its frames, so it is encoded whole."""
    made = folder / f"two-hours.{kind}"
    if made.exists():
        return made
    minute = folder / "minute.wav"
    if not minute.exists():
        ffmpeg("-f", "lavfi", "-i", VOICE, minute)
    part = folder / f"part.{kind}"
    if kind in ENCODERS:
        encoded = folder / f"minute.{kind}"
        ffmpeg("-i", minute, "-c:a", *ENCODERS[kind], encoded)
        ffmpeg("-stream_loop", MINUTES - 1, "-i", encoded, "-c", "copy", part)
    else:
        ffmpeg("-stream_loop", MINUTES - 1, "-i", minute, part)
    return part.rename(made)


def run(*command):
    """Seconds and peak memory in KiB of a process."""
    begin = time.monotonic()
    pid = os.posix_spawnp(command[0], list(map(str, command)), os.environ)
    _, status, usage = os.wait4(pid, 0)
    if status:
        sys.exit(f"{command[0]} failed")
    return time.monotonic() - begin, usage.ru_maxrss


def compare(program, source, folder):
    """Ratios of time and memory; more pairs where the first leaves doubt."""
    target, limit = folder / "out.wav", TIME_LIMITS[source.suffix[1:]]
    pairs = []
    while len(pairs) < 3:
        target.unlink(missing_ok=True)
        ours = run(program, source, target)
        target.unlink()
        theirs = run("ffmpeg", "-v", "error", "-nostdin", "-i", source, "-ac", 1, "-ar", 16000, "-c:a", "pcm_s16le", target)
        pairs.append((ours, theirs))
        if len(pairs) == 1 and ours[0] / theirs[0] < 0.9 * limit:
            break
    target.unlink()
    time_ratio = statistics.median(ours[0] / theirs[0] for ours, theirs in pairs)
    memory_ratio = max(ours[1] / theirs[1] for ours, theirs in pairs)
    ours, theirs = pairs[0]
    met = time_ratio <= limit and memory_ratio <= MEMORY_LIMIT
    print(f"converting two hours of {source.suffix[1:]}: {ours[0]:.1f} s, ffmpeg {theirs[0]:.1f} s: {time_ratio:.2f}x (at "
          f"most {limit}x); peak {ours[1] / 1024:.0f} MiB, ffmpeg {theirs[1] / 1024:.0f} MiB: {memory_ratio:.2f}x (at most "
          f"{MEMORY_LIMIT}x){'' if met else '  MISSED'}", flush=True)
    return met


def strength(samples, frequency):
    """Amplitude of one frequency, by Goertzel's recursion over whole periods."""
    turn = 2 * math.cos(2 * math.pi * frequency / 16000)
    last = before = 0.0
    for sample in samples:
        last, before = sample + turn * last - before, last
    return 2 * math.sqrt(max(0.0, last * last + before * before - turn * last * before)) / len(samples)


def alias(program, folder):
    """The noise keeps what is below one step of 16 bits from being rounded away."""
    source, target = folder / "tones.wav", folder / "tones-16k.wav"
    expression = "+".join(f"0.12*sin(2*PI*{tone}*t)" for tone in TONES) + "+0.0002*(random(0)-0.5)"
    ffmpeg("-f", "lavfi", "-i", f"aevalsrc={expression}:s=48000:d=40", "-c:a", "pcm_f32le", source)
    run(program, source, target)
    samples = array.array("h", target.read_bytes()[44 + 2 * 16000:][:2 * 16000 * 38])
    worst = max((20 * math.log10(strength(samples, folded) / (0.12 * 32768)), tone) for tone, folded in TONES.items())
    met = worst[0] <= ALIAS_LIMIT
    print(f"alias of tones from 8.1 to 23.7 kHz: at most {worst[0]:.0f} dB, of {worst[1]} Hz (at most {ALIAS_LIMIT} dB)"
          f"{'' if met else '  MISSED'}")
    return met


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    folder = program.parent / "audio"
    folder.mkdir(exist_ok=True)
    results = [compare(program, make(folder, kind), folder) for kind in TIME_LIMITS]
    results.append(alias(program, folder))
    return 0 if all(results) else 1


sys.exit(main())

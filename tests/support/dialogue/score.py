#!/usr/bin/env python3
"""Scores a transcript against a dialogue's reference.json: word error rate, and words given to the right speaker.

    score.py [--max-wer PERCENT] [--min-speaker-accuracy PERCENT] REFERENCE TRANSCRIPT

TRANSCRIPT is a meeting.json (its "turns"), or an engine's answer (its "words"). The exit status is 1 when it misses a
limit. Speakers: among the words that stand for a word of the reference (equal or not), the share whose speaker is right
under the best one-to-one mapping of labels to voices; words without a speaker are wrong.
"""
import argparse
import collections
import itertools
import json
import pathlib
import re
import sys


def labelled_words(path):
    """[(word, speaker label or None)] of a reference, a meeting or an engine's answer."""
    document = json.loads(path.read_text())
    texts = [(turn.get("originalText", turn.get("text")), turn["speaker"]) for turn in document.get("turns", [])]
    texts += [(word["word"], word.get("speaker")) for word in document.get("words", [])]
    return [(word, speaker) for text, speaker in texts
            for word in re.findall(r"[a-z0-9]+(?:'[a-z]+)*", text.lower().replace("\u2019", "'"))]


def align(said, heard):
    """The number of errors of a cheapest alignment, and the pairs of indices that stand for each other in it."""
    cost = [[i + j for j in range(len(heard) + 1)] for i in range(len(said) + 1)]
    for i, j in itertools.product(range(1, len(said) + 1), range(1, len(heard) + 1)):
        cost[i][j] = min(cost[i - 1][j - 1] + (said[i - 1][0] != heard[j - 1][0]), cost[i - 1][j] + 1, cost[i][j - 1] + 1)
    pairs, i, j = [], len(said), len(heard)
    while i and j:
        if cost[i][j] == cost[i - 1][j - 1] + (said[i - 1][0] != heard[j - 1][0]):
            i, j = i - 1, j - 1
            pairs.append((i, j))
        elif cost[i][j] == cost[i - 1][j] + 1:
            i -= 1
        else:
            j -= 1
    return cost[-1][-1], pairs


def best_mapping(counts):
    """The words that are right under the best mapping of labels to voices; counts[(label, voice)]."""
    labels, voices = sorted({pair[0] for pair in counts}), sorted({pair[1] for pair in counts})
    voices += [None] * (len(labels) - len(voices))
    return max(sum(counts[pair] for pair in zip(labels, order)) for order in itertools.permutations(voices, len(labels)))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--max-wer", type=float, default=100)
    parser.add_argument("--min-speaker-accuracy", type=float, default=0)
    parser.add_argument("reference", type=pathlib.Path)
    parser.add_argument("transcript", type=pathlib.Path)
    arguments = parser.parse_args()
    said, heard = labelled_words(arguments.reference), labelled_words(arguments.transcript)
    errors, pairs = align(said, heard)
    counts = collections.Counter((heard[j][1], said[i][1]) for i, j in pairs if heard[j][1] is not None)
    wrong = 100 * errors / len(said)
    right = 100 * best_mapping(counts) / len(pairs) if counts else 0
    print(f"{len(said)} words, {wrong:.1f} % wrong, {right:.1f} % with the right speaker")
    sys.exit(wrong > arguments.max_wer or right < arguments.min_speaker_accuracy)


if __name__ == "__main__":
    main()

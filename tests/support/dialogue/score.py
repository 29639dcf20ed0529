#!/usr/bin/env python3
"""Scores a transcript against a dialogue's reference.json: word error rate, and words given to the right speaker.

    score.py [--max-wer PERCENT] [--min-speaker-accuracy PERCENT] [--show] REFERENCE TRANSCRIPT [REFERENCE TRANSCRIPT ...]

TRANSCRIPT is a meeting.json (its "turns"), or an engine's answer (its "words"). The exit status is 1 when any pair
misses a limit. Text is compared in lower case without punctuation. Speakers: among the words of the transcript that
stand for a word of the reference (equal or not), the share whose speaker is right under the best one-to-one mapping of
the transcript's labels to the reference's voices; words without a speaker are wrong.
"""
import argparse
import collections
import json
import pathlib
import re
import sys


def normalised(text):
    return re.findall(r"[a-z0-9]+(?:'[a-z]+)*", text.lower().replace("\u2019", "'"))


def labelled_words(document):
    """[(word, speaker label or None)] of a reference, a meeting or an engine's answer."""
    if "turns" in document:
        turns = document["turns"]
        return [(word, turn["speaker"]) for turn in turns
                for word in normalised(turn.get("editedText", turn.get("originalText", turn.get("text", ""))))]
    return [(word, entry.get("speaker")) for entry in document["words"] for word in normalised(entry["word"])]


def align(reference, hypothesis):
    """Pairs (index or None, index or None) of a cheapest alignment."""
    rows, columns = len(reference) + 1, len(hypothesis) + 1
    cost = [[0] * columns for _ in range(rows)]
    for i in range(rows):
        for j in range(columns):
            if i == 0 or j == 0:
                cost[i][j] = i + j
            else:
                cost[i][j] = min(cost[i - 1][j - 1] + (reference[i - 1] != hypothesis[j - 1]),
                                 cost[i - 1][j] + 1, cost[i][j - 1] + 1)
    pairs, i, j = [], rows - 1, columns - 1
    while i or j:
        if i and j and cost[i][j] == cost[i - 1][j - 1] + (reference[i - 1] != hypothesis[j - 1]):
            i, j = i - 1, j - 1
            pairs.append((i, j))
        elif i and cost[i][j] == cost[i - 1][j] + 1:
            i -= 1
            pairs.append((i, None))
        else:
            j -= 1
            pairs.append((None, j))
    return pairs[::-1]


def best_mapping(counts):
    """The one-to-one mapping of labels to voices with the most words; counts[(label, voice)]."""
    labels, voices = sorted({pair[0] for pair in counts}), sorted({pair[1] for pair in counts})
    best = {frozenset(): (0, {})}                      # voices used so far -> words, mapping
    for label in labels:
        grown = dict(best)
        for used, (words, mapping) in best.items():
            for voice in voices:
                total = words + counts.get((label, voice), 0)
                key = used | {voice}
                if voice not in used and total > grown.get(key, (-1,))[0]:
                    grown[key] = (total, {**mapping, label: voice})
        best = grown
    return max(best.values(), key=lambda entry: entry[0])


def score(reference, transcript):
    said, heard = labelled_words(reference), labelled_words(transcript)
    pairs = align([word for word, _ in said], [word for word, _ in heard])
    result = collections.Counter(words=len(said))
    counts = collections.Counter()
    for i, j in pairs:
        if j is None:
            result["deleted"] += 1
        elif i is None:
            result["inserted"] += 1
        else:
            result["substituted"] += said[i][0] != heard[j][0]
            result["aligned"] += 1
            if heard[j][1] is not None:
                counts[(str(heard[j][1]), said[i][1])] += 1
    right, mapping = best_mapping(counts)
    errors = result["substituted"] + result["deleted"] + result["inserted"]
    return {**{key: result[key] for key in ("words", "substituted", "deleted", "inserted")},
            "wer": 100 * errors / max(1, len(said)), "speakerAccuracy": 100 * right / max(1, result["aligned"]),
            "labels": len({label for label, _ in counts}), "mapping": mapping, "pairs": pairs, "said": said, "heard": heard}


def show(result):
    for i, j in result["pairs"]:
        said = result["said"][i] if i is not None else ("***", "")
        heard = result["heard"][j] if j is not None else ("***", None)
        wrong_word = said[0] != heard[0]
        wrong_voice = i is not None and j is not None and result["mapping"].get(str(heard[1])) != said[1]
        if wrong_word or wrong_voice:
            print(f"  {said[0]:>14} {said[1]:>4} | {heard[0]:<14} {heard[1]}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--max-wer", type=float)
    parser.add_argument("--min-speaker-accuracy", type=float)
    parser.add_argument("--show", action="store_true", help="print every word that is wrong or at the wrong speaker")
    parser.add_argument("files", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()
    if len(arguments.files) % 2:
        parser.error("files come in pairs: a reference, its transcript")
    failed = False
    print(f"{'dialogue':<14}{'words':>6}{'wrong':>6}{'lost':>6}{'added':>6}{'WER %':>8}{'speakers':>10}{'right %':>9}")
    for reference_path, transcript_path in zip(arguments.files[::2], arguments.files[1::2]):
        reference = json.loads(reference_path.read_text())
        result = score(reference, json.loads(transcript_path.read_text()))
        print(f"{reference.get('name', ''):<14}{result['words']:>6}{result['substituted']:>6}{result['deleted']:>6}"
              f"{result['inserted']:>6}{result['wer']:>8.1f}{result['labels']:>10}{result['speakerAccuracy']:>9.1f}")
        if arguments.show:
            show(result)
        if arguments.max_wer is not None and result["wer"] > arguments.max_wer:
            print(f"  more than {arguments.max_wer:g} % of the words are wrong")
            failed = True
        if arguments.min_speaker_accuracy is not None and result["speakerAccuracy"] < arguments.min_speaker_accuracy:
            print(f"  less than {arguments.min_speaker_accuracy:g} % of the words have the right speaker")
            failed = True
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()

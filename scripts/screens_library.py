"""Libraries for the pictures of scripts/screens.py. Ids, words and lengths are the same in every run; only the days
follow the calendar, so that there is always something of yesterday."""
import array
import datetime
import hashlib
import json
import math
import random
import uuid

NOON = datetime.datetime.now().replace(hour=12, minute=0, second=0, microsecond=0).astimezone()
EPOCH = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)

SENTENCES = """Let's begin with the numbers, because everybody has asked about them since Monday.
Sign-ups are up by a tenth, but half of them stop at the second step.
I would rather ship the small fix on Friday than the whole redesign in March.
Can we see what people were doing before they gave up?
Yes. Most of them were asked for a card before they had seen anything.
Then the card goes to the end, and we measure for two weeks.
I can have that ready by Thursday evening if nobody touches the form meanwhile.
Who writes the text? The last one sounded like a contract.
Mara does, and Jonas reads it with two customers before it goes out.
One more thing: support wants to know in advance, not on the day.
Agreed. I'll send them the plan with the screens after this call.
Is there anything about the invoices that we should know?
The export was wrong for leap years, that is fixed and deployed.
Good. So we ship on Friday, we look at the numbers in two weeks, and we talk about the redesign then.
Right, right.
Thanks, everybody.""".split("\n")
RIGHT_TO_LEFT = """שלום לכולם, בואו נתחיל עם המספרים של השבוע האחרון.
ההרשמות עלו בעשרה אחוזים, אבל חצי מהאנשים עוצרים בשלב השני.
אפשר לראות מה הם עשו לפני שוויתרו?
نعم، طُلبت بطاقة الدفع من معظمهم قبل أن يروا أي شيء.
إذن ننقل البطاقة إلى النهاية ونقيس النتائج لمدة أسبوعين.
سأرسل خطة Zelvik 2.0 إلى فريق الدعم يوم الخميس مع لقطات الشاشة.
מצוין, נדבר שוב ביום שישי ב־14:30.""".split("\n")
EAST_ASIAN = """それでは、先週の数字から始めましょう。
登録数は一割増えましたが、半分の人が二番目の手順で止まっています。
他们在放弃之前都做了些什么？
大多数人在看到任何内容之前就被要求输入银行卡号。
그렇다면 카드는 맨 끝으로 옮기고 이 주 동안 측정해 봅시다.
金曜日に小さな修正を出荷し、三月に全体のデザインを見直します。""".split("\n")

TITLES = ["Weekly planning", "Sign-up numbers", "Interview with a customer", "Design review", "Budget for the spring",
          "One to one with Mara", "Roadmap", "Support handover", "Retrospective"]
LONG = "Budget talk with finance and the regional leads about the second half of the year, what follows from it, and who tells whom"
SCRIPTS = [LONG, "תכנון שבועי עם צוות המוצר", "اجتماع التخطيط الأسبوعي مع فريق المنتج", "週次計画会議", "每周计划会议：注册数据",
           "주간 계획 회의", "Zelvik 2.0 מול הלקוח", "Unbreakable" * 14, "Ζwiązek Żółć Ñandú Ångström Ệ", "🎙️ Podcast, Folge 12",
           "سؤال عن الميزانية الجديدة للنصف الثاني من السنة مع قادة المناطق والمالية وكل من يهمه الأمر هذا العام"]
SAVED = "Audio saved · live transcript"
STATUSES = [SAVED, SAVED, "Transcribed", SAVED, "Audio saved · retry transcription", SAVED, "Transcription needs attention",
            SAVED, "Interrupted · check saved audio and retry"]


def identifier(*parts):
    return str(uuid.uuid5(uuid.NAMESPACE_OID, "/".join(map(str, parts)))).upper()


def seconds(moment):
    return (moment - EPOCH).total_seconds()


def turns(key, sentences, count, pause=1):
    chance, place, result = random.Random(str(key)), 0, []
    for index in range(count):
        length = chance.randint(4, 14)
        result.append({"id": identifier(key, index), "start": place, "end": place + length,
                       "speaker": f"Speaker {chance.randint(1, 3)}", "originalText": sentences[index % len(sentences)]})
        place += length + pause
    return result


def draft(meeting, current):
    """A draft of the transcript as it stands, or of a former one."""
    names = meeting.get("speakerNames", {})
    sources = [{"id": f"S{index + 1}", "turnID": turn["id"], "start": turn["start"], "end": turn["end"],
                "speaker": names.get(turn["speaker"], turn["speaker"]), "text": turn.get("editedText", turn["originalText"])}
               for index, turn in enumerate(meeting["turns"])]
    text = json.dumps(sources, ensure_ascii=False, sort_keys=True, separators=(",", ":"))
    quote = lambda number: {"source": f"S{number}", "quote": sources[number - 1]["text"]}
    items = [{"kind": "summary", "text": "Sign-ups grow, but half of the people stop where a card is asked for.", "evidence": [quote(2), quote(5)]},
             {"kind": "decision", "text": "The card is asked for at the end; the effect is measured for two weeks.", "evidence": [quote(6)]},
             {"kind": "decision", "text": "The small fix ships on Friday, before the redesign.", "evidence": [quote(3)]},
             {"kind": "action", "text": "Send the plan with the screens to support.", "owner": "Mara Lind", "evidence": [quote(11)]},
             {"kind": "action", "text": "Have the form ready.", "due": "by Thursday evening", "evidence": [quote(7)]}]
    return {"items": items, "sources": sources, "transcriptHash": hashlib.sha256(text.encode()).hexdigest() if current else "0" * 64,
            "model": "Qwen3.5-4B", "createdAt": meeting["createdAt"] + 900, "chunks": 1,
            "promptVersion": "grounded-notes-v7-repaired-quotes", "droppedItems": 2}


def meeting(key, title, days_ago, sentences=SENTENCES, count=16, status=SAVED, **fields):
    hour = datetime.timedelta(hours=days_ago % 5)
    return {"id": identifier("meeting", key), "title": title, "createdAt": seconds(NOON - datetime.timedelta(days=days_ago) - hour),
            "turns": turns(key, sentences, count), "notes": "", "status": status,
            "speakerNames": {"Speaker 1": "Mara Lind", "Speaker 2": "Jonas Weber"}, **fields}


def wav(path, length):
    """A sound that swells and fades like talk: 16 kHz, mono."""
    chance, frames = random.Random(1), array.array("h")
    tone = [math.sin(2 * math.pi * 200 * frame / 16000) for frame in range(1600)]
    loudness = 0
    while len(frames) < length * 16000:
        loudness = 0.6 * loudness + chance.choice([0, 900, 4000, 9000])
        frames.extend(int(loudness * sample) for sample in tone)
    data = frames.tobytes()
    header = b"RIFF" + (len(data) + 36).to_bytes(4, "little") + b"WAVEfmt " + bytes.fromhex(
        "10000000 0100 0100 803e0000 007d0000 0200 1000") + b"data" + len(data).to_bytes(4, "little")
    path.write_bytes(header + data)


def store(root, record, versions=()):
    folder = root / record["id"]
    (folder / "history").mkdir(parents=True)
    (folder / "meeting.json").write_text(json.dumps(record, ensure_ascii=False), encoding="utf-8")
    for index, version in enumerate(versions):
        (folder / "history" / f"{identifier(record['id'], 'version', index)}.json").write_text(json.dumps(version), encoding="utf-8")
    if record.get("audioFilename"):
        wav(folder / record["audioFilename"], record["turns"][-1]["end"] if record["turns"] else 20)


def few(root):
    """Some of everything; gives the meetings that pictures ask for by their keys."""
    full = meeting("full", TITLES[1], 1, audioFilename="imported.wav", attendees=["Mara Lind", "Jonas Weber"],
                   notes="Ask about the invoices.\nSend the invitation for Friday.")
    full["turns"][2]["editedText"] = "I would rather ship the small fix on Friday than the redesign in March."
    full["generatedNotes"] = draft(full, current=True)
    older = {**full, "turns": full["turns"][:9], "notes": "Ask about the invoices."}
    records = {"full": full, "live": meeting("live", TITLES[0], 1, status="Recording · live transcript"),
               "listening": meeting("listening", "Roadmap", 2, count=0, status="Recording · live transcript"),
               "empty": meeting("empty", "Notes only", 2, count=0, status="Audio saved · retry transcription", notes="Call back on Tuesday.")}
    outdated = records["outdated"] = meeting("outdated", "Interview with a customer", 2)
    outdated["generatedNotes"] = draft(outdated, current=False)
    records["imported"] = meeting("imported", "Design review", 3, status="Import needs attention")
    records["retry"] = meeting("retry", "Support handover", 8, count=3, status="Transcription needs attention", audioFilename="imported.wav")
    for name, record in records.items():
        store(root, record, [older, {**older, "generatedNotes": draft(outdated, False)}] if name == "full" else [])
    return records


def scripts(root):
    """Long titles and words of other scripts."""
    records = {}
    for index, title in enumerate(SCRIPTS):
        sentences = RIGHT_TO_LEFT if index in (1, 2, 6, 10) else EAST_ASIAN if index in (3, 4, 5) else SENTENCES
        names = {"Speaker 1": "נועה לוי", "Speaker 2": "عمر حداد"} if sentences is RIGHT_TO_LEFT else \
            {"Speaker 1": "佐藤 美咲", "Speaker 2": "王小明"} if sentences is EAST_ASIAN else {"Speaker 1": "Maximiliane von und zu Hohenstein-Waldburg"}
        records[index] = meeting(("scripts", index), title, 1 + index // 4, sentences, 2 * len(sentences) if sentences is not SENTENCES else 16,
                                 STATUSES[index % len(STATUSES)], speakerNames=names, attendees=list(names.values()) * 2,
                                 notes="\n".join(sentences[:3]))
    for record in records.values():
        store(root, record, [{**record, "turns": record["turns"][:4]}])
    return records


def many(root, count=3000):
    for index in range(count):
        title = SCRIPTS[index % len(SCRIPTS)] if index % 17 == 5 else TITLES[index * 7 % len(TITLES)]
        store(root, meeting(("many", index), title, 1 + index // 4, count=3, status=STATUSES[index % len(STATUSES)]))


def broken(root):
    few(root)
    for index in range(2):
        folder = root / identifier("broken", index)
        folder.mkdir()
        (folder / "meeting.json").write_text("{", encoding="utf-8")


def deleted(root):
    """An ordinary library with meetings in the trash beside it."""
    few(root)
    trash = root.parent / "deleted-meetings"
    for index, title in enumerate(["Weekly planning", LONG, SCRIPTS[2], "週次計画会議", "One to one with Mara"]):
        record = meeting(("deleted", index), title, 20 + index)
        store(trash, record)
        marker = {"deletedAt": seconds(NOON - datetime.timedelta(days=1 + 7 * index))}
        (trash / record["id"] / "deleted.json").write_text(json.dumps(marker), encoding="utf-8")


def empty(root):
    root.mkdir(parents=True)


MAKERS = {"empty": empty, "few": few, "many": many, "scripts": scripts, "broken": broken, "deleted": deleted}


def make(name, folder):
    """Writes the library of that name into `folder`/meetings; gives the records that pictures ask for."""
    return MAKERS[name](folder / "meetings") or {}

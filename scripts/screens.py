#!/usr/bin/python3
"""Writes pictures of every screen into a folder: `screens.py BUILD FOLDER [PART-OF-A-NAME]`, after a build.

What --export-ui can show is written by such runs without a display. The rest is driven with keys in the real window
under an X server of its own. A picture is called SCREEN_VARIANT.png; index.html shows them all."""
import concurrent.futures
import dataclasses
import html
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import screens_library

HERE = pathlib.Path(__file__).resolve().parent
SESSION = HERE.parent / "tests/support/private-session"


@dataclasses.dataclass(frozen=True)
class Variant:
    width: int = 1280
    height: int = 820
    scale: int = 1
    dark: bool = False
    large_print: bool = False

    def environment(self):
        words = {"QT_FONT_DPI": "192", "QT_ENABLE_HIGHDPI_SCALING": "0"} if self.large_print else {}
        return {"QT_QUICK_BACKEND": "software", "VARNET_NO_ENGINES": "1", "LANG": "en_US.UTF-8", "TZ": "UTC", **words}

    def settings(self, **more):
        values = {"OnboardingDone": "true", "WindowWidth": self.width, "WindowHeight": self.height, "WindowX": 0, "WindowY": 0}
        return "[General]\n" + "".join(f"{key}={value}\n" for key, value in {**values, **more}.items())


VARIANTS = {"light": Variant(), "dark": Variant(dark=True), "light-2x": Variant(scale=2), "dark-2x": Variant(scale=2, dark=True),
            "small": Variant(900, 600), "small-dark": Variant(900, 600, dark=True), "large": Variant(2560, 1440),
            "print200": Variant(large_print=True), "print200-small": Variant(900, 600, large_print=True, dark=True)}

# The screen, its library, and how it is reached. A word in braces is the key of a meeting of that library.
EXPORTS = [
    ("library-empty", "empty", ""),
    ("library-few", "few", "--select-meeting {full}"),
    ("library-3000", "many", ""),
    ("library-scripts", "scripts", ""),
    ("library-error", "broken", ""),
    ("meeting", "few", "--show-meeting --select-meeting {full}"),
    ("meeting-no-transcript", "few", "--show-meeting --select-meeting {empty}"),
    ("meeting-no-meeting", "empty", "--show-meeting"),
    ("meeting-long-title", "scripts", "--show-meeting --select-meeting {0}"),
    ("meeting-hebrew", "scripts", "--show-meeting --select-meeting {1}"),
    ("meeting-arabic", "scripts", "--show-meeting --select-meeting {10}"),
    ("meeting-japanese", "scripts", "--show-meeting --select-meeting {3}"),
    ("live", "few", "--preview-recording --select-meeting {live}"),
    ("live-call-missing", "few", "--preview-recording --preview-call-missing --select-meeting {live}"),
    ("live-listening", "few", "--preview-recording --select-meeting {listening}"),
    ("live-hebrew", "scripts", "--preview-recording --select-meeting {1}"),
    ("history", "few", "--show-history --select-meeting {full}"),
    ("history-none", "few", "--show-history --select-meeting {live}"),
    ("history-arabic", "scripts", "--show-history --select-meeting {2}"),
    ("deleted", "deleted", "--show-deleted"),
    ("deleted-empty", "few", "--show-deleted"),
] + [(f"welcome-{step + 1}", "empty", f"--show-onboarding @{step}") for step in range(4)]


def export(binary, target, libraries, screen, library, flags, variant):
    """Has one picture written; gives what went wrong, or nothing."""
    folder, records = libraries[library]
    arguments, settings = [], variant.settings()
    for flag in flags.split():
        if flag.startswith("@"):
            settings = variant.settings(OnboardingDone="false", OnboardingStep=flag[1:])
        elif flag.startswith("{"):
            key = flag.strip("{}")
            arguments.append(records[int(key) if key.isdigit() else key]["id"])
        else:
            arguments.append(flag)
    with tempfile.TemporaryDirectory() as config:
        file = pathlib.Path(config) / "Varnet/Varnet.conf"
        file.parent.mkdir()
        file.write_text(settings, encoding="utf-8")
        run = subprocess.run([binary, "--storage-root", folder / "meetings", "--export-ui", target, "--export-scale", str(variant.scale),
                              "--appearance", "dark" if variant.dark else "light", *arguments],
                             env={**os.environ, **variant.environment(), "QT_QPA_PLATFORM": "offscreen", "XDG_CONFIG_HOME": config},
                             capture_output=True, text=True, timeout=120, check=False)
    return "" if run.returncode == 0 and not run.stderr else f"{target.name}: status {run.returncode}: {run.stderr.strip()}"


def export_patiently(*job):
    """Three seconds are short for a machine that has other pictures to make: what was unfinished is tried again."""
    for _ in range(3):
        problem = export(*job)
        if "in the process of being created" not in problem:
            break
    return problem


def walk(binary, target, name):
    """Takes the pictures of one variant that need keys; gives what went wrong, or nothing."""
    run = subprocess.run([SESSION, "--pipewire", "--", HERE / "screens_walk.py", binary, target, name],
                         capture_output=True, text=True, timeout=600, check=False)
    return "" if run.returncode == 0 else f"the walk of {name}: {run.stderr.strip()}"


def contact_sheet(folder):
    screens = {}
    for picture in sorted(folder.glob("*.png")):
        screens.setdefault(picture.stem.split("_")[0], []).append(picture.name)
    rows = "".join(f"<h2>{screen}</h2>" + "".join(
        f'<a href="{html.escape(name)}"><img src="{html.escape(name)}" title="{html.escape(name)}" loading="lazy"></a>' for name in names)
        for screen, names in screens.items())
    style = "body{font:14px sans-serif;background:#888}img{width:30%;margin:4px;vertical-align:top}"
    (folder / "index.html").write_text(f"<!doctype html><meta charset=utf-8><title>Screens</title><style>{style}</style>{rows}\n",
                                       encoding="utf-8")


def in_session(binary, target, only):
    work = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    wanted = [(screen, library, flags, name) for screen, library, flags in EXPORTS for name in VARIANTS if only in f"{screen}_{name}.png"]
    walks = [name for name in VARIANTS if not only or only.startswith("walk") and only.removeprefix("walk_") in ("walk", name)]
    libraries = {library: (work / library, screens_library.make(library, work / library)) for library in sorted({job[1] for job in wanted})}
    # A run mostly waits for its screens to settle; a walk keeps a processor busy.
    with concurrent.futures.ThreadPoolExecutor(4) as exports, concurrent.futures.ThreadPoolExecutor(2) as drives:
        jobs = [drives.submit(walk, binary, target, name) for name in walks]
        jobs += [exports.submit(export_patiently, binary, target / f"{screen}_{name}.png", libraries, screen, library, flags, VARIANTS[name])
                 for screen, library, flags, name in wanted]
        failures = [job.result() for job in concurrent.futures.as_completed(jobs) if job.result()]
    contact_sheet(target)
    print(*failures, f"{len(list(target.glob('*.png')))} pictures in {target}", sep="\n")
    return 1 if failures else 0


def main():
    if "VARNET_TEST_SESSION" in os.environ:
        return in_session(sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3])
    build, target = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    only = sys.argv[3] if len(sys.argv) > 3 else ""
    if not only:
        shutil.rmtree(target, ignore_errors=True)
    target.mkdir(parents=True, exist_ok=True)
    return subprocess.call([SESSION, "--", sys.executable, __file__, build / "Varnet/varnet", target, only])


if __name__ == "__main__":
    sys.exit(main())

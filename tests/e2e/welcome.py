#!/usr/bin/python3
"""Goes through the welcome flow by keyboard: both sources are heard, a killed program comes back at its step, the last
step ends the flow for good, and so does a recording once the flow has been asked for again.

usage: welcome.py PROGRAM
"""
import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driver  # noqa: E402
import window  # noqa: E402

SETTINGS = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "Varnet/Varnet.conf"


def start(program):
    application = driver.Application(program, log=driver.data_home() / "application.log",
                                     environment={**window.ENVIRONMENT, "VARNET_NO_ENGINES": "1"})
    window.take_focus(application.process.pid)
    return application


def step(name):
    """Waits for that step, and tells which button has the keyboard's focus."""
    driver.wait_for(name, lambda: name in window.names("panel"))
    driver.wait_for("the focus", lambda: window.names("push button", window.Atspi.StateType.FOCUSED))
    return window.names("push button", window.Atspi.StateType.FOCUSED)[0]


def says(words):
    driver.wait_for(words, lambda: window.find("label", words))


def main():
    program, session = sys.argv[1], pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    tone = session / "tone.wav"
    subprocess.run(["sox", "-q", "-n", "-r", "48000", "-b", "16", str(tone), "synth", "60", "sine", "300", "gain", "-12"],
                   check=True)
    application = start(program)
    assert step("Step 1 of 4: Welcome to Zelvik") == "Continue"
    window.keys("ctrl+2", "Escape", "Return")
    assert step("Step 2 of 4: Your microphone") == "Skip"
    says("Listening. Say something.")
    player = driver.play(tone, "mic_feed")
    says("We can hear you.")
    assert step("Step 2 of 4: Your microphone") == "Continue"
    window.keys("Return")
    assert step("Step 3 of 4: Meeting audio") == "Skip"
    player.kill()
    application.kill()

    application = start(program)
    step("Step 3 of 4: Meeting audio")
    window.keys("shift+Tab", "shift+Tab", "space")
    says("Meeting audio works.")
    window.keys("alt+Left")
    step("Step 2 of 4: Your microphone")
    window.keys("Return")
    step("Step 3 of 4: Meeting audio")
    window.keys("Return")
    assert step("Step 4 of 4: Engines") == "Start using Zelvik"
    window.keys("Return")
    driver.wait_for("the library", lambda: window.find("push button", "New Recording"))
    assert application.quit() == 0

    application = start(program)
    driver.wait_for("the library", lambda: window.find("push button", "New Recording"))
    assert not [name for name in window.names("panel") if name.startswith("Step")]
    window.keys("ctrl+comma")
    window.click("Storage", "page tab")
    window.click("Show welcome again")
    step("Step 1 of 4: Welcome to Zelvik")
    window.keys("Return")
    step("Step 2 of 4: Your microphone")
    window.keys("ctrl+n")
    driver.wait_for("the recording in the window", lambda: window.find("push button", "Stop Recording, 0:01"))
    window.keys("ctrl+n")
    assert application.quit() == 0
    meeting, = driver.meetings(driver.default_root()).values()
    assert meeting["status"].startswith("Audio saved"), meeting["status"]
    assert "OnboardingDone=true" in SETTINGS.read_text()


main()

# Runs the screen reader Orca in the tests' own session, with a speech server that is silent, and reads
# what it speaks. Depends on Debian's orca, speech-dispatcher and python3-speechd, and on
# accessible.switch_on(). SPDX-License-Identifier: MIT
import json
import os
import pathlib
import re
import subprocess

import accessible

# Opening a sound device can fail, and would be heard.
_SPEECH_SERVER = """
AddModule "dummy" "sd_dummy" ""
DefaultModule dummy
AudioOutputMethod "alsa"
AudioALSADevice "null"
LogLevel 0
"""
# The keys that are pressed are the test's; everything else is as Orca is installed.
_SETTINGS = {
    "general": {"enableKeyEcho": False, "enableBraille": False},
    "profiles": {"default": {"profile": ["Default", "default"], "enableKeyEcho": False}},
    "pronunciations": {},
    "keybindings": {},
}
# Each utterance has to be in the file at once; and a slow machine is no reason to give up.
_CUSTOMIZATIONS = """
import orca.debug
import orca.settings
orca.debug.debugFile.reconfigure(line_buffering=True)
orca.settings.timeoutTime = 0
"""
_UTTERANCE = re.compile(r"SPEECH OUTPUT: '(.*?)'(?: ?\{.*)?$", re.MULTILINE)
_STARTED = "Screen reader on."


class ScreenReader:
    """Runs from its construction to stop(), with its files in `folder`. `patience` is how many times as
    long as else it may take."""

    def __init__(self, folder, patience=1):
        self._patience = patience
        self._log = folder / "orca.log"
        self._processes = []
        settings = folder / "home" / ".local" / "share" / "orca"
        settings.mkdir(parents=True)
        (settings / "user-settings.conf").write_text(json.dumps(_SETTINGS))
        (settings / "orca-customizations.py").write_text(_CUSTOMIZATIONS)
        self._start_speech_server(folder)
        environment = dict(
            os.environ, HOME=str(folder / "home"), PATH=f"{self._hide_others(folder)}:{os.environ['PATH']}",
            LANGUAGE="en", LC_ALL="C.UTF-8",
        )
        self._run(["orca", f"--debug-file={self._log}"], environment, folder / "orca.out")
        self._wait(lambda: _STARTED in self._all(), "the screen reader", 60)

    def _start_speech_server(self, folder):
        (folder / "speechd.conf").write_text(_SPEECH_SERVER)
        command = ["speech-dispatcher", "--run-single", "--timeout", "0", "--config-dir", folder]
        self._run(command, os.environ, folder / "speech-dispatcher.out")
        socket = pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "speech-dispatcher" / "speechd.sock"
        self._wait(socket.exists, "the speech server", 20)

    @staticmethod
    def _hide_others(folder):
        """Orca does not start beside another one of the same user, which it finds with pgrep. In the
        folder returned is one that finds nothing."""
        commands = folder / "commands"
        commands.mkdir()
        (commands / "pgrep").write_text("#!/bin/sh\nexit 1\n")
        (commands / "pgrep").chmod(0o755)
        return commands

    def _run(self, command, environment, output):
        with open(output, "wb") as file:
            process = subprocess.Popen(
                command, env=environment, stdin=subprocess.DEVNULL, stdout=file, stderr=file
            )
        self._processes.append(process)

    def _wait(self, condition, what, seconds):
        accessible.wait_for(condition, what, seconds * self._patience)

    def _all(self):
        if not self._log.exists():
            return []
        return _UTTERANCE.findall(self._log.read_text(encoding="utf-8", errors="replace"))

    def utterances(self):
        """What it has spoken since it started, without what it says of itself."""
        spoken = (text.strip() for text in self._all())
        return [text for text in spoken if text and text != _STARTED]

    def stop(self):
        while self._processes:
            process = self._processes.pop()
            process.kill()
            process.wait()

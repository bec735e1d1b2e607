#!/usr/bin/env python3
"""Types at a real, interactive bash and presses the tabulator: names with blanks come out quoted right.

    typed_completion.py COMPLETION PROGRAM
"""
import os
import pty
import select
import shutil
import signal
import sys
import tempfile
import time
from pathlib import Path

HELPERS = "/usr/share/bash-completion/bash_completion"
TRACK = """<?xml version="1.0"?><gpx version="1.0"><trk><name>{name}</name><trkseg>
<trkpt lat="47" lon="8"/><trkpt lat="47.1" lon="8"/></trkseg></trk></gpx>"""
# A command that takes a track and nothing else.
VISIT = "_qtrace_commands[qtrace]+=' visit' _qtrace_values['qtrace visit 1']=@track"


def store(device, *names):
    folder = device / "UserData" / "Track"
    folder.mkdir(parents=True)
    for number, name in enumerate(names):
        (folder / f"{number}.gpx").write_text(TRACK.format(name=name))


class Shell:
    """Bash at a terminal. Its prompt is a sign that nothing else prints; `tell` shows the arguments it is given."""

    def __init__(self, folder, program, completion):
        folder.joinpath("rc").write_text(
            f"PS1='\\001\\002READY>'\nbind 'set bell-style none'\nbind 'set enable-bracketed-paste off'\n"
            f". {HELPERS}\n. {completion}\n{VISIT}\nqtrace() {{ printf 'GOT'; printf '<%s>' \"$@\"; echo; }}\n"
        )
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(folder)
            os.environ.update(HOME=str(folder), TERM="dumb", PATH=f"{program.parent}:{os.environ['PATH']}",
                              QTRACE_DEVICE=str(folder / "device"), LC_ALL="C.UTF-8")
            os.execvp("bash", ["bash", "--noprofile", "--rcfile", str(folder / "rc"), "-i"])
        self.read_until("READY>")

    def read_until(self, sign, seconds=30):
        end, text = time.monotonic() + seconds, ""
        while sign not in text:
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                sys.exit(f"no {sign!r} came, only {text!r}")
            text += os.read(self.terminal, 4096).decode(errors="replace")
        return text

    def arguments(self, typed):
        """What a command gets when this is typed; a tabulator completes."""
        os.write(self.terminal, (typed + "\n").encode())
        answer = self.read_until("READY>").replace("\r", "")
        return answer[answer.rindex("GOT") + 3:].split("\n")[0]

    def close(self):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)


def main():
    completion, program = (Path(argument).resolve() for argument in sys.argv[1:3])
    if not Path(HELPERS).exists() or not shutil.which("bash"):
        print("skipped: bash-completion is not here")
        return 77
    cases = {
        "qtrace rec\t": "<record>",
        "qtrace --storage ca\t x": "<--storage><card><x>",
        "qtrace record --mode=di\t": "<record><--mode=distance>",
        "qtrace record My\t": "<record><My log.nmea>",
        "qtrace visit Roun\t": "<visit><Round the lake>",
        "qtrace visit 'Round th\t": "<visit><Round the lake>",
        "qtrace visit \"Round th\t": "<visit><Round the lake>",
        "qtrace visit Round\\ th\t": "<visit><Round the lake>",
        "qtrace visit It\t": "<visit><It's $5 (a)>",
        "qtrace --device elsewhere visit Else\t": "<--device><elsewhere><visit><Elsewhere 2>",
    }
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        store(folder / "device", "Round the lake", "It's $5 (a)")
        store(folder / "elsewhere", "Elsewhere 2")
        (folder / "My log.nmea").touch()
        shell = Shell(folder, program, completion)
        try:
            wrong = {typed: got for typed, expected in cases.items() if (got := shell.arguments(typed)) != expected}
        finally:
            shell.close()
    for typed, got in wrong.items():
        print(f"{typed!r} gave {got}, not {cases[typed]}")
    return 1 if wrong else 0


sys.exit(main())

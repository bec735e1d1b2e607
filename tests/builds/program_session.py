"""What a user does with the program, from a drive to the documents of other programs: everything it writes is left in a
folder, to be compared with what another build writes.

program_session.py FOLDER COMMAND...        COMMAND: the program, behind what runs it
"""

import os
import subprocess
import sys
from pathlib import Path

NAME = "Fahrt zum Säntis, 山"
DEVICE = "Gerät 山"
LOG = "Überfahrt 北京.nmea"
DOCUMENT = "Überfahrt 北京.gpx"


class Program:
    def __init__(self, command, folder):
        self.command, self.folder = command, folder
        self.environment = os.environ | {"QTRACE_DEVICE": str(folder / DEVICE),
                                         "QTRACE_CONFIG": str(folder / "Einstellungen 山.toml"), "LC_ALL": "C.UTF-8"}

    def __call__(self, *words, result=0, given=b""):
        done = subprocess.run([*self.command, *map(str, words)], input=given, capture_output=True, cwd=self.folder,
                              env=self.environment, timeout=600)
        if done.returncode != result:
            raise SystemExit(f"{' '.join(map(str, words))}: exit code {done.returncode}, not {result}\n"
                             f"{done.stderr.decode(errors='replace')}")
        return done.stdout

    def keep(self, name, *words, **options):
        (self.folder / name).write_bytes(self(*words, **options))


def drive(program):
    program("simulate", "--seed", "3", "--duration", "40m", "-o", LOG)
    program("record", LOG, "--save-as", NAME, "--time", "2")
    program.keep("list.json", "list", "--json")
    program.keep("points.csv", "points", NAME)
    for name in (DOCUMENT, "drive.csv", "drive.geojson", "drive.kml"):
        program("export", NAME, name)
    program("map", NAME, "-o", "drive.svg")


def library(program):
    program("import", DOCUMENT, "--again", "--name", "zweite")
    program.keep("imported.json", "import", "-", "--again", "--json", given=(program.folder / DOCUMENT).read_bytes())
    program("reverse", "zweite", "--as", "zurück")
    program("color", "zweite", "00ff80")
    program("rename", "zweite", "dritte")
    program("hide", "dritte")
    program("merge", NAME, "dritte", "--as", "alles")
    program("split", "alles", "--distance", "4000")
    program.keep("library.json", "list", "--json", "--sort", "name")
    program.keep("merged.gpx", "export", "alles", "-")
    program("delete", "--yes", "alles")
    program.keep("check.txt", "check")


def recording(program):
    program("config", "record.mode", "distance")
    program.keep("settings.txt", "config", "record.mode")
    program("record", "-", "--no-save", given=(program.folder / LOG).read_bytes())
    program("record", "--gpx", DOCUMENT, "--no-save")
    program("salvage", f"{DEVICE}/App/Log.dat", "-o", "salvaged.gpx")
    program("info", "there is no such track", result=1)
    program("record", "there is no such file", result=1)
    program("list", "--no-such-option", result=2)


def main(folder, *command):
    program = Program([str(Path(word).resolve()) for word in command], Path(folder).resolve())
    program.folder.mkdir(parents=True)
    for part in (drive, library, recording):
        part(program)
    (program.folder / DEVICE / "App" / "recorder.lock").unlink()  # it names the process


if __name__ == "__main__":
    main(*sys.argv[1:])

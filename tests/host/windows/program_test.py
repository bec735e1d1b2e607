"""The program as a user of Windows has it: qtrace.exe itself, run with Wine. That it does what the program for this
machine does is shown by scripts/compare-builds.

program_test.py COMMAND...        COMMAND: qtrace.exe, behind what runs it
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = [str(Path(word).resolve()) for word in sys.argv[1:]]
NAME = "Überfahrt 北京"  # no code page but UTF-8 has all of its letters


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.device = self.folder / "device"
        self.environment = os.environ | {"QTRACE_DEVICE": str(self.device), "LC_ALL": "C.UTF-8",
                                         "QTRACE_CONFIG": str(self.folder / "settings.toml")}

    def start(self, *words):
        process = subprocess.Popen([*PROGRAM, *map(str, words)], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, cwd=self.folder, env=self.environment)
        self.addCleanup(process.kill)
        return process

    def run_program(self, *words, given=b"", result=0):
        process = self.start(*words)
        out, err = process.communicate(given, timeout=60)
        self.assertEqual(process.returncode, result, err.decode(errors="replace"))
        return out.decode(), err.decode()

    def tracks(self, folder=None):
        """The names of the track files."""
        return sorted(file.name for file in (folder or self.device / "UserData" / "Track").glob("*.gpx"))

    def write_document(self, name, points=2):
        point = '<trkpt lat="47.{}" lon="8.5"><time>2024-05-12T08:15:{:02}Z</time></trkpt>'
        text = "".join(point.format(i + 1, i) for i in range(points))
        (self.folder / name).write_text(f"<gpx><trk><trkseg>{text}</trkseg></trk></gpx>")

    def drive(self):
        self.run_program("simulate", "--duration", "5m", "-o", "drive.nmea")
        return self.folder / "drive.nmea"

    def test_a_recorded_drive_is_a_track_of_its_points(self):
        self.drive()
        out, _ = self.run_program("record", "drive.nmea", "--time", "1", "--mode", "time")
        fixes = [line for line in (self.folder / "drive.nmea").read_text().splitlines()
                 if line[3:6] == "RMC" and line.split(",")[2] == "A"]
        self.assertIn(f"Recorded    {len(fixes)} points", out)
        self.assertEqual(len(self.tracks()), 1)

    def test_a_log_with_any_name_becomes_a_track_with_any_name(self):
        self.drive().rename(self.folder / f"{NAME}.nmea")
        out, _ = self.run_program("record", f"{NAME}.nmea", "--save-as", NAME)
        self.assertIn(f"Input       {NAME}.nmea\n", out)
        self.assertEqual(self.tracks(), [f"{NAME}.gpx"])
        out, _ = self.run_program("list")
        self.assertIn(NAME, out)
        self.assertNotIn("\r", out)
        out, _ = self.run_program("info", NAME)
        self.assertRegex(out, rf"file +\S.*\\{NAME}\.gpx\n")

    def test_a_document_with_any_name_is_read_and_written(self):
        self.write_document(f"{NAME}.gpx", points=3)
        out, _ = self.run_program("import", f"{NAME}.gpx")
        self.assertIn(f"imported  {NAME}, 3 points", out)
        self.run_program("export", NAME, f"aus {NAME}.gpx")
        self.assertEqual((self.folder / f"aus {NAME}.gpx").read_bytes().count(b"<trkpt"), 3)
        self.run_program("map", NAME, "-o", f"{NAME}.svg")
        self.assertIn(b"<svg", (self.folder / f"{NAME}.svg").read_bytes())
        self.run_program("record", "--gpx", f"{NAME}.gpx", "--time", "1", "--mode", "time")
        self.assertEqual(len(self.tracks()), 2)

    def test_a_track_gets_any_name(self):
        self.write_document("a.gpx")
        self.run_program("import", "a.gpx")
        self.run_program("rename", "a", NAME)
        self.assertEqual(self.tracks(), [f"{NAME}.gpx"])
        self.run_program("color", NAME, "ff0000")
        out, _ = self.run_program("check")
        self.assertIn("1 good", out)
        self.run_program("delete", "--yes", NAME)
        self.assertEqual(self.tracks(), [])

    def test_folders_and_settings_with_any_name(self):
        self.device = self.folder / f"Gerät {NAME}"
        settings = self.folder / f"{NAME}.toml"
        self.environment |= {"QTRACE_DEVICE": str(self.device), "QTRACE_CONFIG": str(settings)}
        self.run_program("config", "color", "ff8000")
        self.assertEqual(settings.read_bytes(), b'color = "ff8000"\n')
        self.run_program("config", "tracks", f"Spuren/{NAME}")
        self.write_document("a.gpx")
        self.run_program("import", "a.gpx")
        self.assertEqual(self.tracks(self.device / "Spuren" / NAME), ["a.gpx"])
        out, _ = self.run_program("list")
        self.assertIn("#ff8000", out)

    def test_settings_with_any_name_are_read_as_others_are(self):
        settings = self.folder / f"{NAME}.toml"
        settings.write_bytes(b"# by an editor of this system\r\ncolor = \"00ff00\"\r\n[record]\r\ntime = 7\r\n")
        for key, value in (("color", "00ff00"), ("record.time", "7")):
            out, _ = self.run_program("config", key, "--config", settings.name)
            self.assertEqual(out, value + "\n")
        settings.write_text("color = blue\n")
        _, err = self.run_program("list", "--config", settings.name, result=2)
        self.assertIn(f"{NAME}.toml:1: color", err)
        settings.unlink()
        _, err = self.run_program("list", "--config", settings.name, result=2)
        self.assertIn(f"{NAME}.toml", err)

    def test_what_is_not_there_is_told_by_its_name(self):
        for words in (("import", f"{NAME}.gpx"), ("record", f"{NAME}.nmea"), ("info", NAME)):
            with self.subTest(words=words):
                _, err = self.run_program(*words, result=1)
                self.assertIn(words[-1], err)

    def test_wildcards_stand_for_files(self):
        for points, name in enumerate(("a", "b", NAME), 1):
            self.write_document(f"{name}.gpx", points)
        self.run_program("import", "*.gpx")
        self.assertEqual(self.tracks(), ["a.gpx", "b.gpx", f"{NAME}.gpx"])

    def test_a_file_that_is_there_is_replaced_when_asked_for_alone(self):
        self.drive()
        self.run_program("record", "drive.nmea", "--save-as", "drive")
        (self.folder / "out.gpx").write_bytes(b"mine")
        _, err = self.run_program("export", "drive", "out.gpx", result=1)
        self.assertIn("exists already", err)
        self.assertEqual((self.folder / "out.gpx").read_bytes(), b"mine")
        self.run_program("export", "drive", "out.gpx", "--force")
        self.assertIn(b"<gpx", (self.folder / "out.gpx").read_bytes())
        self.assertEqual(list(self.folder.glob(".qtrace-*")), [])

    def test_two_recorders_in_one_folder(self):
        drive = self.drive().read_bytes()
        first = self.start("record", "-")
        first.stdin.write(drive)
        first.stdin.flush()
        lock = self.device / "App" / "recorder.lock"
        while not lock.exists() or not lock.read_text().strip():
            self.assertIsNone(first.poll())
        number = lock.read_text().strip()
        _, err = self.run_program("record", "drive.nmea", result=1)
        self.assertIn(f"process {number} is recording", err)
        out, _ = self.run_program("ring")
        self.assertIn(f"process {number} is recording", out)
        out, _ = first.communicate(timeout=60)
        self.assertEqual(first.returncode, 0)
        self.assertIn(b"Saved", out)
        out, _ = self.run_program("ring")
        self.assertIn("none is running", out)

    def test_documents_of_strangers_are_read(self):
        point = '<trkpt lat="47.5" lon="8.5"><ele>400</ele></trkpt><trkpt lat="47.6" lon="8.5"/>'
        text = f'<gpx xmlns:x="urn:x" x:y="1"><wpt lat="1" lon="2"/><trk><name>Zürich &amp; <![CDATA[<Bern>]]></name><trkseg>{point}' \
               "</trkseg></trk></gpx>"
        for declaration, encoding in (("", "utf-8"), ("", "utf-8-sig"), ('<?xml version="1.0" encoding="UTF-16"?>', "utf-16"),
                                      ('\n<?xml version="1.0"?>', "utf-8"),
                                      ('<?xml version="1.0" encoding="ISO-8859-1"?>', "latin-1"),
                                      ('<?xml version="1.0" encoding="windows-1252"?>', "cp1252")):
            with self.subTest(declaration=declaration, encoding=encoding):
                (self.folder / "theirs.gpx").write_bytes((declaration + text).encode(encoding))
                out, _ = self.run_program("import", "theirs.gpx", "--again")
                self.assertIn("Zürich & _Bern_", out)
                self.assertIn("2 points", out)

    def test_damaged_documents_give_what_is_before_the_damage(self):
        point = '<trkpt lat="47.5" lon="8.5"/>'
        begin = f"<gpx><trk><name>half</name><trkseg>{point}{point}"
        for damage in ("", "<trkpt lat=", "</wrong>", "<a><b></a></b>"):
            with self.subTest(damage=damage):
                (self.folder / "theirs.gpx").write_text(begin + damage)
                out, err = self.run_program("import", "theirs.gpx", "--again", result=1)
                self.assertIn("2 points", out)
                self.assertIn("qtrace import: theirs.gpx", err)

    def test_no_document_is_read_that_could_grow_without_end(self):
        deep = "<gpx>" + "<a>" * 300 + "</a>" * 300 + "</gpx>"
        entities = '<!DOCTYPE gpx [<!ENTITY a "aaaa">]><gpx><trk><name>&a;</name></trk></gpx>'
        for document in (deep, entities, "", "<html></html>", "no document"):
            with self.subTest(document=document[:40]):
                (self.folder / "theirs.gpx").write_text(document)
                self.run_program("import", "theirs.gpx", result=1)

    def test_what_is_not_there_is_not_offered(self):
        out, _ = self.run_program("--help")
        self.assertNotIn("serve", out)
        out, _ = self.run_program("record", "--help")
        for word in ("--serve", "--gpsd", "--baud", "daemon"):
            self.assertNotIn(word, out)

    def test_what_is_not_there_is_wrong_usage(self):
        for words in (("serve",), ("serve", "--port", "0"), ("record", "--gpsd"), ("record", "--gpsd", "localhost:2947"),
                      ("record", "COM3"), ("record", "--nmea", "\\\\.\\COM12"), ("record", "log.nmea", "--baud", "4800"),
                      ("record", "-", "--serve")):
            with self.subTest(words=words):
                _, err = self.run_program(*words, result=2)
                self.assertIn("is not part of qtrace for Windows", err)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

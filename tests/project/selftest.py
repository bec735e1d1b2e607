"""Shows that the checks of this folder find what they look for, on small projects made for it."""

import tempfile
import unittest
from pathlib import Path

import check_calls
import check_includes
import check_named_tests
import check_sizes
import check_test_list


class Project(unittest.TestCase):
    """A folder with the files that a test needs, on which it runs one check."""

    def problems(self, check, **files):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in files.items():
                path = Path(folder) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return check(Path(folder))


class Includes(Project):
    def found(self, file, line):
        return self.problems(check_includes.check, **{file: f'#pragma once\n#include "{line}"\n'})

    def test_down_the_way_is_fine(self):
        self.assertEqual(self.found("library/a.cpp", "record/settings.h"), [])
        self.assertEqual(self.found("track/a.cpp", "gpx/gpx.h"), [])
        self.assertEqual(self.found("util/a.cpp", "platform/file.h"), [])
        self.assertEqual(self.found("record/a.cpp", "record/b.h"), [])

    def test_up_the_way_is_named_with_its_line(self):
        for file, included in (("gpx/a.cpp", "track/track.h"), ("track/a.h", "record/log_track.h"),
                               ("platform/a.cpp", "util/text.h"), ("record/a.cpp", "library/track_manager.h"),
                               ("library/a.cpp", "host/main.h")):
            found = self.found(file, included)
            self.assertEqual(len(found), 1, file)
            self.assertTrue(found[0].startswith(f'{file}:2: #include "{included}"'), found[0])

    def test_point_and_geodesy_are_free_for_all(self):
        self.assertEqual(self.found("platform/a.cpp", "track/point.h"), [])
        self.assertEqual(self.found("gpx/a.cpp", "track/geodesy.h"), [])

    def test_the_stated_exception_is_that_file_alone(self):
        self.assertEqual(self.found("record/settings.cpp", "library/track_manager.h"), [])
        self.assertEqual(len(self.found("record/settings.h", "library/track_manager.h")), 1)
        self.assertEqual(len(self.found("record/settings.cpp", "library/track_proxy.h")), 1)

    def test_the_whole_interface_is_for_hosts(self):
        self.assertEqual(self.found("host/a.cpp", "qtrace.h"), [])
        self.assertEqual(len(self.found("library/a.cpp", "qtrace.h")), 1)

    def test_one_systems_folder_is_for_platform(self):
        self.assertEqual(self.found("platform/posix/a.cpp", "platform/posix/b.h"), [])
        self.assertEqual(len(self.found("util/a.cpp", "platform/posix/b.h")), 1)

    def test_comments_include_nothing(self):
        text = '// #include "host/a.h"\n/*\n#include "host/a.h"\n*/\n'
        self.assertEqual(self.problems(check_includes.check, **{"util/a.h": text}), [])


class Sizes(Project):
    def found(self, text):
        return self.problems(check_sizes.check, **{"track/a.cpp": text})

    @staticmethod
    def function(lines, head="void F() {"):
        return head + "\n" + "    Work();\n" * (lines - 2) + "}\n"

    def test_forty_lines_are_fine_and_one_more_is_not(self):
        self.assertEqual(self.found(self.function(40)), [])
        self.assertEqual(self.found("\n" + self.function(41)),
                         ["track/a.cpp:2: 41 lines, more than 40: void F()"])

    def test_functions_are_found_wherever_they_are(self):
        for before, after in (("namespace a {\nnamespace {\n", "}\n}\n"), ("class A {\n public:\n", "};\n"),
                              ("struct A final : public B {\n", "};\n"), ('extern "C" {\n', "}\n")):
            self.assertEqual(len(self.found(before + self.function(41) + after)), 1, before)

    def test_every_kind_of_function_counts(self):
        for head in ("TEST(A, B_C) {", "A::A(int a) : m_a(a) {", "auto F() const noexcept -> int {",
                     "template <typename T>\nT F(T t) {", "bool operator==(const A& a) {"):
            self.assertEqual(len(self.found(self.function(42, head))), 1, head)

    def test_declarations_may_be_long(self):
        for text in ("namespace a {\n" + "int F();\n" * 60 + "}\n", "class A {\n" + "    int F();\n" * 60 + "};\n",
                     "int a[] = {\n" + "    F(),\n" * 60 + "};\n", "enum class E {\n" + "    kA,\n" * 60 + "};\n"):
            self.assertEqual(self.found(text), [])

    def test_braces_in_texts_and_comments_are_none(self):
        text = 'void F() {\n    Put("{");  // {\n    Put(\'{\');\n    /* { */\n}\n'
        self.assertEqual(self.found(text * 10 + "void G() {\n}\n"), [])

    def test_files_of_more_than_500_lines_are_named(self):
        self.assertEqual(self.found("int a;\n" * 500), [])
        self.assertEqual(self.found("int a;\n" * 501), ["track/a.cpp:501: 501 lines, more than 500"])


class Calls(Project):
    def found(self, text, file="track/a.cpp"):
        return self.problems(check_calls.check, **{file: text})

    def test_the_system_is_asked_for_in_platform_alone(self):
        for line in ("#ifdef _WIN32\n", "#if defined(__linux__)\n", "#  elif defined(X) || defined(_MSC_VER)\n",
                     "#ifndef __APPLE__\n"):
            self.assertEqual(len(self.found(line)), 1, line)
            self.assertEqual(len(self.found(line, "tests/track/a.cpp")), 1, line)
            self.assertEqual(self.found(line, "platform/a.h"), [])
            self.assertEqual(self.found(line, "util/export.h"), [])

    def test_system_headers_are_for_platform(self):
        self.assertEqual(len(self.found("#include <unistd.h>\n")), 1)
        self.assertEqual(self.found("#include <unistd.h>\n", "platform/posix/a.cpp"), [])
        self.assertEqual(len(self.found("#include <windows.h>\n", "platform/a.h")), 1)
        self.assertEqual(self.found("#include <windows.h>\n", "platform/windows/a.cpp"), [])
        self.assertEqual(self.found("#include <windows.h>\n", "platform/system_time.h"), [])

    def test_calls_that_read_the_locale_are_named(self):
        for call in ("atof(s)", "std::atoi(s)", "::strtod(s, e)", "std::toupper(c)", "towupper(c)", "setlocale(a, b)",
                     "std::stod(s)", "sscanf(s, f)", "std::isspace(c)"):
            found = self.found(f"int a;\nauto b = {call};\n")
            self.assertEqual(len(found), 1, call)
            self.assertTrue(found[0].startswith("track/a.cpp:2: "), found[0])
            self.assertEqual(len(self.found(f"auto b = {call};\n", "platform/posix/a.cpp")), 1, call)
            self.assertEqual(self.found(f"auto b = {call};\n", "tests/track/a.cpp"), [])
        self.assertEqual(len(self.found("std::ostringstream text;\n")), 1)

    def test_names_that_hold_such_a_name_are_fine(self):
        self.assertEqual(self.found('auto a = my_atof(s) + b.stat(x);  // atof(s)\nPut("atof(s)");\n'), [])

    def test_files_are_opened_by_platform_alone(self):
        for call in ("std::fopen(p, m)", "::fopen(p, m)", "fopen(p, m)", "std::fflush(f)", "rename(a, b)",
                     "std::remove(p)", "unlink(p)", "std::ofstream(p)"):
            self.assertEqual(len(self.found(f"auto a = {call};\n")), 1, call)
            self.assertEqual(self.found(f"auto a = {call};\n", "platform/posix/a.cpp"), [])
        self.assertEqual(self.found("auto f = platform::fopen(p, m);\nplatform::fflush(f);\n"), [])
        self.assertEqual(self.found("v.erase(std::remove(v.begin(), v.end(), x), v.end());\n"), [])

    def test_printf_of_reals_is_named_and_that_of_integers_is_fine(self):
        for form in ("%f", "%.6f", "%-8.3e", "%*G", "%Lf", "%d %g", "100%% %a"):
            self.assertEqual(len(self.found(f'std::snprintf(b, sizeof b, "{form}", x);\n')), 1, form)
        for form in ("%d", "%04d-%02d", "%s%%f", "%lu", "%x f"):
            self.assertEqual(self.found(f'std::snprintf(b, sizeof b, "{form}", x);\n'), [], form)


class TestList(unittest.TestCase):
    FILE = Path("tests/track/a_test.cpp")

    def found(self, names, listed):
        written = [(self.FILE, number + 1, name) for number, name in enumerate(names)]
        return list(check_test_list.missing_tests(written, listed))

    def test_a_listed_test_is_fine_whatever_its_parameters(self):
        listed = ["track.A.b", "track.Values/P.c/7", "track.T/0.d"]
        self.assertEqual(self.found(["track.A.b", "track.P.c", "track.T.d"], listed), [])

    def test_a_test_that_is_not_listed_is_named(self):
        self.assertEqual(len(self.found(["track.A.b", "track.A.c"], ["track.A.b"])), 1)
        self.assertEqual(len(self.found(["track.A.b"], ["util.A.b"])), 1)

    def test_switched_off_tests_and_empty_files_are_named(self):
        self.assertEqual(len(self.found(["track.A.DISABLED_b"], ["track.A.DISABLED_b"])), 1)
        self.assertEqual(len(self.found([None], [])), 1)

    def test_a_program_that_is_not_built_is_named_once(self):
        self.assertEqual(len(self.found(["track.A.b", "track.A.c"], ["test_track_NOT_BUILT"])), 1)

    def test_tests_are_found_as_they_are_written(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "tests" / "track" / "a_test.cpp"
            path.parent.mkdir(parents=True)
            path.write_text("// TEST(Not, This)\nTEST(A, b) {}\nTEST_F(\n    B, c) {}\n", encoding="utf-8")
            (path.parent / "empty_test.cpp").write_text("int a;\n", encoding="utf-8")
            names = [name for _, _, name in check_test_list.written_tests(folder)]
        self.assertEqual(names, ["track.A.b", "track.B.c", None])


class NamedTests(Project):
    TEST = {"tests/track/a_test.cpp": "TEST(A, Situation_Result) {}\n"}

    def found(self, file, text):
        return self.problems(check_named_tests.check, **{file: text}, **self.TEST)

    def test_a_test_that_exists_may_be_named(self):
        self.assertEqual(self.found("docs/kept.md", "| `Log.dat` | `A.Situation_Result`, `A.*`, `A.Situation*` |\n"), [])
        self.assertEqual(self.found("track/a.cpp", "// KEPT: so. Pinned by\n// A.Situation_Result.\n"), [])

    def test_a_test_that_does_not_exist_is_named_with_its_line(self):
        self.assertEqual(self.found("docs/kept.md", "\n| x | `A.Situation_Other` |\n"),
                         ["docs/kept.md:2: there is no test A.Situation_Other"])
        self.assertEqual(len(self.found("docs/CONFORMANCE.md", "`B.*`\n")), 1)
        self.assertEqual(self.found("track/a.cpp", "// KEPT: so. Pinned by\n    // A.Other_Result.\n"),
                         ["track/a.cpp:2: there is no test A.Other_Result"])


if __name__ == "__main__":
    unittest.main()

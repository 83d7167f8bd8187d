#!/usr/bin/env python3
"""Tests of the mutation script: what it changes, and that it tells a kill from a survivor."""
import contextlib
import io
import pathlib
import subprocess
import tempfile
import unittest

import explained
import mutate
import report
import tree
from changes import Source


def changed_lines(text: str) -> set[str]:
    return {change.apply(text) for change in Source("src/store/x.cpp", text).changes()}


class ChangesTest(unittest.TestCase):
    def test_comparisons_are_shifted_and_turned_round(self) -> None:
        self.assertEqual(changed_lines("bool b = x < y;"), {"bool b = x <= y;", "bool b = x >= y;"})
        self.assertEqual(changed_lines("bool b = x == y;"), {"bool b = x != y;"})

    def test_conditions_signs_truths_and_constants_are_changed(self) -> None:
        self.assertEqual(changed_lines("bool b = !x && y;"),
                         {"bool b = x && y;", "bool b = !x || y;"})
        self.assertEqual(changed_lines("int i = a + b;"), {"int i = a - b;"})
        self.assertEqual(changed_lines("bool b = true;"), {"bool b = false;"})
        self.assertEqual(changed_lines("int i = 8;"), {"int i = 9;", "int i = 7;"})
        self.assertEqual(changed_lines("int i = 0x0f;"), {"int i = 0x10;", "int i = 0xe;"})
        self.assertEqual(changed_lines("int i = 0644;"), {"int i = 0645;", "int i = 0643;"})
        self.assertEqual(changed_lines("int i = 0;"), {"int i = 1;"})

    def test_a_letter_of_a_text_is_changed_but_not_how_it_prints(self) -> None:
        self.assertEqual(changed_lines('auto s = "%d az\\n";'), {'auto s = "%d aa\\n";'})
        self.assertEqual(changed_lines('auto s = "%s/%d\\n";'), set())

    def test_statements_are_removed_and_results_changed(self) -> None:
        self.assertEqual(changed_lines("void f() { g(x); }"), {"void f() { ; }"})
        self.assertEqual(changed_lines("int f() { if (x) return y; return z; }"), {
            "int f() { if (x) ; return z; }",
            "int f() { if (x) return {}; return z; }",
            "int f() { if (x) return y; return {}; }",
        })

    def test_lines_keep_their_numbers(self) -> None:
        text = "void f() {\n  g(x,\n    y);\n  h();\n}\n"
        for changed in changed_lines(text):
            self.assertEqual(changed.count("\n"), text.count("\n"))

    def test_types_declarations_and_comments_are_left_alone(self) -> None:
        for text in ("template <typename T> T&& f(T&& t, const T& u);", "X(const X&) = delete;",
                     "int x;", "std::vector<int> v;", '#include "x.h"', "// a < b && true\n",
                     'extern "C" int f();', 'static_assert(sizeof(x) == 4, "size");',
                     "using A = B;"):
            self.assertEqual(changed_lines(text), set(), text)


class SampleTest(unittest.TestCase):
    sources = [Source("src/store/long.cpp", "int a = 1 + 2;\n" * 30),
               Source("src/store/short.cpp", "int a = 1 + 2;\n" * 10)]

    def test_files_share_by_their_lines(self) -> None:
        self.assertEqual(mutate.shares(self.sources, 8),
                         {"src/store/long.cpp": 6, "src/store/short.cpp": 2})
        self.assertEqual(sum(mutate.shares(self.sources, 7).values()), 7)

    def test_the_seed_alone_decides(self) -> None:
        first, again, other = (mutate.draw(self.sources, 8, seed) for seed in (1, 1, 2))
        self.assertEqual(first, again)
        self.assertNotEqual(first, other)


class ExplainedTest(unittest.TestCase):
    def test_an_explanation_of_code_that_is_gone_is_refused(self) -> None:
        entry = explained.parse("file: src/store/x.cpp\nbefore: int a = 1;\nafter: int a = 2;\n"
                                "reason: nobody\n  asks")
        self.assertEqual(entry.reason, "nobody asks")
        explained.check([entry], Source("src/store/x.cpp", "int a = 1;\n").changes())
        with self.assertRaises(tree.Failure):
            explained.check([entry], Source("src/store/x.cpp", "int b = 1;\n").changes())


FILES = {
    "CMakeLists.txt": """cmake_minimum_required(VERSION 3.25)
project(example LANGUAGES CXX)
add_library(example SHARED src/store/larger.cpp)
add_subdirectory(tests/store)
""",
    "src/store/larger.cpp": """int larger(int a, int b);
int larger(int a, int b) {
  return a < b ? b : a;
}
""",
    "tests/store/CMakeLists.txt": """add_executable(store_test larger_test.cpp)
target_link_libraries(store_test PRIVATE example)
""",
    # As much of a test program as the script asks for.
    "tests/store/larger_test.cpp": """#include <cstdio>
#include <cstring>
int larger(int a, int b);
int main(int, char** argv) {
  if (std::strcmp(argv[1], "--gtest_list_tests") == 0) return std::puts("Larger.\\n  IsFound") < 0;
  return larger(EXAMPLE) == 2 ? 0 : 1;
}
""",
}


class RunTest(unittest.TestCase):
    """The script on a project of one function. Turning `<` round is noticed by any test, widening
    it by none, since the larger of two equal numbers is either."""

    def run_with(self, arguments: str) -> tuple[int, list[report.Outcome], str, str]:
        with tempfile.TemporaryDirectory() as directory:
            root = pathlib.Path(directory)
            for name, contents in FILES.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(contents.replace("EXAMPLE", arguments))
            (root / ".gitignore").write_text("/scratch/\n")
            subprocess.run(["git", "init", "-q"], cwd=root, check=True)
            project = mutate.Project(root, root / "scratch", root / "explained.txt", ["store"],
                                     ["store"], workers=1)
            output = io.StringIO()
            with contextlib.redirect_stdout(output), contextlib.redirect_stderr(io.StringIO()):
                status = mutate.run(project, count=10, seed=1)
            source = (root / "src/store/larger.cpp").read_text()
            return status, report.load(project.results), output.getvalue(), source

    def test_a_kill_and_a_survivor_are_told_apart(self) -> None:
        status, outcomes, output, source = self.run_with("1, 2")
        how = {outcome.change.after: outcome.how for outcome in outcomes}
        self.assertEqual(how, {"return a <= b ? b : a;": "survived",
                               "return a >= b ? b : a;": "failure", "return {};": "failure"})
        self.assertIn("src/store/larger.cpp:3: return a < b ? b : a; -> return a <= b ? b : a;", output)
        self.assertIn("2 of 3 changes were noticed: 66.7 %", output)
        self.assertEqual(status, 1)
        self.assertEqual(source, FILES["src/store/larger.cpp"])

    def test_tests_that_fail_as_they_are_are_refused(self) -> None:
        with self.assertRaises(tree.Failure):
            self.run_with("1, 3")


if __name__ == "__main__":
    unittest.main()

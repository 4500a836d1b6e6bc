#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Breaks the program in one place at a time and shows that a test notices it.

mutate.py [NAME]... runs the rows (rows.py) whose file, text or effect contains one of the names; all without.
mutate.py --check only checks that each row's text is in its file exactly once.
It works in a copy of the tree, build/mutation, of which only the broken file and its tests are built anew. Ends
with an error when a row survived. Takes some twenty minutes.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import time

from rows import ROWS

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
WORK = ROOT / "build" / "mutation"
TREE, BUILD = WORK / "tree", WORK / "native"
PARTS = ("CMakeLists.txt", "CMakePresets.json", "app", "cmake", "console", "graph", "link", "nmea", "platform", "resources",
         "settings", "sirf", "sky", "tests", "text", "tools", "ui")
TEST_SECONDS = 120  # a test that hangs has noticed


def misplaced():
    """Rows whose text is not in its file exactly once."""
    for file, text, replacement, effect, _ in ROWS:
        path = ROOT / file
        count = path.read_text(encoding="utf-8").count(text) if path.is_file() else 0
        if count != 1 or text == replacement:
            yield f"{file}: {count} times {text!r} ({effect})"


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)


def build(targets):
    return run("ninja", "-C", BUILD, "-j2", *targets)


def first_failure(program):
    """First message of a test program that noticed, None if it passes."""
    try:
        result = run(BUILD / program, "--gtest_brief=1", "--gtest_fail_fast", timeout=TEST_SECONDS)
    except subprocess.TimeoutExpired:
        return f"{program} hangs"
    if result.returncode == 0:
        return None
    failed = [line.split("]")[1].split("(")[0].strip() for line in result.stdout.splitlines() if "FAILED" in line]
    return failed[0].rstrip(".,") if failed else f"{program} ends with {result.returncode}"


def copy_tree():
    """Updates the copy from the tree; equal files keep their time, so that they are not built again."""
    wanted = {path.relative_to(ROOT) for part in PARTS for path in (ROOT / part, *(ROOT / part).rglob("*"))
              if path.is_file()}
    for path in [path for path in TREE.rglob("*") if path.is_file() and path.relative_to(TREE) not in wanted]:
        path.unlink()
    for name in wanted:
        source, copy = ROOT / name, TREE / name
        if not copy.is_file() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, copy)
            shutil.copymode(source, copy)


def prepare(targets):
    """Brings the copy up to date and builds and runs the tests unbroken."""
    copy_tree()
    if not (BUILD / "build.ninja").is_file():
        # No optimisation and no warnings: a row builds in seconds, and may leave a variable unused.
        done = run("cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD, "-DCMAKE_BUILD_TYPE=None",
                   "-DCMAKE_CXX_FLAGS=-O1 -w")
        if done.returncode:
            sys.exit(done.stdout)
    done = build(targets)
    if done.returncode:
        sys.exit(done.stdout)
    for target in targets:
        failure = first_failure(target)
        if failure:
            sys.exit(f"{target} fails without a row: {failure}")


def outcome(row):
    file, text, replacement, _, tests = row
    path = TREE / file
    original = path.read_text(encoding="utf-8")
    path.write_text(original.replace(text, replacement), encoding="utf-8")
    try:
        programs = tests.split()
        built = build(programs)
        if built.returncode:
            return False, "does not build\n" + built.stdout
        for program in programs:
            failure = first_failure(program)
            if failure:
                return True, failure
        return False, "SURVIVED " + tests
    finally:
        path.write_text(original, encoding="utf-8")


def main(names):
    wrong = list(misplaced())
    if wrong:
        sys.exit("rows that no longer fit:\n" + "\n".join(wrong))
    if names == ["--check"]:
        print(f"{len(ROWS)} rows fit the sources")
        return
    rows = [row for row in ROWS if not names or any(name in text for name in names for text in row)]
    os.nice(5)
    start = time.monotonic()
    prepare(sorted({program for row in rows for program in row[4].split()}))
    survivors = 0
    for row in rows:
        killed, what = outcome(row)
        survivors += not killed
        print(f"{'killed  ' if killed else 'SURVIVED'}  {row[0]}: {row[3]}  [{what}]", flush=True)
    minutes = (time.monotonic() - start) / 60
    print(f"{len(rows) - survivors} of {len(rows)} rows killed, {survivors} survived, in {minutes:.1f} minutes")
    if survivors:
        sys.exit(1)


if __name__ == "__main__":
    main(sys.argv[1:])

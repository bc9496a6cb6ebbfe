"""Runs two programs over the cases of compare_cases.py and compares all that they write.

compare_runs.py BASE-PROGRAM NEW-PROGRAM EXAMPLES-DIRECTORY WORK-DIRECTORY [OPTION...]
"""
import argparse
import difflib
import fnmatch
import itertools
import os
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import compare_cases

TIME_LIMIT = 40  # seconds for one run
DIFF_LINES = 20
SEARCHED_LINES = 1000  # behind the first difference in a file
SHOWN_IN_FULL = 10  # of the runs that differ; the others stand in the file of differences
STREAMS = {"exit status", "standard output", "standard error"}
STAMP = re.compile(rb"(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) "
                   rb"[ 1-3]\d [ 12]\d:\d\d \d{4}")
# Three random digits, also of a name that the end of a line cuts.
WORK_FILE = re.compile(rb"(?<=/[A-Z]{3})\d{3}(?=k(?:q|$))|\d{3}(?=kq\.txt)", re.M)


def masked(data):
    return WORK_FILE.sub(b"###", STAMP.sub(b"(date and time) ", data))


def run(program, case, place):
    """What the program leaves behind and says, by name. The directory is made afresh."""
    (place / "tmp").mkdir(parents=True)
    for name, data in case.files.items():
        (place / name).write_bytes(data)
    environment = {"PATH": "/usr/bin:/bin", "HOME": str(place), "TMPDIR": str(place / "tmp"),
                   "TZ": "UTC", "LC_ALL": "C"}
    try:
        done = subprocess.run(["vardento", *case.words], executable=program, cwd=place,
                              env=environment, input=case.typed, capture_output=True,
                              timeout=TIME_LIMIT)
        written = {"exit status": b"%d\n" % done.returncode, "standard output": done.stdout,
                   "standard error": done.stderr}
    except subprocess.TimeoutExpired:
        return {"exit status": b"none within %d s\n" % TIME_LIMIT}
    for file in sorted(place.rglob("*")):
        name = masked(os.fsencode(file.relative_to(place))).decode(errors="backslashreplace")
        if file.is_file():
            written[name] = file.read_bytes()
    return written


def text_lines(data):
    return data.decode(errors="backslashreplace").splitlines()


def common_start(old, new):
    """How many lines are alike from the start on."""
    return sum(1 for _ in itertools.takewhile(lambda pair: pair[0] == pair[1], zip(old, new)))


def difference(name, old, new):
    """The first lines that differ. What is alike in front and behind is left to no search for the
    shortest difference, which takes long in long files."""
    if old is None or new is None:
        return [f"  {name}: only the {'new' if old is None else 'base'} program wrote it"]
    old, new = text_lines(masked(old)), text_lines(masked(new))
    start = common_start(old, new)
    old, new = old[start:], new[start:]
    end = common_start(old[::-1], new[::-1])
    old, new = (lines[:len(lines) - end][:SEARCHED_LINES] for lines in (old, new))
    # Without the two lines of names; places would be counted from the first difference.
    lines = [line if line[0] != "@" else "@@"
             for line in difflib.unified_diff(old, new, n=1, lineterm="")][3:]
    if not lines:
        return [f"  {name}: line ends or control bytes differ"]
    shown = lines[:DIFF_LINES] + ["..."] * (len(lines) > DIFF_LINES)
    return [f"  {name}, from line {start + 1} on:", *("    " + line for line in shown)]


class Outcome:
    """What one case came to; of what was compared only the amount."""

    def __init__(self, case, old, new):
        self.name = case.name
        self.status = new["exit status"].decode().strip()
        self.files = len(new.keys() - STREAMS)
        self.bytes = sum(map(len, new.values()))
        self.differences = []
        # A run that did not end left nothing to compare.
        for name in {**old, **new} if len(old) > 1 and len(new) > 1 else ["exit status"]:
            a, b = old.get(name), new.get(name)
            if a != b and (a is None or b is None or masked(a) != masked(b)):
                self.differences += difference(name, a, b)


def compare(case, programs, place, keep):
    outcomes = []
    for side, program in programs.items():
        # The same path for both, for it shows in reports.
        outcomes.append(run(program, case, place / "run"))
        if keep:
            (place / "run").rename(place / side)
        else:
            shutil.rmtree(place)
    return Outcome(case, *outcomes)


def fits(name, pattern):
    """A pattern without wildcards is a part of the name."""
    return fnmatch.fnmatchcase(name, pattern) if re.search(r"[*?[]", pattern) else pattern in name


def read_expected(file):
    """Pairs of pattern and reason; two blanks part them, for names hold single ones."""
    lines = (line.strip() for line in file.read_text().splitlines())
    lines = (line.partition("  ") for line in lines if line and not line.startswith("#"))
    return [(pattern, reason.strip()) for pattern, _, reason in lines]


def directory_name(number, case):
    return f"{number:04}-" + re.sub(r"[^A-Za-z0-9]+", "-", case.name)[:40].strip("-")


def arguments():
    parser = argparse.ArgumentParser(prog="compare-runs.sh COMMIT", usage="%(prog)s [OPTION...]")
    for name in ("base", "new", "examples", "work"):
        parser.add_argument(name, type=Path, help=argparse.SUPPRESS)
    parser.add_argument("--only", metavar="PATTERN", help="runs the matching cases alone: "
                        "a shell pattern for the whole name, or a part of it")
    parser.add_argument("--list", action="store_true", help="lists the names of the cases, no more")
    parser.add_argument("--keep", action="store_true", help="leaves the directories of the runs")
    parser.add_argument("--expect", metavar="FILE", type=Path,
                        help='lines "case-pattern  reason" of runs that are expected to differ')
    return parser.parse_args()


def main():
    options = arguments()
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(encoding="utf8", errors="backslashreplace")
    cases = [case for case in compare_cases.all_cases(options.examples)
             if options.only is None or fits(case.name, options.only)]
    if options.list:
        print(*(case.name for case in cases), sep="\n")
        return 0
    if not cases:
        print("No case matches.", file=sys.stderr)
        return 2
    expected = read_expected(options.expect) if options.expect else []
    runs = Path(tempfile.mkdtemp(prefix="runs.", dir=options.work))
    # Copies: another build must not change a program on the way.
    programs = {side: shutil.copy2(getattr(options, side), runs / f"vardento-{side}")
                for side in ("base", "new")}
    places = [runs / directory_name(number, case) for number, case in enumerate(cases)]
    try:
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            outcomes = list(pool.map(
                lambda case, place: compare(case, programs, place, options.keep), cases, places))
    finally:
        if not options.keep:
            shutil.rmtree(runs)

    differing, foreseen = [], []
    for place, outcome in zip(places, outcomes):
        if not outcome.differences:
            continue
        if options.keep:
            outcome.differences.insert(0, f"  kept in {place}")
        reasons = [reason for pattern, reason in expected if fits(outcome.name, pattern)]
        outcome.reason = ", ".join(reasons)
        (foreseen if reasons else differing).append(outcome)

    details = options.work / "differences.txt"
    with open(details, "w", encoding="utf8", errors="backslashreplace") as file:
        for outcome in differing + foreseen:
            print(outcome.name, *outcome.differences, sep="\n", file=file)
    for outcome in differing[:SHOWN_IN_FULL]:
        print(outcome.name, *outcome.differences, sep="\n", end="\n\n")
    for outcome in differing[SHOWN_IN_FULL:]:
        print(outcome.name)
    if foreseen:
        print("Expected to differ:",
              *(f"{outcome.name}  {outcome.reason}" for outcome in foreseen), sep="\n  ")
    for pattern, reason in expected:
        if not any(fits(outcome.name, pattern) for outcome in foreseen):
            print(f"Expected to differ, but does not: {pattern}  {reason}")
    bad_ends = [f"{outcome.name}: {outcome.status}" for outcome in outcomes
                if outcome.status not in ("0", "1", "2")]
    if bad_ends:
        print("The new program was ended by a signal (-) or not at all:", *bad_ends, sep="\n  ")
    print(f"{len(cases)} runs ({len({case.setting for case in cases})} settings, "
          f"{len({case.data for case in cases})} data sets), "
          f"{sum(outcome.files for outcome in outcomes)} files, "
          f"{sum(outcome.bytes for outcome in outcomes):,} bytes: "
          f"{len(differing)} differ, {len(foreseen)} differ as expected")
    if differing or foreseen:
        print(f"All differences: {details}")
    if options.keep:
        print(f"The runs: {runs}")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())

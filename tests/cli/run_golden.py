#!/usr/bin/env python3
"""Golden-file tests of zolprof: every case is a folder under tests/cli.

A case folder holds:
  cmd        the arguments of zolprof, one line, split as a POSIX shell would
             (lines starting with "#" are comments: say there what the case checks;
             no line at all runs zolprof without arguments)
  inputs     what to put in the scratch folder before the run, one step a line:
               copy SRC [DEST]           a file, or a folder with its contents
                                         (DEST "." puts the contents in work/)
               truncate SRC BYTES DEST   the first BYTES bytes of a file
             SRC is relative to the repository root, DEST to the working folder
  stdout, stderr, exit_code
             what the run printed and returned
  files      every file in the scratch folder after the run, with its fate:
               "= path"  an input left as it was
               "~ path"  an input the run changed (its new bytes are in out/)
               "- path"  an input the run deleted
               "+ path"  a file the run wrote (its bytes are in out/)
  out/       the bytes of every written or changed file

The scratch folder has three parts: work/ (the inputs; the command runs
there), home/ (ZOLMARK_HOME and HOME: settings and the run's temporary
folders) and tmp/ (TMPDIR). Files left in home/ and tmp/ are outputs too.

Only what must vary between runs is normalised, in every output alike:
  - the scratch folder's path becomes "<scratch>";
  - a date and time of the run itself (a merged session is stamped with the
    moment it is made) becomes "YYYY-MM-DD hh:mm:ss" or "dd/mm/yyyy hh:mm:ss".
Both keep .pfd files well formed: a path stored with a 32-bit length in
front of it gets its length fixed, and a time keeps its length.

With ZOLMARK_UPDATE_GOLDEN=1 the references of the cases run are rewritten
from what zolprof does now (for a deliberate change of output; review the
diff before committing it).

Usage: run_golden.py --zolprof PATH [--scratch DIR] [CASE...]
With no CASE every case is run.
"""

import argparse
import difflib
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
REPO = os.path.dirname(os.path.dirname(HERE))
UPDATE = os.environ.get("ZOLMARK_UPDATE_GOLDEN", "") not in ("", "0")
TIMEOUT_SECONDS = 300  # sanitizer builds are several times slower
DIFF_LINES = 40
SCRATCH_TOKEN = b"<scratch>"


class CaseError(Exception):
    pass


def list_cases():
    return sorted(
        name for name in os.listdir(HERE) if os.path.isfile(os.path.join(HERE, name, "cmd"))
    )


def meaningful_lines(path):
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f, 1):
            line = line.strip()
            if line and not line.startswith("#"):
                yield number, line


def read_args(case_dir):
    lines = [line for _, line in meaningful_lines(os.path.join(case_dir, "cmd"))]
    if len(lines) > 1:
        raise CaseError("cmd must hold one line of arguments (none for a run without any)")
    return shlex.split(lines[0]) if lines else []


def inside(root, relative, what):
    path = os.path.normpath(os.path.join(root, relative))
    if path != root and not path.startswith(root + os.sep):
        raise CaseError(f"{what} {relative!r} leaves its folder")
    return path


def prepare_inputs(case_dir, work):
    inputs = os.path.join(case_dir, "inputs")
    if not os.path.exists(inputs):
        return
    for number, line in meaningful_lines(inputs):
        words = shlex.split(line)
        where = f"inputs:{number}"
        if words[0] == "copy" and len(words) in (2, 3):
            src = inside(REPO, words[1], "source")
            dest = inside(work, words[2] if len(words) == 3 else os.path.basename(src), "target")
            if os.path.isdir(src):
                shutil.copytree(src, dest, dirs_exist_ok=True)
            else:
                os.makedirs(os.path.dirname(dest), exist_ok=True)
                shutil.copyfile(src, dest)
        elif words[0] == "truncate" and len(words) == 4:
            src = inside(REPO, words[1], "source")
            dest = inside(work, words[3], "target")
            with open(src, "rb") as f:
                data = f.read(int(words[2]))
            os.makedirs(os.path.dirname(dest), exist_ok=True)
            with open(dest, "wb") as f:
                f.write(data)
        else:
            raise CaseError(f"{where}: expected 'copy SRC [DEST]' or 'truncate SRC BYTES DEST'")


def snapshot(root):
    """Relative path (with "/") -> bytes, for every file under root."""
    files = {}
    for folder, _, names in os.walk(root):
        for name in names:
            path = os.path.join(folder, name)
            with open(path, "rb") as f:
                files[os.path.relpath(path, root).replace(os.sep, "/")] = f.read()
    return files


class Normaliser:
    def __init__(self, scratch, started, ended):
        self.scratch = [p.encode() for p in sorted({scratch, os.path.realpath(scratch)}, key=len)]
        self.scratch.reverse()  # the longer spelling first
        # Every second of the run, in the forms the program writes "now" in
        # (the child runs with TZ=UTC).
        self.moments = {}
        second = int(started) - 1
        while second <= int(ended) + 1:
            t = time.gmtime(second)
            self.moments[time.strftime("%Y-%m-%d %H:%M:%S", t).encode()] = b"YYYY-MM-DD hh:mm:ss"
            self.moments[time.strftime("%d/%m/%Y %H:%M:%S", t).encode()] = b"dd/mm/yyyy hh:mm:ss"
            second += 1
        self.moment_pattern = re.compile(
            rb"\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}|\d{2}/\d{2}/\d{4} \d{2}:\d{2}:\d{2}"
        )

    def __call__(self, data):
        for prefix in self.scratch:
            data = self._replace_path(data, prefix)
        return self.moment_pattern.sub(lambda m: self.moments.get(m.group(0), m.group(0)), data)

    @staticmethod
    def _replace_path(data, prefix):
        # Session files store strings as a 32-bit little-endian length and the
        # bytes: a path that starts such a string gets its length fixed, so the
        # normalised file is still one the program could read.
        out = bytearray()
        start = 0
        while True:
            at = data.find(prefix, start)
            if at < 0:
                break
            out += data[start:at]
            if len(out) >= 4:
                length = int.from_bytes(out[-4:], "little")
                if length >= len(prefix) and at + length <= len(data):
                    new_length = length - len(prefix) + len(SCRATCH_TOKEN)
                    out[-4:] = new_length.to_bytes(4, "little")
            out += SCRATCH_TOKEN
            start = at + len(prefix)
        out += data[start:]
        return bytes(out)


def run_case(name, zolprof, scratch_root):
    case_dir = os.path.join(HERE, name)
    args = read_args(case_dir)
    scratch = os.path.join(scratch_root, name)
    shutil.rmtree(scratch, ignore_errors=True)
    work, home, tmp = (os.path.join(scratch, part) for part in ("work", "home", "tmp"))
    for folder in (work, home, tmp):
        os.makedirs(folder)
    prepare_inputs(case_dir, work)
    before = snapshot(scratch)

    env = dict(os.environ)
    env.pop("ZOLMARK_TIMING_LOG", None)
    env.pop("XDG_DATA_HOME", None)
    env.update(ZOLMARK_HOME=home, HOME=home, TMPDIR=tmp, TZ="UTC", LC_ALL="C")
    started = time.time()
    try:
        run = subprocess.run(
            [zolprof] + args,
            cwd=work,
            env=env,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=TIMEOUT_SECONDS,
        )
    except subprocess.TimeoutExpired:
        raise CaseError(f"zolprof did not end within {TIMEOUT_SECONDS} s")
    ended = time.time()
    after = snapshot(scratch)

    normalise = Normaliser(scratch, started, ended)
    actual = {
        "stdout": normalise(run.stdout),
        "stderr": normalise(run.stderr),
        "exit_code": f"{run.returncode}\n".encode(),
    }
    manifest = []
    out_files = {}
    for path in sorted(set(before) | set(after)):
        if path not in after:
            manifest.append(f"- {path}")
        elif path not in before:
            manifest.append(f"+ {path}")
            out_files[path] = normalise(after[path])
        elif before[path] != after[path]:
            manifest.append(f"~ {path}")
            out_files[path] = normalise(after[path])
        else:
            manifest.append(f"= {path}")
    actual["files"] = ("\n".join(manifest) + "\n").encode()

    if UPDATE:
        write_references(case_dir, actual, out_files)
        shutil.rmtree(scratch, ignore_errors=True)
        return []
    problems = compare(case_dir, actual, out_files)
    if not problems:
        shutil.rmtree(scratch, ignore_errors=True)
    else:
        problems.append(f"(the run's files are kept in {scratch})")
    return problems


def write_references(case_dir, actual, out_files):
    for name, data in actual.items():
        with open(os.path.join(case_dir, name), "wb") as f:
            f.write(data)
    out_dir = os.path.join(case_dir, "out")
    shutil.rmtree(out_dir, ignore_errors=True)
    for path, data in out_files.items():
        target = os.path.join(out_dir, path)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "wb") as f:
            f.write(data)


def read_reference(path):
    if not os.path.exists(path):
        return None
    with open(path, "rb") as f:
        return f.read()


def compare(case_dir, actual, out_files):
    problems = []
    for name, data in actual.items():
        expected = read_reference(os.path.join(case_dir, name))
        if expected != data:
            problems.append(describe(name, expected, data))
    out_dir = os.path.join(case_dir, "out")
    expected_outs = snapshot(out_dir) if os.path.isdir(out_dir) else {}
    for path in sorted(set(expected_outs) | set(out_files)):
        expected = expected_outs.get(path)
        data = out_files.get(path)
        if expected != data:
            problems.append(describe(f"out/{path}", expected, data))
    return problems


def looks_binary(data):
    return b"\0" in data[:4096]


def as_text(data):
    # zolprof prints UTF-8; the pages and exports it writes are Windows-1252.
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("cp1252", errors="replace")


def describe(name, expected, actual):
    if expected is None:
        return f"{name}: not expected, but the run gave {len(actual)} bytes"
    if actual is None:
        return f"{name}: expected ({len(expected)} bytes), but the run gave none"
    if looks_binary(expected) or looks_binary(actual):
        at = next(
            (i for i, (a, b) in enumerate(zip(expected, actual)) if a != b),
            min(len(expected), len(actual)),
        )
        lo = max(0, at - 16)
        return (
            f"{name}: binary files differ ({len(expected)} bytes expected, {len(actual)} "
            f"got); first difference at offset {at}:\n"
            f"  expected {expected[lo:at + 16].hex(' ')}\n"
            f"  got      {actual[lo:at + 16].hex(' ')}"
        )
    diff = list(
        difflib.unified_diff(
            as_text(expected).splitlines(keepends=True),
            as_text(actual).splitlines(keepends=True),
            f"expected/{name}",
            f"actual/{name}",
            n=2,
        )
    )
    if not diff:  # the same lines: only the line ends or the last newline differ
        return f"{name}: differs in line ends only ({expected[-20:]!r} / {actual[-20:]!r})"
    shown = "".join(line if line.endswith("\n") else line + "\n" for line in diff[:DIFF_LINES])
    more = f"  ... ({len(diff) - DIFF_LINES} more diff lines)\n" if len(diff) > DIFF_LINES else ""
    return f"{name} differs:\n{shown}{more}".rstrip("\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--zolprof", required=True, help="the zolprof binary to test")
    parser.add_argument(
        "--scratch",
        help="folder for the runs, one subfolder per case, kept when the case fails "
        "(default: a new temporary folder)",
    )
    parser.add_argument("cases", nargs="*", help="case folders to run (default: all)")
    options = parser.parse_args()
    zolprof = os.path.abspath(options.zolprof)
    if not os.access(zolprof, os.X_OK):
        print(f"run_golden: {zolprof}: not an executable", file=sys.stderr)
        return 2
    scratch_root = os.path.abspath(options.scratch or tempfile.mkdtemp(prefix="zolprof-golden-"))
    cases = options.cases or list_cases()
    unknown = [c for c in cases if c not in list_cases()]
    if unknown:
        print(f"run_golden: no such case: {', '.join(unknown)}", file=sys.stderr)
        return 2

    failed = []
    for name in cases:
        try:
            problems = run_case(name, zolprof, scratch_root)
        except (CaseError, OSError, ValueError) as e:
            problems = [f"the case can't be run: {e}"]
        if UPDATE:
            print(f"updated {name}" if not problems else f"NOT updated {name}")
        if problems:
            failed.append(name)
            print(f"FAIL {name}: zolprof {' '.join(shlex.quote(a) for a in read_args_safe(name))}")
            for problem in problems:
                print("  " + problem.replace("\n", "\n  "))
        elif not UPDATE:
            print(f"ok   {name}")
    if not options.scratch and not failed:
        shutil.rmtree(scratch_root, ignore_errors=True)
    passed = len(cases) - len(failed)
    print(f"golden: {passed} passed, {len(failed)} failed")
    if failed:
        print("Failed cases: " + " ".join(failed))
        print("Run them again: " + " ".join(
            shlex.quote(a) for a in [sys.executable, __file__, "--zolprof", zolprof] + failed))
        print("If the change of output is intended, the same with ZOLMARK_UPDATE_GOLDEN=1 "
              "rewrites their references.")
    return 1 if failed else 0


def read_args_safe(name):
    try:
        return read_args(os.path.join(HERE, name))
    except (CaseError, OSError, ValueError):
        return ["?"]


if __name__ == "__main__":
    sys.exit(main())

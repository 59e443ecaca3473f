#!/usr/bin/env python3
"""The damaged-file corpus: every line of tests/damaged/cases is one file made
from a good log or session file by a recipe, and the outcome zolprof must give.

A line:   NAME | SOURCE | RECIPE | OUTCOME | TEXT
  SOURCE  a file of the demo (examples/demo/instrumented) or of tests/cli/fixtures
  RECIPE  steps separated by ";", applied in order to SOURCE's bytes:
            reblock K            a log's records regrouped into blocks of K records
            cut AT               keep the bytes before AT
            flip AT BIT          invert one bit
            line L TEXT          a log's header line L (1 to 9) replaced
            length I DIGITS      the six length digits of block I replaced
            origin I R ID        the ID of record R of block I (re-compressed)
            i32 AT VALUE         a 32-bit integer written at AT
            f64 AT VALUE         a double written at AT (nan, inf, -1e300 ...)
            remove GLOB          files of the demo folder taken away
          AT is a byte offset, or a place plus an offset: block:I (the length
          digits of block I; one past the last block is the trailer),
          lines (a .pfd's CodeLineValue records), pairs (its FlowPair records),
          counts (its three counts), e.g. "block:2+9", "lines+40".
  OUTCOME refused  zolprof exits 1 naming the file and saying TEXT (unless "-")
          loaded   zolprof exits 0 (and says TEXT on stderr, unless TEXT is "-")

Each file is read with "zolprof dump" in a scratch copy of the demo folder
(whose project the logs and session files name); a refused log is also given
to "zolprof load", which must keep it. No run may crash, trip a sanitizer, or
change, add or delete any file.

    run_damaged.py --zolprof PATH [NAME...]
"""
import argparse
import fnmatch
import hashlib
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
DEMO = ROOT / "examples" / "demo" / "instrumented"
FIXTURES = ROOT / "tests" / "cli" / "fixtures"
RECORDS = 50001
RECORD = 16


def log_blocks(data):
    """(start of the header's end, [(offset, length)], offset of the trailer)."""
    pos = 0
    for _ in range(9):
        pos = data.index(b"\r\n", pos) + 2
    start, blocks = pos, []
    while pos < len(data) - 100:
        n = int(data[pos:pos + 6], 16)
        blocks.append((pos, n))
        pos += 6 + n
    return start, blocks, pos


def inflate_blocks(data):
    _, blocks, end = log_blocks(data)
    return [zlib.decompress(data[o + 6:o + 6 + n]) for o, n in blocks], data[end:]


def frame(records):
    packed = zlib.compress(records, 6)
    return b"%06X" % len(packed) + packed


def reblock(data, k):
    start, _, _ = log_blocks(data)
    inflated, trailer = inflate_blocks(data)
    rows, closing = [], None
    for block in inflated:
        block = block.ljust(RECORDS * RECORD, b"\0")
        for r in range(RECORDS - 1):
            row = block[r * RECORD:(r + 1) * RECORD]
            if row[:8] == b"\0" * 8:
                break
            rows.append(row)
        closing = block[(RECORDS - 1) * RECORD:]
    out = data[:start]
    chunks = [rows[i:i + k] for i in range(0, len(rows), k)] or [[]]
    for i, chunk in enumerate(chunks):
        last = i == len(chunks) - 1
        # An earlier block closes when its last record was written.
        close = closing if last else chunk[-1][:8] + struct.pack("<hhi", 0, 0, 0)
        body = b"".join(chunk).ljust((RECORDS - 1) * RECORD, b"\0") + close
        out += frame(body)
    return out + trailer


def pfd_places(data):
    pos = 9
    texts = []

    def skip_text():
        nonlocal pos
        n = struct.unpack_from("<i", data, pos)[0]
        texts.append(data[pos + 4:pos + 4 + n])
        pos += 4 + n

    for _ in range(3):
        skip_text()
    for _ in range(2 if texts[2].lower().endswith(b".vbg") else 1):
        skip_text()
    places = {"counts": pos}
    lines, procs, mods = struct.unpack_from("<iii", data, pos)
    pos += 12
    pos += 4 + struct.unpack_from("<i", data, pos)[0]  # the session totals
    if lines:
        places["lines"] = pos + 4
        for _ in range(5):
            pos += 4 + struct.unpack_from("<i", data, pos)[0]
    for _ in range(2):
        pos += 4 + struct.unpack_from("<i", data, pos)[0]
    pos += 12
    places["pairs"] = pos + 4
    return places


def place(data, at):
    m = re.fullmatch(r"(?:([a-z]+)(?::(\d+))?)?([+-]?\d+)?", at)
    if not m:
        raise ValueError("bad place " + at)
    name, index, offset = m.group(1), m.group(2), int(m.group(3) or 0)
    if name is None:
        return offset
    if name == "block":
        _, blocks, end = log_blocks(data)
        i = int(index)
        return (blocks[i - 1][0] if i <= len(blocks) else end) + offset
    return pfd_places(data)[name] + offset


def apply(data, step, folder):
    op, *args = step.split(" ", 1)
    args = args[0].split(" ") if args else []
    if op == "reblock":
        return reblock(data, int(args[0]))
    if op == "cut":
        return data[:place(data, args[0])]
    if op == "flip":
        at = place(data, args[0])
        return data[:at] + bytes([data[at] ^ (1 << int(args[1]))]) + data[at + 1:]
    if op == "line":
        lines = data.split(b"\r\n", 9)
        lines[int(args[0]) - 1] = " ".join(args[1:]).encode()
        return b"\r\n".join(lines)
    if op == "length":
        at = place(data, "block:" + args[0])
        return data[:at] + args[1].encode() + data[at + 6:]
    if op == "origin":
        start, blocks, _ = log_blocks(data)
        i, r, value = int(args[0]), int(args[1]), int(args[2])
        o, n = blocks[i - 1]
        body = bytearray(zlib.decompress(data[o + 6:o + 6 + n]))
        struct.pack_into("<i", body, (r - 1) * RECORD + 12, value)
        return data[:o] + frame(bytes(body)) + data[o + 6 + n:]
    if op == "i32":
        at = place(data, args[0])
        return data[:at] + struct.pack("<i", int(args[1])) + data[at + 4:]
    if op == "f64":
        at = place(data, args[0])
        return data[:at] + struct.pack("<d", float(args[1])) + data[at + 8:]
    if op == "remove":
        for f in list(folder.iterdir()):
            if fnmatch.fnmatch(f.name, args[0]):
                f.unlink()
        return data
    raise ValueError("unknown step " + op)


def snapshot(folder):
    return {str(p.relative_to(folder)): hashlib.sha256(p.read_bytes()).hexdigest()
            for p in folder.rglob("*") if p.is_file()}


def run(zolprof, scratch, args):
    env = dict(os.environ, ZOLMARK_HOME=str(scratch / "home"), HOME=str(scratch / "home"),
               TMPDIR=str(scratch / "tmp"))
    p = subprocess.run([zolprof] + args, cwd=scratch / "work", env=env, capture_output=True,
                       text=True, errors="replace", timeout=300)
    return p.returncode, p.stdout, p.stderr


def check_case(zolprof, fields, scratch):
    name, source, recipe, outcome, text = fields
    work = scratch / "work"
    shutil.copytree(DEMO, work)
    (scratch / "home").mkdir()
    (scratch / "tmp").mkdir()
    src = DEMO / source if (DEMO / source).exists() else FIXTURES / source
    data = src.read_bytes()
    for step in filter(None, (s.strip() for s in recipe.split(";"))):
        data = apply(data, step, work)
    target = work / (name + pathlib.Path(source).suffix)
    target.write_bytes(data)
    faults = []
    commands = [["dump", target.name]]
    if outcome == "refused" and target.suffix == ".pfl":
        commands.append(["load", target.name])
    for args in commands:
        before = snapshot(scratch)
        code, out, err = run(zolprof, scratch, args)
        what = " ".join(args)
        if code < 0 or re.search(r"Sanitizer|runtime error:", err):
            faults.append(f"{what}: crashed (exit {code}):\n{err}")
            continue
        if outcome == "refused":
            if code != 1 or target.name not in err or (text != "-" and text not in err):
                faults.append(f"{what}: expected refusal naming the file and saying "
                              f"{text!r}; exit {code}, stderr:\n{err}")
        else:
            if code != 0 or (text != "-" and text not in err):
                faults.append(f"{what}: expected a load" +
                              ("" if text == "-" else f" saying {text!r}") +
                              f"; exit {code}, stderr:\n{err}")
        after = snapshot(scratch)
        if after != before:
            changed = sorted(set(before.items()) ^ set(after.items()))
            faults.append(f"{what}: files changed: {changed}")
    return faults


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--zolprof", required=True)
    ap.add_argument("names", nargs="*")
    a = ap.parse_args()
    cases = []
    for line in (pathlib.Path(__file__).parent / "cases").read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            fields = [f.strip() for f in line.split("|")]
            if len(fields) != 5:
                sys.exit("bad case line: " + line)
            cases.append(fields)
    if a.names:
        cases = [c for c in cases if c[0] in a.names]
        if len(cases) != len(a.names):
            sys.exit("unknown case among " + " ".join(a.names))
    failed = 0
    for fields in cases:
        with tempfile.TemporaryDirectory() as tmp:
            faults = check_case(os.path.abspath(a.zolprof), fields, pathlib.Path(tmp))
        status = "ok" if not faults else "FAILED"
        print(f"{fields[0]}: {status}")
        for f in faults:
            print("  " + f.replace("\n", "\n  "))
        failed += bool(faults)
    print(f"{len(cases) - failed} of {len(cases)} damaged files gave their outcome")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets into DIR/<target>/.

The seeds are real inputs of each reader: the demo's logs and project, the
session files of the command-line tests, and small recordings, live messages
and settings files put together here in the formats the readers take.

    python3 scripts/fuzz_seeds.py DIR
"""
import pathlib
import struct
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DEMO = ROOT / "examples" / "demo" / "instrumented"
FIXTURES = ROOT / "tests" / "cli" / "fixtures"


def utf16_field(text, size):
    data = text.encode("utf-16-le") + b"\0\0"
    return data + b"\0" * (size - len(data))


def pds(profiler_id, lines, procedures):
    return (struct.pack("<iii", 4242, 77, profiler_id) + utf16_field("Orders", 256) +
            utf16_field("C:\\Work\\Orders\\Orders.vbp", 1024) + utf16_field("", 1024) +
            utf16_field("C:\\Work\\Orders\\zolOptions_Orders.ini", 1024) +
            struct.pack("<iiiii", 1, 0, 3, lines, procedures))


def frame(code, w, l):
    return struct.pack("<Iii", code, w, l)


def live_run():
    """One thread registering, a call with two lines, its end, the run's end."""
    return (frame(0x401, 0, 0) + pds(1, 4, 2) + frame(0x406, 1, 0) + frame(0x405, 1, 0) +
            frame(0x407, 1, 0) + frame(0x403, 1, 1) + frame(0x402, 1, 1) + frame(0x402, 1, 2) +
            frame(0x404, 1, 1) + frame(0x40A, 0, 0) + frame(0x408, 1, 0))


def recording():
    threads = [pds(1, 4, 2), pds(2, 4, 2)]
    out = b"ZOLEVT1\0" + struct.pack("<qqi", 3579545, 120, len(threads))
    for p in threads:
        out += p + struct.pack("<qB3x", 3000, 1)
    events = [(1, 1, 1), (1, 3, 1), (2, 1, 2), (1, 3, 2), (2, 2, 2), (1, 2, 1)]
    out += struct.pack("<i", len(events))
    for time, (thread, action, origin) in enumerate(events, start=1000):
        out += struct.pack("<hBxiq", thread, action, origin, time * 10)
    return out


def main():
    out = pathlib.Path(sys.argv[1])
    seeds = {name: {} for name in
             ("pfl", "session_file", "project", "ini", "recording", "receiver")}
    for log in sorted(DEMO.glob("*.pfl")):
        seeds["pfl"][log.name] = log.read_bytes()
    for pfd in sorted(FIXTURES.glob("*.pfd")):
        seeds["session_file"][pfd.name] = pfd.read_bytes()
    vbp = b"Type=Exe\r\nModule=Module1; Module1.bas\r\nStartup=\"Sub Main\"\r\n"
    seeds["project"]["Orders.vbp"] = (DEMO / "Orders.vbp").read_bytes() + b"\0"
    for source in sorted(list(DEMO.glob("*.bas")) + list(DEMO.glob("*.cls")) +
                         list(DEMO.glob("*.frm"))):
        seeds["project"][source.name] = vbp + b"\0" + source.read_bytes()
    seeds["ini"]["settings.ini"] = (
        b"[Profiler]\r\nhWnd=0\r\nID=1\r\nSocket=/run/user/1000/zol.sock\r\n"
        b"ShowToolbar=True\r\nFile1=C:\\Runs\\Monday.pfd\r\n\r\n"
        b"[ProfilerReport]\r\nIncludeSource=False\r\nTitle=\"Report\"\r\n")
    seeds["ini"]["sessions.ini"] = (
        b"[Profiler Sessions]\r\nSession1=C:\\Runs\\a.pfl\r\nSession2='b.pfd'\r\n")
    seeds["recording"]["two_threads.zle"] = recording()
    seeds["receiver"]["one_thread.bin"] = live_run()
    seeds["receiver"]["short_frame.bin"] = frame(0x402, 1, 1)[:7]
    for target, files in seeds.items():
        folder = out / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, data in files.items():
            (folder / name).write_bytes(data)
        print(f"{target}: {len(files)} seeds")


if __name__ == "__main__":
    main()

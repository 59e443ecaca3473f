"""Reads a grid export with Python's csv module and checks its shape.

usage: check_export.py FILE csv|txt COLUMNS [LINE_COLUMN EXPECTED_TEXT_FILE]

Every record must have COLUMNS fields. With LINE_COLUMN (from 0) and a file of
expected texts (one per data row, in order, latin-1), that column must read
back exactly as written in the grid.
"""
import csv
import sys


def main():
    path, kind, columns = sys.argv[1], sys.argv[2], int(sys.argv[3])
    with open(path, newline="", encoding="cp1252") as f:
        if kind == "csv":
            rows = list(csv.reader(f))
        else:
            rows = list(csv.reader(f, delimiter="\t", quoting=csv.QUOTE_NONE))
    bad = [i for i, r in enumerate(rows) if len(r) != columns]
    if bad:
        print("records with the wrong number of fields: %s (%s)" % (bad, [rows[i] for i in bad]))
        return 1
    if len(sys.argv) > 4:
        col = int(sys.argv[4])
        with open(sys.argv[5], encoding="cp1252", newline="") as f:
            expected = f.read().split("\n")
        got = [r[col] for r in rows[1:len(expected) + 1]]
        if got != expected:
            print("texts differ:\n%r\n%r" % (got, expected))
            return 1
    print("%d records of %d fields" % (len(rows), columns))
    return 0


if __name__ == "__main__":
    sys.exit(main())

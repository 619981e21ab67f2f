#!/usr/bin/env python3
"""Writes the fixed-field MPS models that bench_mps_read reads.

The full model has 200,000 rows, 400,000 columns and 2,400,000 matrix
entries, with 8-character names, an RHS on most rows, RANGES on a fifth of
the inequality rows and a BOUNDS card on every second column using the keys
LO, UP, FX, FR, MI, PL, BV, LI and UI (the keys every reader compared reads;
about 85 MB). The half and quarter models scale every count down, so reading time
can be checked to grow linearly with the file.

    python3 bench/mps_generate.py --out-dir build/bench/mps_data

writes mps_full.mps, mps_half.mps and mps_quarter.mps there (existing files
are kept unless --force is given). The output is the same on every
run: the generator uses its own seeded random numbers.
"""
import argparse
import os
import random

FULL = (200_000, 400_000, 2_400_000)
PARTS = {"full": 1, "half": 2, "quarter": 4}


def field(text, width, right=False):
    return text.rjust(width) if right else text.ljust(width)


def card(key="", n1="", n2="", v1="", n3="", v2=""):
    line = (" " + field(key, 2) + " " + field(n1, 8) + "  " + field(n2, 8) + "  " +
            field(v1, 12, True))
    if n3:
        line += "   " + field(n3, 8) + "  " + v2
    return line.rstrip() + "\n"


def number(rng):
    return "%.6g" % (rng.uniform(-1000.0, 1000.0))


def generate(path, rows, cols, entries, seed=20240611):
    rng = random.Random(seed)
    row_names = ["R%07d" % i for i in range(rows)]
    col_names = ["C%07d" % i for i in range(cols)]
    types = ["N"] + [rng.choice("ELG") for _ in range(rows - 1)]
    per_col = entries // cols
    with open(path, "w", buffering=1 << 22) as out:
        out.write("NAME          BENCH\nROWS\n")
        out.writelines(card(types[i], row_names[i]) for i in range(rows))
        out.write("COLUMNS\n")
        buf = []
        for c in range(cols):
            # The first entries cover every row once, so no row is empty.
            start = (c * per_col) % rows
            picked = {(start + k) % rows for k in range(per_col // 2)}
            while len(picked) < per_col:
                picked.add(rng.randrange(rows))
            pairs = sorted(picked)
            name = col_names[c]
            for k in range(0, per_col, 2):
                buf.append(card("", name, row_names[pairs[k]], number(rng),
                                row_names[pairs[k + 1]], number(rng)))
            if len(buf) > 20000:
                out.writelines(buf)
                buf.clear()
        out.writelines(buf)
        out.write("RHS\n")
        for r in range(1, rows - 1, 2):
            out.write(card("", "RHS", row_names[r], number(rng), row_names[r + 1], number(rng)))
        out.write("RANGES\n")
        for r in range(1, rows, 5):
            if types[r] != "E":
                out.write(card("", "RNG", row_names[r], "%.4g" % rng.uniform(0.5, 50.0)))
        out.write("BOUNDS\n")
        keys = ["LO", "UP", "FX", "FR", "MI", "PL", "BV", "LI", "UI"]
        for c in range(0, cols, 2):
            key = keys[(c // 2) % len(keys)]
            if key in ("FR", "MI", "PL", "BV"):
                out.write(card(key, "BND", col_names[c]))
            elif key in ("LI", "UI"):
                out.write(card(key, "BND", col_names[c], str(rng.randrange(1, 100))))
            else:
                out.write(card(key, "BND", col_names[c], "%.5g" % rng.uniform(0.0, 100.0)))
        out.write("ENDATA\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--out-dir", default="build/bench/mps_data")
    parser.add_argument("--parts", default="full,half,quarter",
                        help="comma-separated subset of full, half, quarter")
    parser.add_argument("--force", action="store_true", help="rewrite existing files")
    args = parser.parse_args()
    os.makedirs(args.out_dir, exist_ok=True)
    for part in args.parts.split(","):
        divisor = PARTS[part]
        rows, cols, entries = (n // divisor for n in FULL)
        path = os.path.join(args.out_dir, "mps_%s.mps" % part)
        if os.path.exists(path) and not args.force:
            print("kept", path)
            continue
        generate(path, rows, cols, entries)
        print("wrote %s: %d rows, %d columns, %d entries, %.1f MB" %
              (path, rows, cols, entries, os.path.getsize(path) / 1e6))


if __name__ == "__main__":
    main()

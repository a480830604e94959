#!/usr/bin/env python3
"""Cross-checks data/VarDesk.avl against the host's table data/hostvars.tsv.

Every host variable must be described exactly once, with the marks of its mode and scope, under a
theme the file defines; the file may describe no variable the host lacks. Exits 1 on a mismatch.
Usage: check_avl.py [AVL] [TABLE]
"""
import re
import sys
from pathlib import Path

root = Path(__file__).resolve().parents[2]
avl = Path(sys.argv[1]) if len(sys.argv) > 1 else root / "data/VarDesk.avl"
table = Path(sys.argv[2]) if len(sys.argv) > 2 else root / "data/hostvars.tsv"

host = {}
for line in table.read_text(encoding="utf-8").splitlines():
    if not line.strip() or line.startswith(";"):
        continue
    # A quoted default may hold blanks.
    f = re.findall(r'"(?:[^"\\]|\\.)*"|\S+', line)
    host[f[0].upper()] = ("-" if f[3] == "ro" else "+") + ("+" if f[4] == "drawing" else "-")

problems, themes, described = [], set(), {}
for number, line in enumerate(avl.read_text(encoding="utf-8").splitlines(), 1):
    line = line.strip()
    if not line or line.startswith(";"):
        continue
    fields = line.split(";;")[0].split("#")
    if len(fields) == 3:
        themes.add(int(fields[2]))
    elif len(fields) == 4:
        name = fields[1].strip().upper()
        if name in described:
            problems.append(f"line {number}: {name} described twice")
        described[name] = (number, int(fields[0]), fields[2].strip()[:2], fields[3].strip())
    else:
        problems.append(f"line {number}: {len(fields)} fields")

for name, (number, theme, marks, text) in described.items():
    if name not in host:
        problems.append(f"line {number}: {name} is unknown to the host")
    elif host[name] != marks:
        problems.append(f"line {number}: {name} has marks {marks}, the host says {host[name]}")
    if theme not in themes:
        problems.append(f"line {number}: {name} stands under the undefined theme {theme}")
    if not text:
        problems.append(f"line {number}: {name} has no description")
for name in sorted(set(host) - set(described)):
    problems.append(f"{name} is not described")

print("\n".join(problems) if problems else f"{len(described)} variables, {len(themes)} themes: ok")
sys.exit(1 if problems else 0)

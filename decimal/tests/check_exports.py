"""Compares the symbols that a shared library exports with the functions that its header declares.

Usage: check_exports.py NM LIBRARY HEADER
"""
import re
import subprocess
import sys

nm, library, header = sys.argv[1:]
listing = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True)
exported = {line.split()[-1] for line in listing.stdout.splitlines()}
with open(header, encoding="utf-8") as file:
    declared = set(re.findall(r"^QXE_NUMERIC_API \w+ (\w+)\(", file.read(), re.MULTILINE))

if not declared or exported != declared:
    sys.exit(f"exported only: {sorted(exported - declared)}\ndeclared only: {sorted(declared - exported)}")

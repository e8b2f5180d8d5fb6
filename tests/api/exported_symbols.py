"""Compares what shared libraries export with what their headers declare, both ways, and checks that
they need the system's own libraries only.

exported_symbols.py --nm NM --readelf READELF LIBRARY HEADER [LIBRARY HEADER]...
"""

import argparse
import re
import subprocess
import sys

SYSTEM = r"libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|libpthread\.so\.0|ld-linux.*"
OWN = {"libqxe.so": r"libqxenumeric\.so\.\d+", "libqxenumeric.so": None}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def plain_text(header):
    """The header without comments and preprocessor lines."""
    with open(header, encoding="utf-8") as file:
        text = file.read()
    text = re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)
    return re.sub(r"^[ \t]*#(?:\\\n|[^\n])*", "", text, flags=re.M)


def declared(header):
    """Names of the functions declared: those of C linkage, those of C++ linkage."""
    names = {True: set(), False: set()}
    linkage_is_c = False
    depth = 0  # of other braces, which hold no functions
    statement = ""
    for part in re.split(r"([{};])", plain_text(header)):
        if part == "{" and depth == 0 and re.search(r'extern\s+"C"\s*$', statement):
            linkage_is_c, statement = True, ""
        elif part == "{":
            depth += 1
        elif part == "}" and depth > 0:
            depth -= 1
        elif part == "}":
            linkage_is_c, statement = False, ""
        elif part == ";" and depth == 0:
            function = re.search(r"(\w+)\s*\(", re.sub(r"__attribute__\s*\(\(.*?\)\)", "", statement))
            if function and not statement.lstrip().startswith("typedef"):
                names[linkage_is_c].add(function.group(1))
            statement = ""
        elif depth == 0:
            statement += part
    return names[True], names[False]


def exported(library, nm):
    """The same of a library's dynamic symbols; C++ names without their parameters."""
    raw = [line.split()[-1] for line in output(nm, "-D", "--defined-only", library).splitlines()]
    symbols = [name.split("@")[0] for name in raw]
    plain = output("c++filt", *symbols).splitlines() if symbols else []
    of_c = {symbol for symbol, name in zip(symbols, plain) if symbol == name}
    of_cpp = {name.split("(")[0] for symbol, name in zip(symbols, plain) if symbol != name}
    return of_c, of_cpp


def faults(library, header, nm, readelf):
    for linkage, wanted, found in zip(("C", "C++"), declared(header), exported(library, nm)):
        for name in sorted(wanted - found):
            yield f"declared with {linkage} linkage, not exported: {name}"
        for name in sorted(found - wanted):
            yield f"exported with {linkage} linkage, not declared: {name}"
    dynamic = output(readelf, "-d", library)
    own = next(allowed for stem, allowed in OWN.items() if "/" + stem in library)
    for name in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic):
        if not re.fullmatch(f"{SYSTEM}|{own}" if own else SYSTEM, name):
            yield f"needs {name}"
    stem = re.search(r"(lib\w+\.so)", library).group(1)
    if f"[{stem}.1]" not in dynamic:
        yield f"its soname is not {stem}.1"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("files", nargs="+")
    arguments = parser.parse_args()
    failed = False
    for library, header in zip(arguments.files[::2], arguments.files[1::2]):
        for fault in faults(library, header, arguments.nm, arguments.readelf):
            print(f"{library}: {fault}")
            failed = True
    return 1 if failed else 0


sys.exit(main())

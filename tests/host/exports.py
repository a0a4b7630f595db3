"""Compares what the public headers declare with what the shared library defines.

usage: exports.py LIBRARY HEADER_FOLDER
       exports.py --list LIBRARY

Prints a line for every name that is missing in the library or stands in no header, and then how many were declared.
With --list prints the call surface with all parameters, one line a name: what exported.txt keeps.
"""
import pathlib
import re
import subprocess
import sys

MEMBER = re.compile(r"(~?\w+|operator char\*|operator[^(\w\s]+)\((?:[^;{}()]|\([^;{}()]*\))*\)(?: const)?;")


def call_surface(library):
    """Names with parameters: "vrkClear()", "vrkGamma", "Scene::render(int)".

    Names with an underscore in front come from the linker and the sanitizers.
    """
    if library.endswith(".dll"):
        return names_of_dll(library)
    listing = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True, text=True)
    return set(re.findall(r"(?m)^[0-9a-f]+ [A-Za-z] ([^_(\n].*)", listing.stdout))


def defined_names(library):
    """Names without parameters."""
    return {name.partition("(")[0] for name in call_surface(library)}


def names_of_dll(library):
    """The same from the export table."""
    headers = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", library], check=True, capture_output=True, text=True)
    table = headers.stdout.split("[Ordinal/Name Pointer]")[1].split("\n\n")[0]
    symbols = "\n".join(re.findall(r"\] (\S+)", table))
    listing = subprocess.run(["c++filt"], input=symbols, check=True, capture_output=True, text=True)
    return set(listing.stdout.splitlines())


def declared_names(text):
    """Functions and variables marked as exported, and the member functions without a body."""
    text = "\n" + re.sub(r"//[^\n]*", "", text)
    names = set(re.findall(r"\nVRK_API[^;{(]*?(\w+)\(", text))
    names |= set(re.findall(r"\nextern VRK_API [\w* ]+?(\w+)(?:\[\w+\])?;", text))
    for record in re.finditer(r"\n(?:class|struct)(?: VRK_API)? (\w+)[^;{]*\n\{(.*?)\n\};", text, re.S):
        without_bodies = re.sub(r"\{[^{}]*\}", "", record[2])
        names |= {f"{record[1]}::{member}" for member in MEMBER.findall(without_bodies)}
    return names


def main():
    if sys.argv[1] == "--list":
        print("\n".join(sorted(call_surface(sys.argv[2]))))
        return
    defined = defined_names(sys.argv[1])
    declared = set()
    for header in pathlib.Path(sys.argv[2]).rglob("*.h"):
        declared |= declared_names(header.read_text())
    for name in sorted(declared - defined):
        print(f"missing in the library: {name}")
    for name in sorted(defined - declared):
        print(f"in no header: {name}")
    print(f"{len(declared)} declared")


main()

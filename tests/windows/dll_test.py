#!/usr/bin/python3
"""Usage: dll_test.py FOLDER VERSION
Checks the files as they are handed out: what the library exports, what each needs, that the oldest Windows has that, and
the version that Windows shows of it."""

import collections
import pathlib
import re
import subprocess
import sys

FOLDER = pathlib.Path(sys.argv[1])
VERSION = sys.argv[2]
HEADERS = pathlib.Path(__file__).resolve().parents[2] / "api"
TOOLS = "x86_64-w64-mingw32-"
SYSTEM = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "odbc32.dll", "ole32.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll"}
# Windows 7, as the headers of the system name it.
OLDEST = "0x0601"
SYSTEM_HEADERS = "windows", "ole2", "shellapi", "shlwapi", "sqlext"
# What each needs besides.
OURS = {"xls2tki.dll": {"zologging.dll"}, "xls2tki.exe": {"xls2tki.dll", "zologging.dll"}, "ZoLogging.dll": set()}


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def declared():
    """The names of the functions of the public headers, as often as there are overloads."""
    text = "".join(header.read_text(encoding="utf-8") for header in sorted(HEADERS.glob("xls2tki*.h")))
    return collections.Counter(re.findall(r"^XLS2TKI_\w*EXPORT [^(;]*?(\w+)\(", text, re.MULTILINE))


def check_exports(details):
    decorated = re.findall(r"^\s*\[ *\d+\] (\w+)$", details[details.index("[Ordinal/Name Pointer] Table"):], re.MULTILINE)
    plain = run(TOOLS + "c++filt", input="\n".join(decorated)).split("\n")
    exported = collections.Counter(re.sub(r"\(.*|.*::(?=\w+\()", "", name) for name in plain if name)
    # Under the names of Microsoft's compiler, too.
    others = re.findall(r"^\s*\[ *\d+\] \?(\w+)@NXls2Tki@@", details, re.MULTILINE)
    functions = {name: count for name, count in declared().items() if not name.startswith("xls2tki_")}
    assert collections.Counter(others) == functions, others
    assert exported == declared(), f"exported: {exported}, declared: {declared()}"


def check_imports(details, known):
    """All Windows since the oldest have the same msvcrt.dll."""
    for library in details.split("DLL Name: ")[1:]:
        if library.split()[0].lower() in SYSTEM - {"msvcrt.dll"}:
            functions = set(re.findall(r"^\t[0-9a-f]+\t\s*\d+  (\w+)$", library, re.MULTILINE))
            assert functions and functions <= known, (library.split()[0], functions - known)


def main():
    headers = "".join(f"#include <{header}.h>\n" for header in SYSTEM_HEADERS)
    known = set(re.findall(r"\w+", run(TOOLS + "gcc", "-E", f"-D_WIN32_WINNT={OLDEST}", "-", input=headers)))
    assert "CreateFileW" in known and "CreateFile2" not in known
    for name, ours in OURS.items():
        details = run(TOOLS + "objdump", "-p", FOLDER / name)
        needed = {needed.lower() for needed in re.findall(r"DLL Name: (\S+)", details)}
        assert needed - SYSTEM == ours, f"{name} needs {needed}"
        check_imports(details, known)
        shown = (FOLDER / name).read_bytes().replace(b"\0\0\0\0", b"\0\0")
        for entry in (("FileVersion", VERSION), ("OriginalFilename", name)):
            assert "\0".join(entry).encode("utf-16-le") in shown, (name, entry)
        if name == "xls2tki.dll":
            check_exports(details)


main()

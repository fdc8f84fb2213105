#!/usr/bin/python3
"""Usage: docs_test.py COMMAND ODBC_DRIVER
Runs the commands that the documents show, page by page: every block marked as sh, in a fresh folder that has the examples.
A block marked as text right behind it is what it prints. A block whose line before is the comment "not run: REASON"
is left out. Also checks that the links between the pages lead somewhere."""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

COMMAND, ODBC_DRIVER = map(os.path.abspath, sys.argv[1:])
ROOT = Path(__file__).resolve().parents[2]
PAGES = [ROOT / "README.md", *sorted(ROOT.glob("docs/*.md")), ROOT / "examples/README.md", ROOT / "CONTRIBUTING.md",
         ROOT / "SECURITY.md"]
BLOCK = re.compile(r"^(?P<skip><!-- not run: .+ -->\n)?```sh\n(?P<commands>.*?)^```\n(?:\n```text\n(?P<printed>.*?)^```\n)?",
                   re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\]\((?!https?:)([^)#\s]*)(?:#([^)\s]+))?\)")


def run(commands, folder):
    environment = dict(os.environ, PATH=f"{folder / 'bin'}:{os.environ['PATH']}", LC_ALL="C.UTF-8", TMPDIR=str(folder))
    return subprocess.run(["bash", "-euo", "pipefail", "-c", commands], cwd=folder, env=environment, timeout=300, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def wrong_blocks(page):
    """Complaints about the page's blocks. Those of one page are run in one folder, one after the other."""
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        os.symlink(ROOT / "examples", folder / "examples")
        (folder / "bin").mkdir()
        os.symlink(COMMAND, folder / "bin/xls2tki")
        for block in BLOCK.finditer(page.read_text(encoding="utf-8")):
            if block["skip"]:
                continue
            result = run(block["commands"], folder)
            if result.returncode != 0:
                yield f"ends with {result.returncode}:\n{block['commands']}{result.stdout}"
            if block["printed"] not in (None, result.stdout):
                yield f"prints something else:\n{block['commands']}{result.stdout}"


def anchors(page):
    """As GitHub makes them of the headings."""
    headings = re.findall(r"^#+ (.*)$", re.sub(r"^```.*?^```", "", page.read_text(encoding="utf-8"), flags=re.M | re.S), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def wrong_links(page):
    for path, anchor in LINK.findall(page.read_text(encoding="utf-8")):
        target = page.parent / path if path else page
        if not target.exists() or (anchor and anchor not in anchors(target)):
            yield f"no target: {path}#{anchor}"


def main():
    with tempfile.TemporaryDirectory() as system:
        os.environ.update(ODBCSYSINI=system, ODBCINI="/dev/null", ASAN_OPTIONS="detect_leaks=0")
        subprocess.run([ROOT / "scripts" / "install-odbc-driver", ODBC_DRIVER], check=True, stdout=subprocess.DEVNULL)
        complaints = [f"{page.relative_to(ROOT)}: {complaint}" for page in PAGES
                      for look in (wrong_blocks, wrong_links) for complaint in look(page)]
    print("\n".join(complaints))
    return 1 if complaints else 0


sys.exit(main())

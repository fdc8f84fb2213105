#!/usr/bin/python3
"""Usage: install_test.py BUILD_FOLDER
Installs what was built, moves the tree elsewhere, and uses it from there as others do: the command, its manual, the
library in hosts that CMake and pkg-config build, and from Python."""

import gzip
import os
import re
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

BUILD = Path(sys.argv[1]).resolve()
ROOT = Path(__file__).resolve().parents[1]
EXAMPLES = ROOT / "examples"
LIBRARY = "libxls2tki.so.0"


def run(*arguments, **options):
    """The lines on standard output; ends the test when the program fails."""
    words = [str(argument) for argument in arguments]
    done = subprocess.run(words, text=True, errors="replace", capture_output=True, **options)
    assert done.returncode == 0, f"{arguments}: {done.returncode}\n{done.stdout}{done.stderr}"
    return done.stdout.splitlines()


def check_same(document, example):
    assert document.read_bytes() == (EXAMPLES / example).read_bytes(), f"{document.name} is not {example}"


def long_names(text):
    return set(re.findall(r"--[a-z0-9-]*[a-z0-9]", text))


class Installed:
    def __init__(self, folder):
        run("cmake", "--install", BUILD, "--prefix", folder / "first")
        self.tree = (folder / "first").rename(folder / "möved here")
        self.work = folder / "work"
        self.work.mkdir()
        self.libraries = next(self.tree.glob(f"lib/**/{LIBRARY}")).parent
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", PKG_CONFIG_PATH=str(self.libraries / "pkgconfig"),
                                CMAKE_PREFIX_PATH=str(self.tree), OUTPUT=str(self.work))

    def run(self, *arguments, **options):
        return run(*arguments, cwd=self.work, env=dict(self.environment, **options))

    def check_command(self):
        self.run(self.tree / "bin" / "xls2tki", EXAMPLES / "powertrain.csv", "command.xml")
        check_same(self.work / "command.xml", "powertrain.xml")

    def check_manual(self):
        """All that tells what the options are tells of the same."""
        command = self.tree / "bin" / "xls2tki"
        share = self.tree / "share"
        names = long_names("\n".join(line for line in self.run(command, "--help") if line.startswith("  -")))
        assert "--list-worksheets" in names
        page = gzip.decompress((share / "man/man1/xls2tki.1.gz").read_bytes()).decode()
        (self.work / "xls2tki.1").write_text(page, encoding="utf-8")
        self.run("mandoc", "-T", "lint", "-W", "all", "xls2tki.1")
        entries = page.split(".SH OPTIONS")[1].split(".SH EXIT")[0]
        assert long_names(re.sub(r"\\f.|\\", "", entries)) == names
        bash = share / "bash-completion/completions/xls2tki"
        assert set(self.complete(bash, "--")) == names
        assert self.complete(bash, "--list-w") == ["--list-worksheets"]
        assert self.complete(bash, "--separator", "t") == ["tab"]
        (self.work / "a b.xlsx").write_bytes((EXAMPLES / "powertrain.xlsx").read_bytes())
        assert self.complete(bash, "a\\ b.xlsx", "--worksheet", "") == ["Powertrain", "J1939", "Body"]
        assert self.complete(bash, "a b.xlsx", "--worksheet", "Po") == ["Powertrain"]
        with zipfile.ZipFile(EXAMPLES / "powertrain.xlsx") as book, zipfile.ZipFile(self.work / "c.xlsx", "w") as copy:
            for part in book.namelist():
                copy.writestr(part, book.read(part).replace(b'name="Body"', b'name="${x[$(id)]}&quot; it"'))
        assert self.complete(bash, "c.xlsx", "--worksheet", "\\$") == ["\\$\\{x\\[\\$\\(id\\)\\]\\}\\\"\\ it"]
        assert self.complete(bash, "c.xlsx", "--worksheet", '"') == ["Powertrain", "J1939"]
        assert self.complete(bash, "--encoding", "") == self.complete(bash, "--encoding", "=") == ["utf-8", "8-bit"]
        zsh = (share / "zsh/site-functions/_xls2tki").read_text(encoding="utf-8")
        assert long_names(zsh.replace("[", " [")) >= names
        fish = share / "fish/vendor_completions.d/xls2tki.fish"
        offered = self.run("fish", "-c", f"source '{fish}'; complete -C 'xls2tki --'", HOME=str(self.work))
        assert {line.split("\t")[0] for line in offered} == names
        offered = self.run("fish", "-c", f"source '{fish}'; complete -C 'xls2tki a\\ b.xlsx --worksheet '", HOME=str(self.work),
                           PATH=f"{self.tree / 'bin'}:{os.environ['PATH']}")
        assert [line.split("\t")[0] for line in offered] == ["Body", "J1939", "Powertrain"]

    def check_pages(self):
        """No link of the manual leads outside of what is installed with it."""
        pages = self.tree / "share/doc/xls2tki"
        targets = {(page.parent / path).resolve() for page in pages.rglob("*.md")
                   for path in re.findall(r"\]\((?!https?:)([^)#\s]+)", page.read_text(encoding="utf-8"))}
        assert len(targets) > 20
        assert not [target for target in targets if not target.exists() or pages not in target.parents]

    def complete(self, script, *words):
        """What bash would offer for the last of the words."""
        typed = " ".join(f"'{word}'" for word in (self.tree / "bin/xls2tki", *words))
        return self.run("bash", "-c", f"compopt() {{ :; }}; source '{script}'; COMP_WORDS=({typed}); "
                        f"COMP_CWORD={len(words)}; _xls2tki; printf '%s\\n' \"${{COMPREPLY[@]}}\" | grep . || true")

    def check_hosts(self, folder, **environment):
        """The hosts in the folder convert and list, and tell why they cannot."""
        self.run(folder / "cpp_host", EXAMPLES / "powertrain.csv", "cpp.xml", **environment)
        check_same(self.work / "cpp.xml", "powertrain.xml")
        (self.work / "none.xml.new").write_text("the user's")
        for host, *arguments in [("cpp_host", "none.csv", "cpp.xml"),
                                 ("cpp_host", EXAMPLES / "powertrain.csv", "none.xml"),
                                 ("cpp_host", EXAMPLES / "powertrain.csv", "none/cpp.xml"),
                                 ("c_host", EXAMPLES / "powertrain.xlsx", "none/c.xml")]:
            failed = subprocess.run([folder / host, *arguments], cwd=self.work, capture_output=True,
                                    env=dict(self.environment, **environment), check=False)
            assert failed.returncode == 1 and b"none" in failed.stderr, failed
        assert (self.work / "none.xml.new").read_text() == "the user's"
        check_same(self.work / "cpp.xml", "powertrain.xml")
        names = self.run(folder / "c_host", EXAMPLES / "powertrain.xlsx", "c.xml", **environment)
        assert names == ["Powertrain", "J1939", "Body"], names
        check_same(self.work / "c.xml", "base-and-failure-type.xml")
        (self.work / "powertrain.csv").write_bytes((EXAMPLES / "powertrain.csv").read_bytes())
        assert int(self.run(folder / "listener", **environment)[0]) > 2

    def check_consumers(self):
        consumer = ROOT / "tests" / "consumer"
        self.run("cmake", "-S", consumer, "-B", self.work / "cmake", "-G", "Ninja")
        self.run("cmake", "--build", self.work / "cmake")
        self.check_hosts(self.work / "cmake")
        self.run("make", "-C", consumer)
        self.check_hosts(self.work, LD_LIBRARY_PATH=str(self.libraries))
        shown = re.search(r"^g\+\+.*", (ROOT / "docs/embedding.md").read_text(encoding="utf-8"), re.MULTILINE)
        (self.work / "lib").symlink_to(self.libraries)  # the shell would take a folder with a blank for two words
        self.run("bash", "-c", shown[0].replace("host.cpp", str(EXAMPLES / "hosts/host.cpp")),
                 PKG_CONFIG_PATH=str(self.work / "lib/pkgconfig"))

    def check_python(self):
        (self.work / "csv.xml").touch()
        (self.work / "csv.xml").chmod(0o640)
        (self.work / "csv.xml.new").symlink_to("other")
        before = {file.name for file in self.work.iterdir()}
        self.run(sys.executable, EXAMPLES / "hosts" / "host.py", EXAMPLES / "powertrain.csv", "csv.xml",
                 EXAMPLES / "powertrain.xlsx", "xlsx.xml", LD_LIBRARY_PATH=str(self.libraries))
        check_same(self.work / "csv.xml", "powertrain.xml")
        check_same(self.work / "xlsx.xml", "powertrain.xml")
        assert (self.work / "csv.xml").stat().st_mode & 0o777 == 0o640
        (self.work / "large.csv").write_text("DTC;Text\n" + "P0123;Text\n" * 10_000)
        failed = subprocess.run(["bash", "-c", 'ulimit -f 100; "$@"', "bash", sys.executable, EXAMPLES / "hosts/host.py",
                                 "large.csv", "csv.xml"], cwd=self.work, capture_output=True, check=False,
                                env=dict(self.environment, LD_LIBRARY_PATH=str(self.libraries)))
        assert failed.returncode == 1 and b"could not be written" in failed.stdout, failed
        check_same(self.work / "csv.xml", "powertrain.xml")
        assert {file.name for file in self.work.iterdir()} == before | {"xlsx.xml", "large.csv"}


def check_documentation():
    """What the documentation shows of a host is the host."""
    text = (ROOT / "docs" / "embedding.md").read_text(encoding="utf-8")
    for host in sorted((EXAMPLES / "hosts").iterdir()):
        assert host.read_text(encoding="utf-8") in text, f"docs/embedding.md shows another {host.name}"


with tempfile.TemporaryDirectory() as temporary:
    installed = Installed(Path(temporary))
    installed.check_command()
    installed.check_manual()
    installed.check_pages()
    installed.check_consumers()
    installed.check_python()
check_documentation()

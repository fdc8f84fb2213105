#!/usr/bin/python3
"""Usage: odbc_clients_test.py ODBC_DRIVER
Reads one workbook through the driver with programs that others have written, and compares each value."""

import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.append(str(Path(__file__).resolve().parent / "command"))
from workbooks import make_workbook

LENGTHS = (1, 2, 127, 128, 254, 255, 256, 257, 1000, 1020, 2000, 4095, 4096, 5000, 8191, 16383, 32766)
TABLES = {  # texts of 1 to 4 bytes a character, also where the ends of buffers divide them
    "Länge 漢": [["Länge", "a", "Ümläut", "漢字", "😀", "mixed"]] + [
        [str(n), "a" * n, "ä" * n, "漢" * min(n, 21000), "😀" * max(1, n // 2), "x" * (n % 4) + "😀ä漢z" * (n // 5)]
        for n in LENGTHS],
    "Types": [["n", "text"], ["42", None], ["-0.5", ""], [None, "  'a' \"b\" "]],
    "Rows": [["id", "text"]] + [[str(n), f"Zeile {n} ß😀"] for n in range(10000)],
    "Wide": [[f"ä{n}" for n in range(1000)], [f"ß{n}" for n in range(1000)]],
}

PYODBC = """import sys, pyodbc
rows = pyodbc.connect("DSN=" + sys.argv[1]).cursor().execute("SELECT * FROM [%s]" % sys.argv[2])
for row in [[column[0] for column in rows.description], *rows]: print("|".join("~" if v is None else v for v in row))"""
PHP = """[, $source, $table] = $argv;
function show($row) { echo implode("|", array_map(fn($v) => $v ?? "~", $row)), "\\n"; }
$r = odbc_exec(odbc_connect($source, "", ""), "SELECT * FROM [$table]"); odbc_longreadlen($r, 1 << 17);
show(array_map(fn($i) => odbc_field_name($r, $i), range(1, odbc_num_fields($r))));
while ($row = odbc_fetch_array($r)) show(array_values($row));"""
PDO = """[, $source, $table] = $argv;
function show($row) { echo implode("|", array_map(fn($v) => $v ?? "~", $row)), "\\n"; }
$r = (new PDO("odbc:$source"))->query("SELECT * FROM [$table]");
show(array_map(fn($i) => $r->getColumnMeta($i)["name"], range(0, $r->columnCount() - 1)));
foreach ($r->fetchAll(PDO::FETCH_NUM) as $row) show($row);"""
DBI = """use DBI; use Encode; my ($source, $table) = @ARGV; $" = "|";
my $db = DBI->connect("dbi:ODBC:$source", "", "", {PrintError => 0}) or do { print $DBI::errstr; exit };
$db->{LongReadLen} = 1 << 17; my $r = $db->prepare("SELECT * FROM [$table]"); $r->execute;
sub show { my @v = map { defined $_ ? utf8::is_utf8($_) ? encode("UTF-8", $_) : $_ : "~" } @_; print "@v\\n" }
show(@{$r->{NAME}}); while (my @row = $r->fetchrow_array) { show(@row) }"""
RODBC = """suppressMessages(library(RODBC)); a <- commandArgs(TRUE); c <- odbcConnect(a[1])
d <- sqlQuery(c, paste0("SELECT * FROM [", a[2], "]"), as.is = TRUE, na.strings = NULL); odbcCloseAll()
write.table(d, quote = FALSE, sep = "|", na = "~", row.names = FALSE)"""
TDBC = """package require tdbc::odbc; fconfigure stdout -encoding utf-8; lassign $argv source table
tdbc::odbc::connection create db DSN=$source; set s [db prepare "SELECT * FROM \\[$table\\]"]; set r [$s execute]
set n [$r columns]; puts [join $n |]
while {[$r nextdict d]} { puts [join [lmap c $n {expr {[dict exists $d $c] ? [dict get $d $c] : "~"}}] |] }"""
CLIENTS = {
    "pyodbc": ["/usr/bin/python3", "-c", PYODBC],
    "PHP": ["php", "-r", PHP, "--"],
    "PDO": ["php", "-r", PDO, "--"],
    "DBD::ODBC": ["perl", "-e", DBI],
}
WHERE_INSTALLED = {"tdbc::odbc": ["tclsh", "rows.tcl"], "RODBC": ["Rscript", "-e", RODBC]}


def write_workbook():
    def cell(value):
        return f"<c t='inlineStr'><is><t xml:space='preserve'>{escape(value)}</t></is></c>" if value is not None else "<c/>"

    Path("t.xlsx").write_bytes(make_workbook({name: "".join("<row>" + "".join(map(cell, row)) + "</row>" for row in table)
                                              for name, table in TABLES.items()}))


def read(client, source, table):
    environment = dict(os.environ, LC_ALL="C.UTF-8", ODBCSYSINI=".", ODBCINI="odbc.ini")
    result = subprocess.run([*client, source, table], env=environment, capture_output=True, timeout=300)
    return (result.stdout + result.stderr).decode()


def test(name, client):
    for table, rows in TABLES.items():
        if name == "tdbc::odbc" and table == "Types" or name == "RODBC" and table == "Länge 漢":
            continue  # Tcl writes numbers in its own way, R takes 65535 bytes of a text
        found = read(client, "T", table)
        if found != "".join("|".join("~" if value is None else value for value in row) + "\n" for row in rows):
            sys.exit(f"{name} reads the table {table} in another way: {found[:2000]}")
    for source in ["Missing", "Damaged"]:
        if "[xls2tki][Excel Driver]" not in read(client, source, "Types"):
            sys.exit(f"{name} does not tell what is wrong with the file.")


driver = os.path.abspath(sys.argv[1])
with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    Path("odbcinst.ini").write_text(f"[Excel]\nDriver={driver}\n")
    Path("odbc.ini").write_text("".join(f"[{name}]\nDriver=Excel\nDBQ={folder}/{file}\n" for name, file in [
        ("T", "t.xlsx"), ("Missing", "none.xlsx"), ("Damaged", "odbcinst.ini")]))
    Path("rows.tcl").write_text(TDBC)
    write_workbook()
    for client in CLIENTS.items():
        test(*client)
    for name, client in WHERE_INSTALLED.items():
        if shutil.which(client[0]):
            test(name, client)

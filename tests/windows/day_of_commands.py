#!/usr/bin/env python3
"""A day of commands on both programs must give the same statuses, outputs, messages, job files and tables, byte by
byte: day_of_commands.py LINUX_PROGRAM WINDOWS_PROGRAM_WITH_ITS_STARTER...

Set aside are durations, the moments at which something was written, random keys and the folder of the test."""
import pathlib
import sqlite3
import sys

from comparison import Comparison
from program_pair import DAY, masked, sides

SOURCE = pathlib.Path(__file__).resolve().parents[2]
DEMO = SOURCE / "src" / "resources" / "demo"
DATABASE = "Büro/Aufträge.db"

JOBS = (DEMO / "jobs.json").read_bytes()
ODD = '{"type":"Kunde","Kundennummer":"1","JobID":"SCHRÄG-€","Bez1":"Äpfel \\u0026 Öl \\"Süß\\" <ß>","Ort":"Łódź","Land":"DE"}'.encode()

# Arguments, and what the command reads from standard input.
COMMANDS = [
    (["init", "--demo"], b""),
    (["init", "--demo"], b""),
    (["list"], b""),
    (["list", "--json", "--state", "waiting", "--kind", "auftrag"], b""),
    (["show", "DE000000000000000000000000000072"], b""),
    (["stage", "Aufträge von heute.json"], b""),
    (["stage", "-"], ODD),
    (["stage", "-"], ODD.replace(b'"Ort"', b'"Ortt"')),
    (["stage", "gibt es nicht.json"], b""),
    (["stage", "/gibt/es/nicht.json"], b""),
    (["stage", "Büro"], b""),
    (["check"], b""),
    (["check", "--json", "SCHRÄG-€"], b""),
    (["explain", "SCHRÄG-€"], b""),
    (["process", "--select", "verträge"], b""),
    (["process", "--select", "kunden", "--json"], b""),
    (["process"], b""),
    (["protocol"], b""),
    (["protocol", "--json"], b""),
    (["release", "--all-warnings"], b""),
    (["process"], b""),
    (["list", "--state", "done", "--limit", "7"], b""),
    (["export", "Größe.edi"], b""),
    (["export", "Größe.edi"], b""),
    (["export", "--version1", "alt.edi"], b""),
    (["export", "-"], b""),
    (["export", DATABASE], b""),
    (["export", "Büro"], b""),
    (["export", "gibt es nicht/neu.edi"], b""),
    (["scramble", "Größe.edi", "geheim.edi"], b""),
    (["unscramble", "geheim.edi", "-"], b""),
    (["import", "geheim.edi"], b""),
    (["import", "nichts.edi"], b""),
    (["delete", "SCHRÄG-€", "BEISPIEL-KUNDE", "--with-contracts"], b""),
    (["import", "Größe.edi"], b""),
    (["import", "--version1", "alt.edi"], b""),
    (["settings", "set", "Allgemein", "Landeswährung", "Größe €"], b""),
    (["settings", "get", "Allgemein", "Landeswährung"], b""),
    (["settings", "set", "--local", "MAIN", "Größe", " ä;\"ö\" €\\"], b""),
    (["settings", "get", "--local", "MAIN", "Größe"], b""),
    (["settings", "get", "--local", "MAIN", "MainLeft"], b""),
    (["settings", "list"], b""),
    (["settings", "list", "--json"], b""),
    (["backup", "Sicherung für später.bak"], b""),
    (["backup", "Sicherung für später.bak"], b""),
    (["backup", "--replace", "Sicherung für später.bak"], b""),
    (["upgrade"], b""),
    (["lock", "show"], b""),
    (["lock", "release"], b""),
    (["purge"], b""),
    (["--help"], b""),
    (["--version"], b""),
    (["process", "--wait=ewig"], b""),
    (["list", "/d"], b""),
]
# On another database, which an earlier program has made.
UPGRADE = [(["list"], b""), (["upgrade"], b""), (["list"], b""), (["process"], b"")]


def prepare(side):
    (side.work / "Büro").mkdir()
    (side.work / "Aufträge von heute.json").write_bytes(JOBS)
    connection = sqlite3.connect(side.work / "älter.db")
    connection.executescript((SOURCE / "tests/data/databases/version1.sql").read_text(encoding="utf-8"))
    connection.close()


def compare_commands(here, there, comparison):
    commands = [(DATABASE, command) for command in COMMANDS] + [("älter.db", command) for command in UPGRADE]
    for database, (arguments, text) in commands:
        words = ["--db", database] + DAY + arguments
        results = [side.run(words, text) for side in (here, there)]
        name = " ".join(words)
        comparison.add(name + " (status)", results[0][0], results[1][0])
        comparison.add(name + " (output)", masked(results[0][1]), masked(results[1][1]))
        comparison.add(name + " (messages)", masked(results[0][2]), masked(results[1][2]))
    return len(commands)


def compare_tables(here, there, comparison):
    count = 0
    for database in (DATABASE, "älter.db", "Sicherung für später.bak"):
        rows = [[masked(row) for row in side.rows(database)] for side in (here, there)]
        count += len(rows[0])
        comparison.add("number of rows in " + database, len(rows[0]), len(rows[1]))
        for mine, other in zip(*rows):
            comparison.add("row of " + database, mine, other)
    return count


def compare_files(here, there, comparison):
    files = [side.files() for side in (here, there)]
    names = [sorted(masked(name.encode()) for name in each) for each in files]
    comparison.add("files", names[0], names[1])
    compared = [name for name in files[0] if not name.endswith(".bak") and name != "geheim.edi"]
    for name in compared:
        comparison.add("file " + name, masked(files[0][name]), masked(files[1].get(name, b"")))
    # Scrambled text cannot be masked; this program reads what the other has scrambled.
    (here.work / "von dort.edi").write_bytes(files[1].get("geheim.edi", b""))
    plain = here.run(["--db", DATABASE, "unscramble", "von dort.edi", "-"])[1]
    comparison.add("geheim.edi, unscrambled here", plain, files[1].get("Größe.edi"))
    return len(compared) + 1


def main():
    here, there = sides(sys.argv[1:])
    comparison = Comparison()
    for side in (here, there):
        prepare(side)
    commands = compare_commands(here, there, comparison)
    rows = compare_tables(here, there, comparison)
    files = compare_files(here, there, comparison)
    print("%d commands, %d lines of tables and %d job files on both programs, %d differences"
          % (commands, rows, files, comparison.found))
    for side in (here, there):
        side.remove()
    return 1 if comparison.found else 0


sys.exit(main())

#!/usr/bin/env python3
"""Everything that the program prints as JSON is what the schema of the command says: outputs_test.py PROGRAM SOURCES"""
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import jsonschema

program, sources = sys.argv[1], Path(sys.argv[2])
sys.path.insert(0, str(sources / "tests/support"))
from output_schemas import Outputs, all_names  # noqa: E402

outputs = Outputs(program)
wrong = []


def run(*arguments, text=None, database="jobs.db", form="--json"):
    call = ["--date", "24.11.2026", *arguments, form]
    done = subprocess.run([program, "--db", str(folder / database), *call], input=text, capture_output=True, text=True, check=False)
    wrong.extend(outputs.faults(call, done.stdout))
    return done


def lines(*arguments, **more):
    return run(*arguments, form="--json=lines", **more)


def every_command():
    run("list")
    run("schema", "--output")
    run("init", "--demo")
    for state in ("staged", "processed"):
        jobs = json.loads(run("list").stdout)["jobs"]
        for job in jobs[::7] + [job for job in jobs if job["state"] == "done"][:3]:
            run("show", job["JobID"])
            run("explain", job["JobID"])
        for form in (run, lines):
            form("list", "--limit", "5")
            form("list", "--columns", "JobID,VS_Straße")
        run("check")
        run("status")
        run("protocol")
        run("delete", jobs[0]["JobID"], "--dry-run")
        run("purge", "--before", "01.01.2027", "--dry-run")
        if state == "staged":
            lines("process", "--select", "kunden")
            run("process")
    run("explain", "order.price.differs")
    run("release", "--all-warnings")
    lines("process", "--quiet")
    run("delete", jobs[0]["JobID"])
    run("purge", "--before", "01.01.2027")
    run("results", "--limit", "5")
    lines("results")
    run("protocol", "purge", "--before", "01.01.2027")
    run("lock", "show")
    run("lock", "release")
    run("settings", "list")
    run("settings", "get", "ImportJob2", "Löschen")
    run("settings", "set", "ImportJob2", "Löschen", "1")
    run("settings", "export", str(folder / "options.ini"))
    run("settings", "import", str(folder / "options.ini"))
    run("backup", str(folder / "copy.db"))
    run("upgrade")


def files():
    samples = sources / "examples/convert"
    run("init", database="new.db")
    for command in (["status"], ["list"], ["protocol"], ["process"], ["check"]):
        run(*command, database="new.db")
    run("convert", "--map", str(samples / "customers.ini"), str(samples / "customers.tsv"), "--output", str(folder / "new.json"))
    run("stage", str(folder / "new.json"), database="new.db")
    run("stage", "-", text='{"type":"Kunde"', database="new.db")
    run("stage", "-", text='{"type":"Kunde","Bez1":"N","Kundennr":1}', database="new.db")
    run("stage", "-", "--partial", "--dry-run", text='[{"type":"Kunde","Bez1":"N","Kundennummer":"1"},{"type":"Kunde"}]', database="new.db")
    run("export", str(folder / "jobs.edi"), database="new.db")
    run("scramble", str(folder / "jobs.edi"), str(folder / "scrambled.edi"), database="new.db")
    run("unscramble", str(folder / "scrambled.edi"), str(folder / "plain.edi"), database="new.db")
    (folder / "jobs.edi").open("ab").write(b'"77";"x"\r\n')
    run("import", str(folder / "jobs.edi"), database="new.db")
    run("settings", "set", "ImportJob2", "Gibt es nicht", "1")
    inbox = folder / "inbox"
    inbox.mkdir()
    (inbox / "1.tmp").write_text('{"type":"Kunde","Bez1":"N","Kundennummer":"1"}')
    (inbox / "2.tmp").write_text('{"type":"Kunde"}')
    for path in inbox.glob("*.tmp"):
        path.rename(path.with_suffix(".json"))
        subprocess.run(["touch", "-d", "yesterday", path.with_suffix(".json")], check=True)
    lines("stage", "--watch", str(inbox), "--once", database="new.db")


def earlier_database():
    import sqlite3
    with sqlite3.connect(folder / "old.db") as database:
        database.executescript((sources / "tests/data/databases/version4.sql").read_text(encoding="utf-8"))
    run("status", database="old.db")
    run("upgrade", database="old.db")
    run("process", database="old.db")


def schemas():
    spellings = {}
    for name in outputs.names():
        schema = outputs.schema(name)
        jsonschema.Draft202012Validator.check_schema(schema)
        for names in all_names(schema):
            for member in names:
                if spellings.setdefault(member.lower(), member) != member:
                    wrong.append(f"{name}: '{member}' is '{spellings[member.lower()]}' elsewhere")
        for definition in schema["$defs"].values():
            for member, described in definition["properties"].items():
                if not described["description"].endswith("."):
                    wrong.append(f"{name}: {member} has no sentence")
    usage = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    described = {name.split("-")[0] for name in outputs.names()}
    for verb in set(re.findall(r"^  ([a-z]+) ", usage, re.M)) - described - {"view", "completion", "help"}:
        wrong.append(f"no schema of what {verb} prints")
    accepted = json.loads(subprocess.run([program, "schema"], capture_output=True, text=True, check=True).stdout)
    for definition in accepted["$defs"].values():
        for member in definition.get("properties", {}):
            if spellings.setdefault(member.lower(), member) != member:
                wrong.append(f"stage takes '{member}', other commands print '{spellings[member.lower()]}'")


with tempfile.TemporaryDirectory() as created:
    folder = Path(created)
    every_command()
    files()
    earlier_database()
schemas()
wrong.extend(f"no output of {name} was tried" for name in set(outputs.names()) - outputs.seen)
print("\n".join(wrong))
sys.exit(1 if wrong else 0)

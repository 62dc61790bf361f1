#!/usr/bin/env python3
"""The schema and `stage` say the same of sound and of broken objects: schema_test.py PROGRAM SAMPLE_JOBS"""
import copy
import json
import subprocess
import sys
import tempfile
from pathlib import Path

import jsonschema

program, samples = sys.argv[1:]
POSITION = {"Artikelnummer": "A", "Menge": 1}
SOUND = [
    {"type": "Kunde", "Kundennummer": "1", "Bez1": "N"},
    {"type": "Vertrag", "Positionen": [{"Artikelnummer": "A"}]},
    {"type": "Auftrag", "Kundennummer": "1", "Positionen": [dict(POSITION)]},
]
VALUES = ["Text", "", 7, -1, 2.5, 40000, 3000000000, True, None, "24.11.2026", "2026-11-24", "2026-11-24T10:00:00+01:00",
          "999999", "24/11/2026", [], {}, ["x"]]
# Set by the program or compared with other properties, which a schema does not tell.
LEFT_OUT = {"JobID", "ChildID", "JobType", "type", "rejected", "Positionen", "Positionsnummer", "Vertragsende", "Vertragsdatum", "Vertragsbeginn"}


def run(*arguments, text=None):
    return subprocess.run([program, *arguments], input=text, capture_output=True, text=True, check=False)


def variants(schema):
    """Each sound object, and with one property left out, unknown or of each of the values."""
    for base in SOUND:
        definition = schema["$defs"][base["type"].lower()]
        yield base
        places = [(None, definition["properties"])]
        if "Positionen" in base:
            places.append((0, definition["properties"]["Positionen"]["items"]["properties"]))
        for place, properties in places:
            def changed(change):
                made = copy.deepcopy(base)
                change(made if place is None else made["Positionen"][place])
                return made
            for name in [*base, *POSITION]:
                if name in (base if place is None else base["Positionen"][place]):
                    yield changed(lambda target, name=name: target.pop(name))
            yield changed(lambda target: target.update(Unbekannt=1))
            for name in properties.keys() - LEFT_OUT:
                for value in VALUES:
                    # A date in a place of its own: a contract takes other words for none.
                    if value == "999999" and "pattern" in properties[name]:
                        continue
                    yield changed(lambda target, name=name, value=value: target.update({name: value}))
        for value in ["x", 1, {}, [], None, [1], [{}]]:
            yield base | {"Positionen": value}


def main():
    schema = json.loads(run("schema").stdout)
    jsonschema.Draft202012Validator.check_schema(schema)
    file_of_jobs = jsonschema.Draft202012Validator(schema)
    one = {kind: jsonschema.Draft202012Validator({"$defs": schema["$defs"], "$ref": "#/$defs/" + kind})
           for kind in ("kunde", "vertrag", "auftrag")}
    file_of_jobs.validate(json.loads(Path(samples).read_text(encoding="utf-8")))
    for kind in one:
        alone = json.loads(run("schema", kind).stdout)
        assert list(alone["$defs"]) == ["job", kind], alone["$defs"].keys()
        for definition in (alone["$defs"][kind]["properties"], schema["$defs"][kind]["properties"]):
            for name, property in definition.items():
                assert name == "type" or property["description"].endswith("."), name
    objects = list(variants(schema))
    with tempfile.TemporaryDirectory() as folder:
        database = str(Path(folder) / "jobs.db")
        assert run("--db", database, "init").returncode == 0
        told = json.loads(run("--db", database, "--json", "stage", "-", "--partial", "--dry-run", "--rejects",
                              str(Path(folder) / "rejects.json"),
                              text="\n".join(json.dumps(each) for each in objects)).stdout)
        text = (Path(folder) / "rejects.json").read_text(encoding="utf-8")
    refused = {}
    decoder = json.JSONDecoder()
    while text.strip():
        rejected, end = decoder.raw_decode(text.lstrip())
        text = text.lstrip()[end:]
        refused[rejected["rejected"][0]["object"]] = rejected["rejected"]
    assert told["staged"] + len(refused) == len(objects), (told["staged"], len(refused), len(objects))
    differing = 0
    for number, each in enumerate(objects, 1):
        wrong = list(one[each["type"].lower()].iter_errors(each)) if "type" in each else ["no type"]
        if bool(wrong) != (number in refused):
            differing += 1
            print(json.dumps(each, ensure_ascii=False), "schema:", wrong[:1], "stage:", refused.get(number), file=sys.stderr)
    print(f"{len(objects)} objects, {len(refused)} refused, {differing} judged differently")
    return differing > 0


sys.exit(main())

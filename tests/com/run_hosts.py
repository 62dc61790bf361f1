#!/usr/bin/env python3
"""Registers the library, lets hosts use it and removes it again: run_hosts.py FOLDER [EMULATOR]

FOLDER holds QXImportJob.dll, qximportjob.exe, script_host.exe, automation_client.exe, late_bound_host.exe and
view_stand_in.exe. Each script of this folder must print what stands in the file of its name that ends in ".expected". A
host that offers the whole ERP late-bound must end with the tables that the program leaves.
"""

import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "windows"))
from comparison import Comparison
from program_pair import DAY, masked

# One reference more than it releases is kept by the languages' own CreateObject under the emulator, so that only
# scripts which create their objects through their host can tell what the library holds.
LEFT_BY_LANGUAGE = {"stage_and_run": 3}


# What late-bound components cannot tell: purchase prices, and the marks of single discounts.
NOT_TOLD = """
DELETE FROM Einkaufspreise;
UPDATE Verkaufspreise SET KZRabattart = NULL, KZRabatt1 = NULL, KZRabatt2 = NULL, KZRabatt3 = NULL, Rabatt1 = NULL,
  Rabatt2 = NULL, Rabatt3 = NULL;
"""


def windows_path(path):
    """As programs see it under the emulator."""
    return "Z:" + str(path).replace("/", "\\")


def main():
    folder = pathlib.Path(sys.argv[1]).resolve()
    emulator = sys.argv[2:]
    environment = {**os.environ, "LC_ALL": "C.UTF-8", "WINEDEBUG": "-all"}
    failures = []

    def run(*command, expected=0):
        with tempfile.TemporaryFile() as output:
            # To a file: what the emulator leaves in the background would keep a pipe open.
            done = subprocess.run([*emulator, *command], env=environment, stdin=subprocess.DEVNULL, stdout=output,
                                  stderr=subprocess.STDOUT, timeout=300, check=False)
            output.seek(0)
            text = output.read().decode("utf-8", "replace").replace("\r\n", "\n")
        if done.returncode != expected:
            failures.append(f"{' '.join(command)}: exit status {done.returncode} in place of {expected}\n{text}")
        return text

    def registered(hive):
        return "REG_SZ" in run("reg", "query", hive + r"\Software\Classes\QXImportJob.ImportJobObject2\CLSID",
                               expected=0 if present else 1)

    def rows(database):
        connection = sqlite3.connect(database)
        try:
            lines = list(connection.iterdump())
        finally:
            connection.close()
        # Runs and changes of states are written down with their moments.
        left_out = tuple(f'INSERT INTO "{table}"' for table in ("Importlaeufe", "Zustandswechsel", "Zaehlerstaende"))
        return [masked(line.encode()) for line in lines if not line.startswith(left_out)]

    def late_bound(place):
        """The demonstration by the program, and by the library on components that are called by their names."""
        typed, late = place / "typed.db", place / "late.db"
        environment["QXIMPORTJOB_DB"] = windows_path(typed)
        program = str(folder / "qximportjob.exe")
        run(program, "init", "--demo")
        for option in "KreditlimitAuftrag", "WarnungLagerbestand", "AutomatischVerarbeiten":
            run(program, "settings", "set", "ImportJob2", option, "1")
        connection = sqlite3.connect(typed)
        connection.executescript(NOT_TOLD)
        connection.close()
        shutil.copy(typed, late)
        untouched = rows(typed)
        run(program, "process", "--user", "pruefer", *DAY[2:], expected=1)
        environment["QXIMPORTJOB_DB"] = windows_path(late)
        print(run(str(folder / "late_bound_host.exe"), "--gtest_brief=1"))
        of_program, of_library = rows(typed), rows(late)
        comparison = Comparison()
        comparison.add("number of rows", len(of_program), len(of_library))
        for first, second in zip(of_program, of_library):
            comparison.add("row", first, second)
        if comparison.found or of_program == untouched:
            failures.append(f"{comparison.found} rows differ when all is called late-bound")

    with tempfile.TemporaryDirectory(prefix="qximportjob-") as place:
        database = windows_path(pathlib.Path(place) / "aufträge.db")
        environment["QXIMPORTJOB_DB"] = database
        # The library starts the window program that lies beside it.
        library = windows_path(shutil.copy(folder / "QXImportJob.dll", place))
        shutil.copy(folder / "view_stand_in.exe", pathlib.Path(place) / "qximportjob-view.exe")
        run(str(folder / "qximportjob.exe"), "init", "--demo")
        run("regsvr32", "/s", library)
        for script in sorted(HERE.glob("*.vbs")):
            printed = run(str(folder / "script_host.exe"), windows_path(script), database,
                          expected=LEFT_BY_LANGUAGE.get(script.stem, 0))
            if script.stem in LEFT_BY_LANGUAGE:
                printed = printed.replace("the library still holds objects\n", "")
            if printed != script.with_suffix(".expected").read_text():
                failures.append(f"{script.name} prints\n{printed}")
        print(run(str(folder / "automation_client.exe"), "--gtest_brief=1"))
        run(str(folder / "automation_client.exe"), "--gtest_brief=1", "--gtest_also_run_disabled_tests",
            "--gtest_filter=*DISABLED_*")
        late_bound(pathlib.Path(place))

        present = True
        registered("HKLM")
        run("regsvr32", "/s", "/u", library)
        present = False
        registered("HKLM")
        # For the current user alone.
        run("regsvr32", "/s", "/n", "/i:user", library)
        present = True
        registered("HKCU")
        run("regsvr32", "/s", "/u", "/n", "/i:user", library)
        present = False
        registered("HKCU")
    print("\n".join(failures) or "all hosts were served")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

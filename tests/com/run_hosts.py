#!/usr/bin/env python3
"""Registers the library, lets hosts use it and removes it again: run_hosts.py FOLDER [EMULATOR]

FOLDER holds QXImportJob.dll, qximportjob.exe, script_host.exe, automation_client.exe and view_stand_in.exe. Each script
of this folder must print what stands in the file of its name that ends in ".expected".
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
# One reference more than it releases is kept by the languages' own CreateObject under the emulator, so that only
# scripts which create their objects through their host can tell what the library holds.
LEFT_BY_LANGUAGE = {"stage_and_run": 3}


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

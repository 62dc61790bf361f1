#!/usr/bin/env python3
"""Unpacks the package in a fresh Wine, registers it by its own scripts and lets its examples use it:
package.py ZIP SCRIPT_HOST"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

WINE = "/usr/lib/wine/wine64"
TESTS = pathlib.Path(__file__).resolve().parents[1]
FILES = ["Beispiele/Beispiel.vbs", "Beispiele/KundenImportieren.bas", "Liesmich.txt", "QXImportJob.dll", "QXImportJob.tlb",
         "QXImportJob32.dll", "abmelden.cmd", "qximportjob.exe", "registrieren.cmd"]
# The sheet of the macro, as a script language without a spreadsheet can play it.
SHEET = """
Class Cell
  Public Value
End Class
Class Sheet
  Private cells_
  Private Sub Class_Initialize
    Set cells_ = CreateObject("Scripting.Dictionary")
  End Sub
  Public Function Cells(row, column)
    Dim place
    place = row & "/" & column
    If Not cells_.Exists(place) Then cells_.Add place, New Cell
    Set Cells = cells_.Item(place)
  End Function
End Class
Dim ActiveSheet
Set ActiveSheet = New Sheet
Dim values, i
values = Array("47120", "Käserei Groß", "Am Deich 1", "DE", "24103", "Kiel")
For i = 0 To 5
  ActiveSheet.Cells(2, i + 1).Value = values(i)
Next
values = Array("47121", "Mühle Öhm", "Weg 2", "DE", "24103", "Kiel")
For i = 0 To 5
  ActiveSheet.Cells(3, i + 1).Value = values(i)
Next
KundenImportieren
Host.Echo ActiveSheet.Cells(2, 7).Value
Host.Echo ActiveSheet.Cells(3, 7).Value
"""
FROM_SHEET = "angelegt\nangelegt\n"


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class Trial:
    def __init__(self, folder, environment):
        self.folder, self.environment, self.failures = folder, environment, []

    def run(self, *command, status=0, at=None):
        with tempfile.TemporaryFile() as output:
            # To a file: what Wine leaves in the background would keep a pipe open.
            done = subprocess.run([WINE, *map(str, command)], cwd=at or self.folder, env=self.environment, timeout=300,
                                  stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, check=False)
            output.seek(0)
            text = output.read().decode("utf-8", "replace").replace("\r\n", "\n")
        self.same(f"status of {command}", done.returncode, status, text)
        return text

    def same(self, what, found, wanted, more=""):
        if found != wanted:
            self.failures.append(f"{what}: {found!r} in place of {wanted!r} {more}")

    def registered(self, hive, wanted):
        """Whether hosts find the class, and in which library."""
        classes = hive + "\\Software\\Classes\\"

        def value(key):
            text = self.run("reg", "query", classes + key, "/ve", status=0 if wanted else 1)
            found = re.search(r"REG_SZ\s+(\S.*)", text)
            return found.group(1) if found else ""

        identity = value(r"QXImportJob.Kunde\CLSID")
        if wanted:
            # The tool that prints it has an alphabet of its own.
            found, library = (re.sub(r"[^ -~]", "?", name) for name in (
                value(f"CLSID\\{identity}\\InprocServer32"), windows_path(self.folder / "QXImportJob.dll")))
            self.same("library in " + hive, found, library)


def main():
    package, host = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    with tempfile.TemporaryDirectory(prefix="QXImportJob für alle ") as place:
        with zipfile.ZipFile(package) as archive:
            archive.extractall(place)
        folder = next(pathlib.Path(place).iterdir())
        environment = {**os.environ, "QXIMPORTJOB_DB": windows_path(folder / "aufträge.db")}
        trial = Trial(folder, environment)
        files = sorted(str(file.relative_to(folder)) for file in folder.rglob("*") if file.is_file())
        trial.same("files", [file for file in files if file != "qximportjob-view.exe"], FILES)
        trial.run(folder / "qximportjob.exe", "init", "--demo")

        elsewhere = place
        script = windows_path(folder / "registrieren.cmd")
        trial.same("words of", trial.run("cmd", "/c", script, at=elsewhere),
                   "Die Klassen von QXImportJob sind registriert.\n")
        trial.registered("HKLM", True)

        # The host of the tests reads UTF-8.
        example = folder / "Beispiel.vbs"
        example.write_text((folder / "Beispiele/Beispiel.vbs").read_text("cp1252"))
        printed = trial.run(host, windows_path(example), environment["QXIMPORTJOB_DB"], status=3)
        trial.same("the example", printed.replace("the library still holds objects\n", ""),
                   (TESTS / "com/stage_and_run.expected").read_text())
        macro = (folder / "Beispiele/KundenImportieren.bas").read_text("cp1252")
        sheet = folder / "macro.vbs"
        sheet.write_text(re.sub(r"(?m)^Attribute .*$|\bAs (Object|Long|String)\b", "", macro) + SHEET)
        printed = trial.run(host, windows_path(sheet), status=3)
        trial.same("the macro", printed.replace("the library still holds objects\n", ""), FROM_SHEET)

        trial.run("cmd", "/c", windows_path(folder / "abmelden.cmd"), at=elsewhere)
        trial.registered("HKLM", False)
        trial.run("cmd", "/c", script, "/benutzer", at=elsewhere)
        trial.registered("HKLM", False)
        trial.registered("HKCU", True)
        trial.run("cmd", "/c", windows_path(folder / "abmelden.cmd"), "/benutzer", at=elsewhere)
        trial.registered("HKCU", False)
        trial.run("cmd", "/c", script, "/falsch", status=2, at=elsewhere)
        (folder / "QXImportJob.dll").unlink()
        trial.run("cmd", "/c", script, status=1, at=elsewhere)
    print("\n".join(trial.failures) or "the package works")
    return 1 if trial.failures else 0


if __name__ == "__main__":
    sys.exit(main())

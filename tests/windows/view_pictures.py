#!/usr/bin/env python3
"""Opens the windows for Windows on the demonstration, opens a job and processes all, with a picture of each:
view_pictures.py FOLDER_OF_PROGRAMS FOLDER_OF_PICTURES

Runs under scripts/with-wine.sh on a display where nothing else is shown."""
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import time

from program_pair import DAY, wait_until

WINE = "/usr/lib/wine/wine64"
LIST, JOB, BOX = "Importvorgänge", "Auftrag", "Quorvex Import"
WAITING = "SELECT count(*) FROM ImportKopf WHERE JobType IN (10, 20, 30)"


def windows(name):
    """The windows whose title begins with the name."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^" + name], capture_output=True, text=True,
                           check=False)
    return found.stdout.split()


def open_window(name):
    wait_until("the window " + name, lambda: windows(name), 60)
    return windows(name)[-1]


def keys(*names):
    subprocess.run(["xdotool", "key", "--delay", "100", *names], check=True)


def picture(window, file):
    """Once nothing changes any more."""
    before, now = None, b""
    while before != now:
        time.sleep(1)
        before, now = now, subprocess.run(["import", "-window", window, "-strip", "png:-"], capture_output=True,
                                          check=True).stdout
    file.write_bytes(now)


def main():
    programs, pictures = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    with tempfile.TemporaryDirectory(prefix="qximportjob-") as place:
        database = pathlib.Path(place) / "Aufträge.db"
        environment = {**os.environ, "QXIMPORTJOB_DB": "Z:" + str(database).replace("/", "\\")}
        # Nobody else draws frames and gives the keyboard to a window there.
        subprocess.run([WINE, "reg", "add", r"HKCU\Software\Wine\X11 Driver", "/v", "Managed", "/d", "N", "/f"],
                       stdout=subprocess.DEVNULL, check=True)
        subprocess.run([WINE, programs / "qximportjob.exe", "init", "--demo"], env=environment, check=True)

        def waiting():
            connection = sqlite3.connect(database)
            try:
                return connection.execute(WAITING).fetchone()[0]
            finally:
                connection.close()

        view = subprocess.Popen([WINE, programs / "qximportjob-view.exe", *DAY], env=environment)
        try:
            main_window = open_window(LIST)
            picture(main_window, pictures / "windows-importvorgaenge.png")
            keys("Return")
            picture(open_window(JOB), pictures / "windows-auftrag.png")
            keys("Escape")
            wait_until("the dialog is closed", lambda: not windows(JOB))
            jobs = waiting()
            keys("F9")
            wait_until("all is processed", lambda: waiting() == 0, 120)
            # The end of a run that has left jobs is told in a box.
            wait_until("the box", lambda: windows(BOX))
            keys("Return")
            wait_until("the box is closed", lambda: not windows(BOX))
            picture(main_window, pictures / "windows-verarbeitet.png")
            print("%d jobs were processed" % jobs)
            keys("alt+F4")
            if view.wait(60) != 0:
                sys.exit("the program ended with status %d" % view.returncode)
        finally:
            view.kill()


if __name__ == "__main__":
    main()

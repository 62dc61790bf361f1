"""The program of this system and the one for Windows, each in a folder of its own."""
import os
import pathlib
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

# What no two runs have in common.
CHANCE = [
    (re.compile(rb"in \d+\.\d+ s\b"), b"in SPAN s"),
    (re.compile(rb'"seconds":\s*\d+(\.\d+)?'), b'"seconds":SPAN'),
    (re.compile(rb"\b\d\d:\d\d:\d\d\b"), b"TIME"),
    # The name of the day's protocol begins with the moment, and the process, that began it.
    (re.compile(rb"\b20\d{12}[0-9A-Z]{15}\d{3}\b"), b"PROTOCOL"),
    (re.compile(rb"\b20\d{12}\b"), b"MOMENT"),
    # The backup of an upgrade.
    (re.compile(rb"version1-\d+"), b"version1-MOMENT"),
    # Keys of positions that came without one.
    (re.compile(rb"\b[0-9A-F]{12}4[0-9A-F]{3}[89AB][0-9A-F]{15}\b"), b"GUID"),
    # The commit of the program, which need not have been configured anew.
    (re.compile(rb"\([0-9a-f]{12}\)"), b"(COMMIT)"),
    # Words of a command line are quoted as the system's shell reads them.
    (re.compile(rb"""--db (['"]?)(.*?)\1 """), rb"--db \2 "),
    # Where the test runs.
    (re.compile(rb"(Z:)?[/\\]tmp[/\\]qx-\w+[/\\]([^/\\]+)[/\\]([^/\\]+)[/\\]"), rb"FOLDER/\2/\3/"),
]
DAY = ["--user", "Jürgen", "--date", "24.11.2026"]


class Side:
    """One of the two programs."""

    def __init__(self, name, command):
        self.name = name
        self.command = command
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="qx-", dir="/tmp"))
        home = self.folder / "home"
        home.mkdir()
        self.work = self.folder / "Prüf stand"
        self.work.mkdir()
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", TZ="Europe/Berlin", XDG_DATA_HOME=str(home),
                                XDG_CONFIG_HOME=str(home))
        self.environment.pop("QXIMPORTJOB_DB", None)

    def start(self, arguments, **streams):
        return subprocess.Popen(self.command + arguments, cwd=self.work, env=self.environment, **streams)

    def run(self, arguments, text=b""):
        """Status, standard output and standard error."""
        program = self.start(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, messages = program.communicate(text, timeout=300)
        return program.returncode, output, messages

    def connect(self, database):
        return sqlite3.connect(self.work / database, timeout=60)

    def rows(self, database):
        """All of the database, row by row."""
        connection = self.connect(database)
        try:
            return [row.encode() for row in connection.iterdump()]
        finally:
            connection.close()

    def files(self):
        """The names and bytes of what lies in the folder but for the databases."""
        kept = [path for path in self.work.rglob("*") if path.is_file() and ".db" not in path.name]
        return {str(path.relative_to(self.work)): path.read_bytes() for path in kept}

    def remove(self):
        shutil.rmtree(self.folder)


def masked(content):
    for pattern, mark in CHANCE:
        content = pattern.sub(mark, content)
    return content


def customers(count):
    """Jobs that keep a run busy."""
    return "".join('{"type":"Kunde","JobID":"VIELE-%05d","Kundennummer":"%d","Bez1":"Käufer %d","Ort":"Celle"}\n'
                   % (i, 300000 + i, i) for i in range(count)).encode()


def sides(arguments):
    """Of the arguments LINUX_PROGRAM WINDOWS_PROGRAM_WITH_ITS_STARTER..."""
    for program in (arguments[0], arguments[-1]):
        if not os.access(program, os.R_OK):
            sys.exit("there is no program " + program)
    return Side("here", [arguments[0]]), Side("windows", arguments[1:])


def wait_until(what, holds, limit=60):
    end = time.monotonic() + limit
    while not holds():
        if time.monotonic() > end:
            raise AssertionError("still not after %d s: %s" % (limit, what))
        time.sleep(0.05)

#!/usr/bin/env python3
"""Runs of the program for Windows that meet, are killed and are stopped: run_control.py PROGRAM_WITH_ITS_STARTER..."""
import re
import signal
import subprocess
import sys

from program_pair import DAY, Side, customers, wait_until

DATABASE = "Läufe.db"
JOBS = 10000


def expect(what, holds, shown=""):
    if not holds:
        raise AssertionError("%s: %s" % (what, shown))
    print("ok: " + what)


class Run:
    """A run that has done some of the waiting jobs."""

    def __init__(self, side):
        before = waiting(side)
        self.program = side.start(["--db", DATABASE] + DAY + ["process"], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        wait_until("the run does its first jobs", lambda: waiting(side) < before)

    def end(self):
        output, messages = self.program.communicate(timeout=120)
        return self.program.returncode, output.decode(), messages.decode()


def count(side, table, condition="1 = 1"):
    connection = side.connect(DATABASE)
    try:
        return connection.execute("Select Count(*) From %s Where %s" % (table, condition)).fetchone()[0]
    finally:
        connection.close()


def waiting(side):
    return count(side, "ImportKopf", "JobType = 10")


def command(side, *arguments):
    status, output, messages = side.run(["--db", DATABASE] + DAY + list(arguments))
    return status, output.decode(), messages.decode()


def main():
    side = Side("windows", sys.argv[1:])
    expect("the database is created", command(side, "init")[0] == 0)
    status, output, messages = side.run(["--db", DATABASE, "stage", "-"], customers(JOBS))
    expect("the jobs are staged", status == 0, messages.decode())

    first = Run(side)
    status, output, messages = command(side, "process")
    expect("a second run is refused", status == 3 and "locked by user 'Jürgen'" in messages, messages)
    expect("the lock is shown as held", "that program is running" in command(side, "lock", "show")[1])

    first.program.kill()
    first.end()
    rest = waiting(side)
    expect("the killed run leaves jobs", 0 < rest < JOBS, rest)
    expect("its lock is left", count(side, "LockControl") == 1)

    second = Run(side)
    second.program.send_signal(signal.SIGINT)
    status, output, messages = second.end()
    expect("Ctrl+C stops the next run, which has taken the lock over", status == 5, (status, output[-200:], messages))
    expect("it leaves jobs too", 0 < waiting(side) < rest, waiting(side))
    expect("it gives the lock back", count(side, "LockControl") == 0)

    status, output, messages = command(side, "process")
    expect("the last run completes the rest", status == 0 and count(side, "ImportKopf", "JobType <> 13") == 0, messages)
    expect("every customer is there once", count(side, "Kundenstamm", "Kundennummer >= '300000'") == JOBS)
    expect("every job is logged once", count(side, "Protokollpositionen") == JOBS)
    side.remove()


main()

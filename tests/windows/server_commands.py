#!/usr/bin/env python3
"""Commands on a database server, each program on a database of its own, must give the same:
server_commands.py LINUX_PROGRAM WINDOWS_PROGRAM_WITH_ITS_STARTER...

The connection strings are $QXIMPORTJOB_TEST_ODBC and $QXIMPORTJOB_TEST_ODBC2. Under Wine the program for Windows reaches
the drivers of this system."""
import os
import sys

from comparison import Comparison
from program_pair import DAY, masked, sides

COMMANDS = [["init", "--demo"], ["list", "--json"], ["process", "--json"], ["list"], ["protocol"],
            ["release", "--all-warnings"], ["process"], ["export", "-"], ["settings", "list"], ["lock", "show"]]


def main():
    pair = sides(sys.argv[1:])
    databases = ["odbc:" + os.environ[name] for name in ("QXIMPORTJOB_TEST_ODBC", "QXIMPORTJOB_TEST_ODBC2")]
    comparison = Comparison()
    for command in COMMANDS:
        results = [side.run(["--db", database] + DAY + command) for side, database in zip(pair, databases)]
        name = " ".join(command)
        comparison.add(name + " (status)", results[0][0], results[1][0])
        comparison.add(name + " (output)", masked(results[0][1]), masked(results[1][1]))
        comparison.add(name + " (messages)", masked(results[0][2]), masked(results[1][2]))
        # An error on both sides is no agreement.
        if results[0][0] not in (0, 1):
            sys.exit("%s fails: %s" % (name, results[0][2].decode()))
    print("%d commands on both programs, %d differences" % (len(COMMANDS), comparison.found))
    for side in pair:
        side.remove()
    return 1 if comparison.found else 0


sys.exit(main())

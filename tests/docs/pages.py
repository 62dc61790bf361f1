#!/usr/bin/env python3
"""Types what the pages show, from top to bottom, and compares what is printed: pages.py PROGRAM LISTS [--renew]

A box (```) with lines that begin with "$ " is a session: each command is run by the shell, its output follows
up to the next command, a comment ("# ...", after an empty line) or the end of the box. A page is worked through
in a folder of its own that is empty but for links to the sources, the examples and the shared files. What varies is written as "...":
inside a line it stands for any text, alone on a line for any number of lines. A document of JSON may be broken
behind its commas. A comment before a box says what else to do with it:

    <!-- not run: why -->   nothing
    <!-- file: NAME -->     the box is written to this file
    <!-- sql: FILE -->      the box is run as statements on this database
    <!-- source: FILE -->   the box is this file
    <!-- from below -->     the box is one command of a session further down
    <!-- begins: COMMAND --> the command prints the box first, and whatever else behind it
    <!-- new folder -->     (anywhere) what follows begins in an empty folder

What stands between <!-- list: NAME --> and <!-- end --> is a list that LISTS prints from the code's tables. A list
whose name is that of a file in docs/ is the whole file.
What a command of the program prints as JSON is also compared with its schema.
With --renew the pages are rewritten in place instead; "..." stays where it stood as far as it still fits.
"""

import difflib
import json
import os
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/support"))
from output_schemas import Outputs  # noqa: E402

# The page of measurements shows no session of the program.
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")), *sorted((ROOT / "docs/man").glob("*.md"))]
LINE_WIDTH = 116
COMMANDS = ("$ ", "qximportjob ", "scripts/", "tests/")
# What no two runs have in common. A new output gets the mark there.
VARYING = [
    (r"\bin \d[\d.e-]* s\b", "in ... s"),
    (r'"seconds":[\d.e-]+', '"seconds":...'),
    (r'"SessionID":"\w{15}"', '"SessionID":"..."'),
    (r"\b\d{14}[0-9A-Z]{18}\b", "..."),
    (r"\b(?!DE0{9})[0-9A-F]{32}\b", "..."),
]


def parted(text):
    """A document of JSON in one line, and the lines behind it."""
    lines = text.splitlines()
    end = next((i for i, line in enumerate(lines) if not line.endswith(",")), len(lines))
    return "".join(lines[:end + 1]), "\n".join(lines[end + 1:])


def pattern(shown):
    """The text with its marks as an expression."""
    if shown.startswith(("{", "[")):
        document, rest = parted(shown)
        return re.escape(document).replace(re.escape("..."), ".*?") + r"\n" + pattern(rest)
    lines = []
    for line in shown.splitlines():
        if line == "...":
            lines.append(r"(?:(?!\(exit status )[^\n]*\n)*?")
        else:
            lines.append(re.escape(line).replace(re.escape("..."), r"[^\n]*?") + r"\n")
    return "".join(lines)


def fits(shown, printed):
    return re.fullmatch(pattern(shown), printed) is not None


def broken(document):
    """A long document of JSON in lines."""
    if len(document) <= LINE_WIDTH:
        return document
    lines = [""]
    for part in re.split(r'(?<=[,])(?=["{\[])', document):
        if len(lines[-1]) + len(part) > LINE_WIDTH and lines[-1]:
            lines.append("")
        lines[-1] += part
    return "\n".join(lines)


def abbreviated(value):
    """A document with the first of several elements and members alone."""
    def several(parts, kept, form):
        return ",".join([form(part) for part in parts[:kept]] + (["..."] if len(parts) > kept else []))
    if isinstance(value, dict):
        return "{" + several(list(value.items()), 12, lambda member: f'"{member[0]}":{abbreviated(member[1])}') + "}"
    if isinstance(value, list):
        return "[" + several(value, 1, abbreviated) + "]"
    return json.dumps(value, ensure_ascii=False)


def merged(shown, printed):
    """The printed lines with the marks of those shown in their places."""
    matches = [next((old for old in shown if "..." in old and old != "..." and fits(old, new + "\n")), new)
               for new in printed]
    result = []
    for kind, a, b, c, d in difflib.SequenceMatcher(None, shown, matches, False).get_opcodes():
        result += ["..."] if "..." in shown[a:b] and kind in ("replace", "delete") else matches[c:d]
    return "\n".join(result)


def renewed(shown, printed):
    """The printed text as the page is to show it."""
    if fits(shown, printed):
        return shown
    text = printed.rstrip("\n")
    for varying, mark in VARYING:
        text = re.sub(varying, mark, text)
    if text.startswith(("{", "[")):
        document, rest = parted(text)
        if "..." in shown:
            short = abbreviated(json.loads(parted(printed)[0]))
            for varying, mark in VARYING:
                short = re.sub(varying, mark, short)
            if fits("\n".join(filter(None, (short, rest))), printed):
                document = short
        return "\n".join(filter(None, (broken(document), rest)))
    candidate = merged(shown.splitlines(), text.splitlines())
    return candidate if fits(candidate, printed) else text


class Folder:
    """Where the commands of a page are run."""

    def __init__(self, program):
        self.program = program
        self.path = None

    def begin(self):
        self.end()
        self.path = tempfile.mkdtemp()
        for name in ("src", "examples", "share"):
            os.symlink(ROOT / name, os.path.join(self.path, name))

    def end(self):
        if self.path:
            shutil.rmtree(self.path)
        self.path = None

    def run(self, command):
        kept = {name: value for name, value in os.environ.items()
                if not name.startswith(("QXIMPORTJOB", "XDG_")) and name != "COLUMNS"}
        done = subprocess.run(
            ["bash", "-c", command], cwd=self.path, stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False,
            env={**kept, "HOME": self.path, "PATH": f"{os.path.dirname(self.program)}:{kept['PATH']}"})
        output = (done.stdout + done.stderr).decode()
        # Blanks at the end of a line are none that a reader sees.
        printed = "".join(line.rstrip() + "\n" for line in output.splitlines())
        return printed + (f"(exit status {done.returncode})\n" if done.returncode else "")


class Page:
    def __init__(self, path, folder, lists, program, outputs):
        self.path, self.folder, self.lists, self.program, self.outputs = path, folder, lists, program, outputs
        self.faults = []

    def fault(self, line, text):
        self.faults.append(f"{self.path.relative_to(ROOT)}:{line}: {text}")

    def walk(self):
        """The page as it should be."""
        old = self.path.read_text().splitlines()
        new, marks, excerpts, at = [], {}, [], 0
        self.folder.begin()
        while at < len(old):
            line = old[at]
            mark = re.fullmatch(r"<!-- (not run|file|sql|source|from below|begins|new folder|list)(?:: (.*?))? -->", line)
            if line.startswith("```"):
                end = next(i for i in range(at + 1, len(old)) if old[i].startswith("```"))
                box = old[at + 1:end]
                new.append(line)
                if "from below" in marks:
                    excerpts.append((at + 1, len(new), len(box), box[0]))
                    new += box
                else:
                    shown = self.box(at + 1, box, marks)
                    new += shown
                    self.compare_beginning(at + 1, shown, marks.get("begins"))
                new.append(old[end])
                marks, at = {}, end + 1
                continue
            new.append(line)
            if mark and mark[1] == "new folder":
                self.folder.begin()
            elif mark and mark[1] == "list":
                end = old.index("<!-- end -->", at)
                if mark[2] in self.lists:
                    new += self.lists[mark[2]]
                else:
                    self.fault(at + 1, f"there is no list '{mark[2]}'")
                at = end
                continue
            elif mark:
                marks[mark[1]] = mark[2]
            elif line:
                marks = {}
                self.inline(at + 1, line)
            at += 1
        for line, place, length, command in reversed(excerpts):
            where = next((i for i in range(place + length, len(new)) if new[i] == command), None)
            if where is None:
                self.fault(line, f"no session below has '{command}'")
                continue
            stop = next(i for i in range(where + 1, len(new))
                        if new[i].startswith(("$ ", "```", "(exit status")) or not new[i])
            new[place:place + length] = new[where:stop]
        self.folder.end()
        return old, new

    def box(self, number, box, marks):
        where = self.folder.path
        if "source" in marks:
            return (ROOT / marks["source"]).read_text().splitlines()
        if "file" in marks:
            pathlib.Path(where, marks["file"]).write_text("\n".join(box) + "\n")
        elif "sql" in marks:
            database = sqlite3.connect(os.path.join(where, marks["sql"]))
            database.executescript("\n".join(box))
            database.close()
        elif "not run" not in marks:
            if any(line.startswith("$ ") for line in box):
                return self.session(number, box)
            if any(line.startswith(COMMANDS) for line in box):
                self.fault(number, "commands that are neither run nor marked as not run")
        return box

    def compare_beginning(self, number, box, command):
        if command and not re.match(pattern("\n".join(box)), self.folder.run(command).lstrip("\n")):
            self.fault(number, f"'{command}' prints something else than the box")

    def session(self, number, box):
        new, at = [], 0
        while at < len(box):
            new.append(box[at])
            if box[at].startswith("$ "):
                command = [box[at][2:]]
                while command[-1].endswith("\\"):
                    at += 1
                    command.append(box[at])
                    new.append(box[at])
                end = at + 1
                while end < len(box) and not box[end].startswith(("$ ", "# ")):
                    end += 1
                shown = box[at + 1:end]
                gap = 1 if end < len(box) and shown and not shown[-1] else 0
                shown = shown[:len(shown) - gap]
                printed = self.folder.run("\n".join(command))
                for fault in self.outputs.in_session("\n".join(command), printed):
                    self.fault(number, fault)
                text = renewed("\n".join(shown), printed)
                new += text.split("\n") if text else []
                new += [""] * gap
                at = end - 1
            at += 1
        return new

    def inline(self, number, line):
        """Commands that a text names have at least the options that it gives them, and files are there."""
        for name, command in re.findall(r"`(qximportjob )?([^`]*)`", line):
            verbs = []
            for word in command.split():
                if not re.fullmatch("[a-z]+", word) or not known(self.program, [*verbs, word]):
                    break
                verbs.append(word)
            if not name and not verbs:
                continue
            options = help_of(self.program, verbs) + help_of(self.program, [])
            for option in re.findall(r"--[a-z][a-z0-9-]*", command):
                if not re.search(option + r"\b", options):
                    self.fault(number, f"'qximportjob {' '.join(verbs)}' has no option {option}")
        for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", line):
            if not (self.path.parent / target).exists():
                self.fault(number, f"there is no {target}")
        for script in re.findall(r"`((?:scripts|tests|src|docs)/[\w./*-]+)", line):
            if not (ROOT / script).exists() and "*" not in script:
                self.fault(number, f"there is no {script}")


HELP = {}


def help_of(program, verbs):
    key = " ".join(verbs)
    if key not in HELP:
        HELP[key] = subprocess.run([program, *verbs, "--help"], capture_output=True, text=True, check=False).stdout
    return HELP[key]


def known(program, verbs):
    """Whether the last word is a command of those before it."""
    return re.search(rf"^  {re.escape(verbs[-1])}\b", help_of(program, verbs[:-1]), re.M) is not None


def undocumented_options(program):
    """Every option of every command stands in the page of the program."""
    page = (ROOT / "docs/cli.md").read_text()
    for verb in re.findall(r"^  ([a-z]+) ", help_of(program, []), re.M):
        if f"`{verb}" not in page:
            yield f"docs/cli.md: nothing about the command {verb}"
        for option in set(re.findall(r"--[a-z][a-z0-9-]*", help_of(program, [verb]))):
            if not re.search(option + r"\b", page):
                yield f"docs/cli.md: nothing about the option {option} of {verb}"


def quoted_texts():
    """The texts of the program that the manual quotes stand in the sources, apart from what they fill in."""
    sources = "".join(path.read_text() for path in (ROOT / "src").rglob("*.[ch]*") if path.is_file())
    sources = re.sub(r'"\s*\n\s*"', "", sources).replace("&", "")
    for number, line in enumerate((ROOT / "docs/handbuch.md").read_text().splitlines(), 1):
        for text in re.findall(r"`([^`]*)`", line):
            for part in re.split(r"\.\.\.|'[^']*'|: | \d+", text):
                part = part.strip(" .:'")
                # A text may begin with the name of the field.
                known_part = part in sources or part.partition(" ")[2] in sources
                if " " in part and not known_part and not text.startswith("qximportjob"):
                    yield f"docs/handbuch.md:{number}: no source has the text '{part}'"


def untold_texts():
    """The manual has every reason for which a job is not written."""
    manual = " ".join((ROOT / "docs/handbuch.md").read_text().split())
    for path in (ROOT / "src/engine").glob("*_texts.h"):
        source = re.sub(r"//.*|#.*", "", path.read_text())
        for text in re.findall(r'"([^"\n]+)"', re.sub(r'"\s*\n\s*"', "", source)):
            part = text.strip(" .:'")
            if " ".join(part.split()) not in manual:
                yield f"docs/handbuch.md: nothing about '{part}' of {path.name}"


def read_lists(program):
    lists, name = {}, None
    for line in subprocess.run([program], capture_output=True, text=True, check=True).stdout.splitlines():
        if line.startswith("=== "):
            name = line[4:]
            lists[name] = []
        else:
            lists[name].append(line)
    return lists


def main():
    program, list_printer = (os.path.abspath(argument) for argument in sys.argv[1:3])
    renew = "--renew" in sys.argv[3:]
    lists = read_lists(list_printer)
    folder, outputs = Folder(program), Outputs(program)
    faults, used = [*quoted_texts(), *untold_texts(), *undocumented_options(program)], set()
    for path in PAGES:
        page = Page(path, folder, lists, program, outputs)
        old, new = page.walk()
        faults += page.faults
        used |= set(re.findall(r"<!-- list: (.*?) -->", "\n".join(old)))
        if old == new:
            continue
        name = str(path.relative_to(ROOT))
        if renew:
            path.write_text("\n".join(new) + "\n")
            print("renewed " + name)
        else:
            faults += difflib.unified_diff(old, new, name, name + " as it should be", lineterm="")
    for name in [name for name in lists if name.startswith("docs/")]:
        path, new = ROOT / name, lists[name]
        old = path.read_text().splitlines() if path.exists() else []
        used.add(name)
        if old != new and renew:
            path.write_text("\n".join(new) + "\n")
            print("renewed " + name)
        elif old != new:
            faults += difflib.unified_diff(old, new, name, name + " as it should be", lineterm="")
    faults += [f"no page shows the list '{name}'" for name in lists if name not in used]
    print("\n".join(faults))
    if faults and not renew:
        print("\nscripts/pages.sh --renew rewrites what the pages show; read the difference before you keep it.")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()

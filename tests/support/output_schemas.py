"""What the program prints as JSON against the schemas that it prints of it; needs python3-jsonschema."""
import json
import re
import subprocess

import jsonschema

VALUED = {"--db", "--user", "--date", "--color"}
GROUPS = {"protocol", "lock", "settings"}


class Outputs:
    def __init__(self, program):
        self.program = program
        self.validators = {}
        self.seen = set()

    def names(self):
        return [line.split()[0] for line in self.print_schema().splitlines()]

    def print_schema(self, *name):
        return subprocess.run([self.program, "schema", "--output", *name], capture_output=True, text=True, check=True).stdout

    def schema(self, name):
        """Without the columns that others may have added."""
        schema = json.loads(self.print_schema(name))
        for definition in schema["$defs"].values():
            definition["additionalProperties"] = False
        return schema

    def validator(self, name):
        if name not in self.validators:
            self.validators[name] = jsonschema.Draft202012Validator(self.schema(name))
        return self.validators[name]

    @staticmethod
    def name_of(arguments):
        words, rest = [], iter(arguments)
        for argument in rest:
            if argument in VALUED:
                next(rest, None)
            elif not argument.startswith("-"):
                words.append(argument)
        name = "-".join(words[:2]) if words and words[0] in GROUPS and len(words) > 1 else "".join(words[:1])
        if name.startswith("protocol-") and name != "protocol-purge":
            name = "protocol"
        return name + ("-watch" if "--watch" in arguments else "") + ("-line" if "--json=lines" in arguments else "")

    def faults(self, arguments, printed):
        """What is wrong with the output of a command that was called with one of the --json."""
        documents = printed.splitlines() if "--json=lines" in arguments else [printed]
        for text in documents:
            document = json.loads(text)
            name = "error" if next(iter(document)) == "error" else self.name_of(arguments)
            self.seen.add(name)
            for error in self.validator(name).iter_errors(document):
                yield f"{' '.join(arguments)}: {name}: {error.json_path}: {error.message}"[:600]

    def in_session(self, command, printed):
        """The same for a line of a shell that ends with a command of the program."""
        call = re.split(r"\bqximportjob ", command.replace("\\\n", " "))[-1].split()
        if not {"--json", "--json=lines"} & set(call) or not printed.startswith(("{", "[")):
            return []
        lines = [line for line in printed.splitlines() if line.startswith(("{", "["))]
        return list(self.faults(call, "\n".join(lines)))


def all_names(schema):
    """The names of the members of each object."""
    for definition in schema["$defs"].values():
        yield list(definition["properties"])

class Comparison:
    """Counts what differs and shows the first of it."""

    MOST_SHOWN = 10

    def __init__(self):
        self.found = 0

    def add(self, what, here, there):
        if here == there:
            return
        self.found += 1
        if self.found > self.MOST_SHOWN:
            return
        print("DIFFERENT: " + what)
        at = 0
        if isinstance(here, bytes) and isinstance(there, bytes):
            while at < min(len(here), len(there)) and here[at] == there[at]:
                at += 1
            begin = max(at - 200, 0)
            here, there = here[begin:at + 200], there[begin:at + 200]
        print("  here    %r\n  windows %r" % (here, there))

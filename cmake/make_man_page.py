#!/usr/bin/env python3
"""Makes a manual page of pages in Markdown: make_man_page.py VERSION TEMPLATE PAGE

The template begins with "# NAME(SECTION): PURPOSE"; "##" are its sections. A line of its own

    <!-- section: FILE: HEADING -->   takes over a section of another page with its heading, as a subsection
    <!-- text: FILE: HEADING -->      takes over its text alone
    <!-- others: FILE -->             takes over all sections of the page that the template does not name

FILE is beside the folder of the template. Understood is what the pages use: headings, paragraphs, lists, tables, boxes,
`code`, **bold**, *italic* and links. A table becomes a list: what is code at the beginning of a row is the term.
"""
import pathlib
import re
import sys


def escaped(text):
    return text.replace("\\", "\\e").replace("-", "\\-").replace("~", "\\(ti").replace("^", "\\(ha")


def inline(text):
    """A text with its marks as requests of the formatter."""
    parts = re.split(r"(`[^`]*`|\*\*[^*]+\*\*|\*[^*\s][^*]*\*|\[[^\]]+\]\([^)]+\))", text)
    result = ""
    for part in parts:
        if part.startswith("`"):
            # A long one may be broken behind a comma.
            result += f"\\fB{escaped(part[1:-1])}\\fR".replace(",", ",\\:")
        elif part.startswith("**"):
            result += f"\\fB{inline(part[2:-2])}\\fR"
        elif part.startswith("*") and len(part) > 1:
            result += f"\\fI{inline(part[1:-1])}\\fR"
        elif link := re.fullmatch(r"\[([^\]]+)\]\(([^)]+)\)", part):
            # What a file is named stands in the text; a place in one is found by its name.
            result += inline(link[1]) if "." in link[1] else f"{inline(link[1])} ({escaped(link[2].split('#')[0])})"
        else:
            result += escaped(part)
    return result


def line(text):
    """A line of text that is no request."""
    return "\\&" + text if text.startswith((".", "'")) else text


def section(page, heading):
    """The lines of a section below its heading, without those of the next one of its kind."""
    lines = page.read_text().splitlines()
    start = next((i for i, text in enumerate(lines) if re.fullmatch(f"#+ {re.escape(heading)}", text)), None)
    if start is None:
        sys.exit(f"{page} has no section '{heading}'")
    # The text of the whole page ends where its first section begins.
    level = max(lines[start].index(" "), 2)
    boxed, end = False, start + 1
    while end < len(lines):
        boxed ^= lines[end].startswith("```")
        if not boxed and re.match(f"#{{1,{level}}} ", lines[end]):
            break
        end += 1
    return lines[start + 1:end]


def gathered(template):
    """The lines of the template with those that it takes over."""
    lines = template.read_text().splitlines()
    orders = [re.fullmatch(r"<!-- (section|text|others): ([^:]*?)(?:: (.*))? -->", text) for text in lines]
    for text, order in zip(lines, orders):
        if not order:
            yield text
            continue
        source = template.parent.parent / order[2]
        named = {other[3] for other in orders if other and other[2] == order[2]}
        if order[1] == "others":
            headings = [heading for heading in re.findall(r"^## (.*)$", source.read_text(), re.M) if heading not in named]
        else:
            headings = [order[3]]
        for heading in headings:
            if order[1] != "text":
                yield f"### {heading}"
            yield from section(source, heading)


def row(text):
    return [cell.strip() for cell in text.strip().strip("|").split("|")]


def table(lines):
    for cells in map(row, lines[2:]):
        terms = [cells[0]]
        while len(terms) < len(cells) - 1 and re.fullmatch(r"`[^`]*`", cells[len(terms)]):
            terms.append(cells[len(terms)])
        yield ".TP"
        yield line(inline(" ".join(terms)))
        yield line(inline("; ".join(cell for cell in cells[len(terms):] if cell)) or "\\&")


def page(lines):
    """The requests for lines in Markdown."""
    at, paragraph = 0, []

    def flush():
        if paragraph:
            yield ".PP"
            yield line(inline(" ".join(paragraph)))
            paragraph.clear()

    while at < len(lines):
        text = lines[at]
        if heading := re.fullmatch(r"(##+) (.*)", text):
            yield from flush()
            yield f".SH {inline(heading[2].upper())}" if heading[1] == "##" else f".SS {inline(heading[2])}"
        elif text.startswith("```"):
            yield from flush()
            yield from (".PP", ".RS 4", ".EX")
            at += 1
            while not lines[at].startswith("```"):
                shown = line(escaped(lines[at]))
                yield f"\\fB{shown}\\fR" if lines[at].startswith("$ ") else shown
                at += 1
            yield from (".EE", ".RE")
        elif text.startswith("|"):
            yield from flush()
            end = at
            while end < len(lines) and lines[end].startswith("|"):
                end += 1
            yield from table(lines[at:end])
            at = end - 1
        elif item := re.fullmatch(r"[*-] (.*)", text):
            yield from flush()
            words = [item[1]]
            while at + 1 < len(lines) and lines[at + 1].startswith("  "):
                at += 1
                words.append(lines[at].strip())
            yield ".IP \\(bu 2"
            yield line(inline(" ".join(words)))
        elif not text or text.startswith("<!--"):
            yield from flush()
        else:
            paragraph.append(text.strip())
        at += 1
    yield from flush()


def main():
    version, template, target = sys.argv[1], pathlib.Path(sys.argv[2]).resolve(), pathlib.Path(sys.argv[3])
    lines = list(gathered(template))
    title = re.fullmatch(r"# (\S+)\((\d)\): (.*)", lines[0])
    head = ['.\\" -*- coding: utf-8 -*-', ".nr HY 0", f'.TH {title[1].upper()} {title[2]} "" "qximportjob {version}"', ".nh", ".ad l",
            ".SH NAME", f"{escaped(title[1])} \\- {inline(title[3])}"]
    target.write_text("\n".join([*head, *page(lines[1:])]) + "\n")


main()

"""Tables as Markdown, and the marked sections of a document that hold them."""
import re

from .session import median


def table(head, rows):
    """A table whose first column is text, the others figures."""
    cells = [head, *[[str(cell) for cell in row] for row in rows]]
    widths = [max(3, *(len(row[i]) for row in cells)) for i in range(len(head))]
    lines = ["| " + " | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                               for i, (cell, width) in enumerate(zip(row, widths))) + " |" for row in cells]
    rule = "|" + "|".join("-" * (width + 2) if i == 0 else "-" * (width + 1) + ":"
                          for i, width in enumerate(widths)) + "|"
    return "\n".join([lines[0], rule, *lines[1:]])


def milliseconds(seconds):
    return f"{seconds * 1000:,.1f} ms" if seconds < 1 else f"{seconds:,.2f} s"


def ratio(value, ours):
    return f"{value / ours:,.1f}" if value / ours < 100 else f"{value / ours:,.0f}"


def peer_table(rows, ours):
    """The rows of one size; `ours` is the one that all others are set against."""
    head = ["tool", "time", "slowest", "processor", "memory", "times ours", "memory ours", "runs"]
    return table(head, [peer_cells(row, ours) for row in rows])


def peer_cells(row, ours):
    if row.problem:
        return [row.tool.name, row.problem, *[""] * 5, len(row.runs)]
    time, memory = median(row.runs, "seconds"), max(run.memory for run in row.runs)
    against = ["", ""]
    if not ours.problem:
        against = [ratio(time, median(ours.runs, "seconds")), ratio(memory, max(run.memory for run in ours.runs))]
    return [row.tool.name, milliseconds(time), milliseconds(max(run.seconds for run in row.runs)),
            milliseconds(median(row.runs, "cpu")), f"{memory / 1e6:,.0f} MB", *against, len(row.runs)]


def replace_section(document, name, text):
    """The document with what stands between the marks of that section replaced."""
    marked = re.compile(rf"(<!-- {name}: written by bench/peers -->\n).*?(<!-- {name}: end -->)", re.DOTALL)
    replaced, count = marked.subn(lambda found: f"{found[1]}\n{text}\n\n{found[2]}", document)
    if count != 1:
        raise ValueError(f"{count} sections {name}, not one")
    return replaced

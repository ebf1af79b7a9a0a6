"""What the tests of this folder found, one case after the other; left where the other tests leave theirs."""

import os
import pathlib
from xml.sax.saxutils import quoteattr

results = []


def record(name, problem):
    """One case: it has passed when there is no problem to tell of."""
    results.append((name, problem))
    if problem:
        print("FAILED: %s: %s" % (name, problem))


def finish(program):
    """The exit status. With GTEST_OUTPUT=xml:FOLDER/ the results are left there."""
    kind, _, folder = os.environ.get("GTEST_OUTPUT", "").partition(":")
    if kind == "xml":
        cases = "".join("<testcase name=%s result=\"completed\">%s</testcase>\n" % (
            quoteattr(name), "<failure message=%s/>" % quoteattr(problem) if problem else "")
            for name, problem in results)
        pathlib.Path(folder, program + ".xml").write_text("<testsuites>\n%s</testsuites>\n" % cases)
    failed = sum(1 for _, problem in results if problem)
    print("%d passed, %d failed" % (len(results) - failed, failed))
    return 1 if failed or not results else 0

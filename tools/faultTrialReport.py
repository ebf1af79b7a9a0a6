"""What tools/faultTrial prints: a line for each miss with how to repeat it, and the table."""

import re
import shlex

import machineFaults
import sourceFaults


def rowOf(name, trials, mustFail):
    if not mustFail:
        return [name, str(len(trials)), "-", "-", str(sum(trial.status != 0 for trial in trials))]
    caught = [trial for trial in trials if trial.isCaught()]
    return [name, str(len(trials)), str(len(caught)), str(sum(trial.isNamed() for trial in caught)), "-"]


def tableOf(trials):
    rows = [["fault", "made", "caught", "named rightly", "false alarms"]]
    for kind in [kind for kind, _, _ in machineFaults.KINDS] + sourceFaults.KIND_NAMES:
        some = [trial for trial in trials if trial.fault.kind == kind]
        if some:
            rows.append(rowOf(kind, some, some[0].fault.mustFail))
    rows.append(rowOf("all faults", [trial for trial in trials if trial.fault.mustFail], True))
    rows.append(rowOf("all that is no fault", [trial for trial in trials if not trial.fault.mustFail], False))
    widths = [max(len(row[i]) for row in rows) for i in range(5)]
    return "\n".join("  ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                               for i, (cell, width) in enumerate(zip(row, widths))) for row in rows)


def missText(trial):
    if trial.fault.mustFail and trial.isCaught():
        wrong = "names another device"
    elif trial.fault.mustFail:
        wrong = "not caught" if trial.status == 0 else f"ended with {trial.status}"
    else:
        wrong = "false alarm" if trial.status == 1 else f"ended with {trial.status}"
    return f"{wrong}: {trial.fault.what}; the report says: {trial.line}"


def keep(folder, trial):
    """Saves a miss, and gives the command that shows it."""
    stem = re.sub(r"[^\w.-]", "_", trial.recording) + f".{trial.number}"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{stem}.machine.xml").write_bytes(trial.fault.machine)
    (folder / f"{stem}.script.xml").write_bytes(trial.script)
    return f"check {folder / stem}.script.xml --state {folder / stem}.machine.xml"


def report(arguments, program, preparations, trials, passedOver):
    results = [preparation.result for preparation in preparations]
    for result in results:
        for notice in result.notices:
            print(f"{result.name}: {notice}")
        for problem in result.problems:
            print(f"{result.name}: {problem}")
    misses = [trial for trial in trials if not trial.isRight()]
    for trial in misses:
        repeat = (f"{program} {keep(arguments.keep, trial)}" if arguments.keep else
                  f"tools/faultTrial {arguments.folder} --program {program} --seed {arguments.seed} "
                  f"--faults {arguments.faults} --only {shlex.quote(trial.recording)} --keep FOLDER")
        print(f"{trial.recording}: {missText(trial)}\n    repeat: {repeat}")
    if arguments.verbose:
        for trial in trials:
            print(f"{trial.recording}: {'right' if trial.isRight() else 'WRONG'}: {trial.fault.what}: {trial.line}")
    passed = sum(result.isSelfCheckPassed for result in results)
    print(f"{len(results)} recordings ({passedOver} other files passed over), {passed} self-checks passed\n")
    print(tableOf(trials))
    right = len(trials) - len(misses)
    print(f"\n{right} of {len(trials)} right" + ("" if trials else ": no fault was made"))
    return bool(trials) and not misses and passed == len(results)

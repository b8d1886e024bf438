# What the scripts that check the house rules share: the files of the tree, and how to report.
import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent
SOURCES = (".h", ".hpp", ".c", ".cpp")


def git(*arguments):
    answer = subprocess.run(["git", *arguments], cwd=ROOT, capture_output=True, text=True)
    if answer.returncode:
        sys.exit(f"git {' '.join(arguments)}: {answer.stderr.strip()}")
    return answer.stdout


def files(*endings):
    """The files of the tree that git does not ignore, as paths from its root."""
    listed = git("ls-files", "-z", "--cached", "--others", "--exclude-standard").split("\0")
    return sorted(p for p in set(listed)
                  if p and (ROOT / p).is_file() and (not endings or p.endswith(endings)))


def changed_files(*endings):
    """Those of files() that differ from the last commit, or that it does not have."""
    changed = set(git("diff", "--name-only", "-z", "HEAD").split("\0"))
    changed |= set(git("ls-files", "-z", "--others", "--exclude-standard").split("\0"))
    return [p for p in files(*endings) if p in changed]


def read(path):
    return (ROOT / path).read_text(encoding="utf-8", errors="replace")


def finish(rule, problems):
    """Prints what breaks the rule, and ends the script with the status that says so."""
    for problem in problems:
        print(problem)
    print(f"{rule}: {'holds' if not problems else f'{len(problems)} to mend'}")
    sys.exit(1 if problems else 0)

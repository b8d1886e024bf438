# The programs of a document: the files that it shows, and what it says that they print.
import re
from pathlib import Path

DOCS = Path(__file__).resolve().parents[2] / "docs"
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class Document:
    """`files`: name -> text; `printed`: name of the program above -> text, in that order."""

    def __init__(self, name):
        text = (DOCS / name).read_text(encoding="utf-8")
        self.files, self.printed, self.commands = {}, {}, {}
        shown, end = None, 0
        for block in BLOCK.finditer(text):
            lead = text[end:block.start()].strip().rsplit("\n\n", 1)[-1]
            end = block.end()
            if found := re.fullmatch(r"`([\w.]+)`:", lead):
                shown = found.group(1)
                self.files[shown] = block.group(2)
            elif block.group(1) == "text" and shown:
                if not re.search(r"prints(, blank lines aside)?:$", lead):
                    raise ValueError(f"{name}: what is the text after {lead!r}?")
                self.printed[shown] = block.group(2)
                self.commands[shown] = lead

    def write_to(self, folder):
        for name, text in self.files.items():
            (Path(folder) / name).write_text(text, encoding="utf-8")

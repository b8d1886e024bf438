# The machine's ODBC drivers, told to keep no logs: as Debian installs PostgreSQL's, every process that
# uses it leaves one in /tmp.
import os
import re
from pathlib import Path


def environment(folder):
    """Where programs find them; `folder` is for this alone and gone afterwards."""
    drivers = (Path(os.environ.get("ODBCSYSINI", "/etc")) / "odbcinst.ini").read_text()
    (Path(folder) / "odbcinst.ini").write_text(re.sub(r"(?mi)^(CommLog|Debug)\s*=.*$", r"\1=0", drivers))
    return {"ODBCSYSINI": str(folder)}

# Builds the package for pip: a wheel is a zip of the modules with three lists beside them, and an
# editable one points at this folder. Nothing beyond the standard library.
import base64
import hashlib
import re
import tarfile
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
NAME = "pelm"
TAG = "py3-none-any"


def version():
    text = (HERE / NAME / "__init__.py").read_text(encoding="utf-8")
    return re.search(r'^__version__ = "([^"]+)"', text, re.MULTILINE).group(1)


def metadata():
    lines = ["Metadata-Version: 2.1", f"Name: {NAME}", f"Version: {version()}",
             "Summary: The business component PelmComum2008 from Python", "License: MIT",
             "Requires-Python: >=3.9", "Description-Content-Type: text/markdown", "",
             (HERE / "README.md").read_text(encoding="utf-8")]
    return "\n".join(lines)


def dist_info():
    return f"{NAME}-{version()}.dist-info"


def described():
    wheel = f"Wheel-Version: 1.0\nGenerator: {NAME}\nRoot-Is-Purelib: true\nTag: {TAG}\n"
    return {f"{dist_info()}/METADATA": metadata(), f"{dist_info()}/WHEEL": wheel}


def write_wheel(folder, contents):
    name = f"{NAME}-{version()}-{TAG}.whl"
    record = []
    with zipfile.ZipFile(Path(folder) / name, "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, text in contents.items():
            data = text.encode("utf-8")
            digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
            record.append(f"{path},sha256={digest},{len(data)}")
            wheel.writestr(path, data)
        record.append(f"{dist_info()}/RECORD,,")
        wheel.writestr(f"{dist_info()}/RECORD", "\n".join(record) + "\n")
    return name


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    modules = {f"{NAME}/{p.name}": p.read_text(encoding="utf-8") for p in sorted((HERE / NAME).glob("*.py"))}
    return write_wheel(wheel_directory, modules | described())


def build_editable(wheel_directory, config_settings=None, metadata_directory=None):
    return write_wheel(wheel_directory, {f"__editable__{NAME}.pth": f"{HERE}\n"} | described())


def build_sdist(sdist_directory, config_settings=None):
    root = f"{NAME}-{version()}"
    info = Path(sdist_directory) / "PKG-INFO"
    info.write_text(metadata(), encoding="utf-8")
    with tarfile.open(Path(sdist_directory) / f"{root}.tar.gz", "w:gz") as archive:
        archive.add(info, f"{root}/PKG-INFO")
        for name in ["pyproject.toml", "build_backend.py", "README.md"]:
            archive.add(HERE / name, f"{root}/{name}")
        for path in sorted((HERE / NAME).glob("*.py")):
            archive.add(path, f"{root}/{NAME}/{path.name}")
    info.unlink()
    return f"{root}.tar.gz"

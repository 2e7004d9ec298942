"""What pyproject.toml can't say: the version, which stands in the library's CMakeLists.txt alone, and a wheel's tag.

ORVANE_WHEEL_PLATFORM names the platform of a wheel that brings the library (make_wheel.sh sets it); without it the
wheel is pure Python and finds a library that is installed otherwise.
"""

import os
import re
from pathlib import Path

import setuptools
from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
PLATFORM = os.environ.get("ORVANE_WHEEL_PLATFORM")


def version() -> str:
    build_list = HERE.parent.parent / "CMakeLists.txt"
    if build_list.is_file():
        found = re.search(r"^project\(Orvane VERSION ([0-9.]+)", build_list.read_text("utf-8"), re.MULTILINE)
    else:  # an unpacked source archive
        found = re.search(r"^Version: (\S+)", (HERE / "PKG-INFO").read_text("utf-8"), re.MULTILINE)
    if found is None:
        raise SystemExit("the version was not found in CMakeLists.txt")
    return found.group(1)


class Distribution(setuptools.Distribution):
    """With a library inside it belongs to one platform, though nothing is compiled here."""

    def has_ext_modules(self):
        return bool(PLATFORM) or super().has_ext_modules()


class Wheel(bdist_wheel):
    """A wheel for every Python 3: the library is called, not linked against Python."""

    def get_tag(self):
        return ("py3", "none", PLATFORM) if PLATFORM else super().get_tag()


setuptools.setup(version=version(), distclass=Distribution, cmdclass={"bdist_wheel": Wheel})

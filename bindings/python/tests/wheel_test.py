"""What is installed: the version of the library, its files, and types that hold."""

from __future__ import annotations

import os
import re
import subprocess
import sys
import zipfile
from importlib import metadata
from pathlib import Path

import pytest

import orvane

ROOT = Path(os.environ["ORVANE_TEST_ROOT"])
PACKAGE = Path(orvane.__file__).parent


def test_the_version_is_that_of_the_library():
    build_list = (ROOT / "CMakeLists.txt").read_text("utf-8")
    wanted = re.search(r"project\(Orvane VERSION ([0-9.]+)", build_list).group(1)
    assert orvane.version() == orvane.__version__ == orvane.info().version == wanted
    assert metadata.version("orvane") == wanted


def test_info_tells_where_the_library_lies():
    info = orvane.info()
    assert info.library == PACKAGE.resolve() / "liborvane.so"
    assert info.classifier == PACKAGE.resolve() / "Orvane.dat"
    assert info.has_classifier


def test_the_wheel_has_what_it_needs_and_nothing_else():
    with zipfile.ZipFile(os.environ["ORVANE_TEST_WHEEL"]) as wheel:
        files = {name for name in wheel.namelist() if name.startswith("orvane/")}
        sources = {f"orvane/{file.name}" for file in (ROOT / "bindings/python/src/orvane").glob("*.py")}
        assert files == sources | {"orvane/py.typed", "orvane/liborvane.so", "orvane/Orvane.dat"}
        assert [name for name in wheel.namelist() if name.endswith("/LICENSE")]
        assert not [name for name in wheel.namelist() if not name.startswith(("orvane/", "orvane-"))]
        tags = wheel.read(next(name for name in wheel.namelist() if name.endswith("/WHEEL"))).decode()
    assert re.search(r"^Root-Is-Purelib: false$", tags, re.MULTILINE)
    assert re.search(r"^Tag: py3-none-manylinux_2_\d+_\w+$", tags, re.MULTILINE)


def test_the_library_in_the_wheel_is_stripped_and_whole():
    library = PACKAGE / "liborvane.so"
    sections = subprocess.run(["readelf", "-SW", library], check=True, capture_output=True, text=True).stdout
    assert ".symtab" not in sections and ".debug" not in sections
    subprocess.run([ROOT / "tests/structure/check_library.sh", library], check=True)
    assert (PACKAGE / "Orvane.dat").read_bytes() == (ROOT / "data/Orvane.dat").read_bytes()


def test_all_public_names_are_there_and_documented():
    for name in orvane.__all__:
        assert getattr(orvane, name).__doc__, name


def test_the_examples_of_the_readme_run(photo_path, tmp_path):
    """Each in turn, in a folder with the photo, but for those that want an operator."""
    text = (ROOT / "bindings/python/README.md").read_text("utf-8")
    examples = re.findall(r"```python\n(.*?)```", text, re.DOTALL)
    photos = tmp_path / "photos"
    photos.mkdir()
    for name in ("photo.jpg", "photos/ann.jpg", "photos/ben.jpg"):
        from PIL import Image

        Image.open(photo_path).convert("RGB").save(tmp_path / name)
    ran = 0
    for example in examples:
        if "orvane.live(" in example:
            continue
        (tmp_path / "example.py").write_text(example, "utf-8")
        done = subprocess.run([sys.executable, "example.py"], cwd=tmp_path, capture_output=True, text=True, timeout=300)
        assert done.returncode == 0, example + done.stdout + done.stderr
        ran += 1
    assert ran >= 4


def test_the_types_hold(tmp_path):
    pytest.importorskip("mypy")
    use = tmp_path / "use.py"
    use.write_text(
        "import numpy as np\n"
        "import orvane\n"
        "a: orvane.Picture = orvane.portrait(orvane.Picture(1, 1, b'abc'))\n"
        "b: int = orvane.portrait(orvane.Picture(1, 1, b'abc')).width\n"
        "c = orvane.portrait(np.zeros((9, 9), np.uint8), size=(480, 860), actions=['crop'])\n"
        "d: str = orvane.info().version\n"
    )
    mypy = [sys.executable, "-m", "mypy", "--cache-dir", str(tmp_path / "cache")]
    config = ["--config-file", str(ROOT / "bindings/python/pyproject.toml")]
    for files in ([str(ROOT / "bindings/python/src/orvane")], [str(use)]):
        done = subprocess.run([*mypy, *config, *files], cwd=tmp_path, capture_output=True, text=True, timeout=300)
        assert done.returncode == 0, done.stdout + done.stderr

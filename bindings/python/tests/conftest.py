"""The photograph, the command line tool that judges, and programs of other settings."""

from __future__ import annotations

import os
import subprocess
import sys
import textwrap
from pathlib import Path

import pytest
from PIL import Image

import orvane


def pytest_sessionstart(session):
    if not Path(orvane.__file__).is_relative_to(sys.prefix):
        pytest.exit(f"the tests are for an installed wheel, not for {orvane.__file__}: run test.sh", 1)


@pytest.fixture(scope="session")
def photo_path() -> Path:
    return Path(os.environ["ORVANE_TEST_PHOTO"])


@pytest.fixture(scope="session")
def photo(photo_path) -> Image.Image:
    image = Image.open(photo_path).convert("RGB")
    image.info.clear()
    return image


@pytest.fixture(scope="session")
def small_photo(photo) -> Image.Image:
    """The same face, found in a fraction of the time."""
    return photo.crop((120, 0, 376, 256))


@pytest.fixture
def tool_portrait(tmp_path):
    """What `orvane portrait` makes of a photo file, read back."""

    def run(photo, *options, extension="png"):
        output = tmp_path / f"tool.{extension}"
        command = [os.environ["ORVANE_TEST_TOOL"], "portrait", str(photo), "-o", str(output), "--force", *options]
        subprocess.run(command, check=True, capture_output=True, timeout=120)
        return output

    return run


@pytest.fixture
def tool_size(tool_portrait, tmp_path):
    """Of the portrait that `orvane portrait` makes of a photo; one side grows with the face's place."""

    def size(photo, asked="480x860"):
        file = tmp_path / "photo-of-the-tool.png"
        photo.save(file)
        with Image.open(tool_portrait(file, "--size", asked)) as portrait:
            return portrait.size

    return size


@pytest.fixture
def run_program(tmp_path):
    """Runs a program in a process of its own and gives what it printed; it must end well."""

    def run(source, environment=None, python=(sys.executable,)):
        program = tmp_path / "program.py"
        program.write_text(textwrap.dedent(source), "utf-8")
        done = subprocess.run(
            [*python, str(program)],
            env={**os.environ, **(environment or {})},
            cwd=tmp_path,
            capture_output=True,
            text=True,
            timeout=300,
        )
        assert done.returncode == 0, done.stdout + done.stderr
        return done.stdout.strip()

    return run


@pytest.fixture
def run_played(run_program, tmp_path):
    """The same with a library that plays: the results of its functions are given; also gives the calls it saw."""

    def run(source, **results):
        log = tmp_path / "calls"
        log.unlink(missing_ok=True)
        environment = {"ORVANE_LIBRARY": os.environ["ORVANE_TEST_PLAYED"], "ORVANE_PLAYED_LOG": str(log)}
        environment.update({name: str(value) for name, value in results.items()})
        printed = run_program(source, environment)
        return printed, log.read_text().splitlines() if log.exists() else []

    return run

"""Without Pillow, without NumPy, without both; without the library, without the classifier."""

from __future__ import annotations

import os
import shutil
import sys
import zipfile
from pathlib import Path

import pytest

import orvane

PACKAGE = Path(orvane.__file__).parent


@pytest.fixture
def unpacked(tmp_path):
    """The wheel alone: no other package is beside it."""
    folder = tmp_path / "alone"
    with zipfile.ZipFile(os.environ["ORVANE_TEST_WHEEL"]) as wheel:
        wheel.extractall(folder)
    return folder


@pytest.fixture
def raw_photo(small_photo, tmp_path):
    (tmp_path / "photo.rgb").write_bytes(small_photo.tobytes())
    return small_photo.size


def test_without_pillow_and_numpy_pictures_are_plain(
    run_program, unpacked, raw_photo, small_photo, tmp_path, tool_size
):
    printed = run_program(
        f"""
        import sys
        sys.path.insert(0, {str(unpacked)!r})
        import orvane
        for name in ("PIL", "numpy"):
            try:
                __import__(name)
            except ImportError:
                continue
            raise SystemExit(name + " is there")
        portrait = orvane.portrait(orvane.Picture({raw_photo[0]}, {raw_photo[1]}, open("photo.rgb", "rb").read()))
        open("portrait.rgb", "wb").write(portrait.pixels)
        try:
            orvane.portrait("photo.png")
        except ImportError as error:
            print(portrait, error)
        """,
        python=(sys.executable, "-I", "-S"),
    )
    width, height = tool_size(small_photo)
    assert printed.startswith(f"<orvane.Picture {width}x{height}> picture files are read by Pillow")
    assert (tmp_path / "portrait.rgb").read_bytes() == orvane.portrait(small_photo).tobytes()


def test_without_numpy_pillow_is_enough(run_program, photo_path, photo, tool_size):
    printed = run_program(
        f"""
        import sys
        sys.modules["numpy"] = None
        import orvane
        from PIL import Image
        print(orvane.portrait(Image.open({str(photo_path)!r})).size)
        """
    )
    assert printed == str(tool_size(photo))


def test_without_pillow_numpy_is_enough(run_program, raw_photo, small_photo, tool_size):
    printed = run_program(
        f"""
        import sys
        sys.modules["PIL"] = None
        import orvane, numpy
        photo = numpy.fromfile("photo.rgb", numpy.uint8).reshape({raw_photo[1]}, {raw_photo[0]}, 3)
        print(orvane.portrait(photo).shape)
        try:
            orvane.portrait(b"file")
        except ImportError:
            print("no files")
        """
    )
    width, height = tool_size(small_photo)
    assert printed == f"({height}, {width}, 3)\nno files"


def test_neither_is_loaded_for_nothing(run_program):
    program = "import sys, orvane; orvane.info(); print('PIL' in sys.modules, 'numpy' in sys.modules)"
    assert run_program(program) == "False False"


def test_without_pillow_a_live_portrait_is_plain(run_played):
    program = "import sys; sys.modules['PIL'] = None; import orvane; print(orvane.live(3))"
    printed, calls = run_played(program)
    assert printed == "<orvane.Picture 480x860>" and "DetectFaceLive 3" in calls


TELL = """
    import orvane
    try:
        orvane.portrait(orvane.Picture(1, 1, b"abc"))
    except orvane.OrvaneError as error:
        print(type(error).__name__, error.code, error)
    """


@pytest.fixture
def without_library(unpacked):
    (unpacked / "orvane" / "liborvane.so").unlink()
    return {"PYTHONPATH": str(unpacked)}


def test_without_the_library_all_places_are_told(run_program, without_library, unpacked):
    printed = run_program(TELL, without_library)
    assert printed.startswith("LibraryNotFoundError None")
    assert f"{unpacked}/orvane/liborvane.so (beside the package): no such file" in printed
    assert "liborvane.so.1 (in the system)" in printed and "liborvane.so (in the system)" in printed
    assert "ORVANE_LIBRARY" in printed


@pytest.mark.parametrize("what", ["file", "folder"])
def test_the_environment_names_the_library(run_program, without_library, tmp_path, what):
    place = tmp_path / "elsewhere"
    place.mkdir()
    shutil.copy(PACKAGE / "liborvane.so", place)
    named = place if what == "folder" else place / "liborvane.so"
    program = "import orvane; print(orvane.info().library, orvane.info().has_classifier)"
    printed = run_program(program, {**without_library, "ORVANE_LIBRARY": str(named)})
    assert printed == f"{place / 'liborvane.so'} False"


@pytest.mark.parametrize("content", [None, b"no library"])
def test_a_named_library_is_the_only_one_looked_for(run_program, tmp_path, content):
    named = tmp_path / "named.so"
    if content is not None:
        named.write_bytes(content)
    printed = run_program(TELL, {"ORVANE_LIBRARY": str(named)})
    assert printed.startswith("LibraryNotFoundError") and f"{named} (ORVANE_LIBRARY)" in printed
    assert "beside" not in printed


def test_another_library_is_told_by_its_functions(run_program):
    printed = run_program(TELL, {"ORVANE_LIBRARY": "/lib/x86_64-linux-gnu/libm.so.6"})
    assert "it has no orv_InitDLL" in printed


def test_the_system_has_the_library(run_program, without_library, tmp_path):
    place = tmp_path / "lib"
    place.mkdir()
    shutil.copy(PACKAGE / "liborvane.so", place / "liborvane.so.1")
    program = "import orvane; print(orvane.info().library)"
    assert run_program(program, {**without_library, "LD_LIBRARY_PATH": str(place)}) == f"{place / 'liborvane.so.1'}"


def test_a_library_that_comes_later_is_found(run_program, without_library, unpacked):
    printed = run_program(
        f"""
        import orvane, shutil
        try:
            orvane.info()
        except orvane.LibraryNotFoundError:
            shutil.copy({str(PACKAGE / "liborvane.so")!r}, {str(unpacked / "orvane")!r})
        print(orvane.info().library)
        """,
        without_library,
    )
    assert printed == str(unpacked / "orvane" / "liborvane.so")


@pytest.mark.parametrize("content", [None, b"", b"no classifier"])
def test_without_the_classifier_every_portrait_says_so(run_program, unpacked, content):
    classifier = unpacked / "orvane" / "Orvane.dat"
    classifier.unlink()
    if content is not None:
        classifier.write_bytes(content)
    printed = run_program(TELL.replace("(1, 1, b\"abc\")", "(200, 200, bytes(120000))"), {"PYTHONPATH": str(unpacked)})
    assert printed.startswith("NoClassifierError -70")
    assert "Orvane.dat" in printed


def test_a_classifier_that_comes_later_is_used(run_program, unpacked, raw_photo, small_photo, tool_size):
    classifier = unpacked / "orvane" / "Orvane.dat"
    classifier.unlink()
    printed = run_program(
        f"""
        import orvane, shutil
        photo = orvane.Picture({raw_photo[0]}, {raw_photo[1]}, open("photo.rgb", "rb").read())
        try:
            orvane.portrait(photo)
        except orvane.NoClassifierError:
            shutil.copy({str(PACKAGE / "Orvane.dat")!r}, {str(classifier)!r})
        print(orvane.portrait(photo))
        """,
        {"PYTHONPATH": str(unpacked)},
    )
    width, height = tool_size(small_photo)
    assert printed == f"<orvane.Picture {width}x{height}>"

"""The version, as it was installed; it is written down once, where the library's is."""

from __future__ import annotations

from importlib import metadata


def _installed_version() -> str:
    try:
        return metadata.version("orvane")
    except metadata.PackageNotFoundError:  # run from the sources
        return "0+unknown"


VERSION = _installed_version()

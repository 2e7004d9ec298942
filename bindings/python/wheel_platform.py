"""wheel_platform.py FILE...: the platform tag of a wheel with these ELF files, by what they really need.

The tag names the oldest glibc that has every symbol; the C++ runtime counts by the glibc that its release came out
with.
"""

import re
import subprocess
import sys

MACHINES = {3: "i686", 40: "armv7l", 62: "x86_64", 183: "aarch64"}

# The C++ runtime's symbol versions, newest first, and the glibc of distributions that have them.
CXX_RUNTIMES = [
    ((3, 4, 33), 39),
    ((3, 4, 31), 38),
    ((3, 4, 30), 35),
    ((3, 4, 29), 34),
    ((3, 4, 25), 31),
    ((3, 4, 23), 28),
    ((3, 4, 20), 24),
    ((3, 4, 0), 17),
]


def versions(text, library):
    found = re.findall(rf"\b{library}_(\d+(?:\.\d+)+)", text)
    return [tuple(int(part) for part in number.split(".")) for number in found]


def glibc_needed(text):
    """The minor version of glibc 2."""
    glibc = max((version[1] for version in versions(text, "GLIBC")), default=17)
    runtime = max(versions(text, "GLIBCXX"), default=(3, 4, 0))
    return max([17, glibc] + [minor for version, minor in CXX_RUNTIMES if runtime >= version])


def machine_of(file):
    with open(file, "rb") as elf:
        header = elf.read(20)
    if header[:4] != b"\x7fELF":
        sys.exit(f"{file} is no ELF file")
    number = int.from_bytes(header[18:20], "little")
    if number not in MACHINES:
        sys.exit(f"{file} is for a machine without a tag: {number}")
    return MACHINES[number]


def main(files):
    machines = {machine_of(file) for file in files}
    if len(machines) != 1:
        sys.exit("the files are for different machines")
    symbols = [subprocess.run(["objdump", "-T", file], check=True, capture_output=True, text=True) for file in files]
    print(f"manylinux_2_{max(glibc_needed(each.stdout) for each in symbols)}_{machines.pop()}")


if __name__ == "__main__":
    main(sys.argv[1:])

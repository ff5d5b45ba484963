"""Version and tag of the wheel. With the C library inside the package the wheel is for one platform; without, it is for
all, and the package looks for the system's library."""

import re
import subprocess
import sysconfig
from pathlib import Path

from setuptools import Distribution, setup

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:
    from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent

# What systems that take manylinux_2_34 wheels have at least: the GNU C library 2.34 and GCC 11's runtime.
MANYLINUX = "manylinux_2_34"
VERSIONS = {"GLIBC": (2, 34), "GLIBCXX": (3, 4, 29), "CXXABI": (1, 3, 13), "GCC": (7, 0, 0)}
LIBRARIES = {"libc.so.6", "libm.so.6", "libpthread.so.0", "libdl.so.2", "libstdc++.so.6", "libgcc_s.so.1"}


def version() -> str:
    """From the one place that has it."""
    text = (HERE.parent / "CMakeLists.txt").read_text(encoding="utf-8")
    found = re.search(r"project\(portraitcut VERSION ([0-9.]+)", text)
    if found is None:
        raise SystemExit("no version in CMakeLists.txt")
    return found[1]


def platform_tag(library: Path) -> str:
    """manylinux if the library needs no more than such systems have, else linux, which fits this system only."""
    text = subprocess.run(["readelf", "-dVW", library], check=True, capture_output=True, text=True).stdout
    needed = {name for name in re.findall(r"\(NEEDED\).*\[(.*)\]", text) if not name.startswith("ld-linux")}
    versions = re.findall(r"Name: ([A-Z]+)_([0-9.]+) ", text)
    fits = needed <= LIBRARIES and all(
        name in VERSIONS and tuple(map(int, number.split("."))) <= VERSIONS[name] for name, number in versions
    )
    linux = sysconfig.get_platform().replace("-", "_").replace(".", "_")
    return linux.replace("linux", MANYLINUX, 1) if versions and fits else linux


LIBRARY = next((HERE / "portraitcut").glob("libportraitcut.so.*"), None)


class Package(Distribution):
    def has_ext_modules(self) -> bool:
        """Compiled code, though none of Python's: it belongs into the folder for one platform."""
        return LIBRARY is not None


class Wheel(bdist_wheel):
    def get_tag(self) -> tuple:
        return "py3", "none", platform_tag(LIBRARY) if LIBRARY else "any"


setup(version=version(), distclass=Package, cmdclass={"bdist_wheel": Wheel})

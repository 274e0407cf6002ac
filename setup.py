"""Makes the wheel: CMake builds the libraries and the extension, which go into the package."""

from __future__ import annotations

import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py

ROOT = Path(__file__).resolve().parent
TREE = ROOT / "build" / "release"
SCRATCH = ROOT / "build" / "python"


def version() -> str:
    """The version that CMake has."""
    found = re.search(r"VERSION ([0-9.]+)\s", (ROOT / "CMakeLists.txt").read_text().split("project(")[1])
    assert found, "CMakeLists.txt has no version"
    return found.group(1)


class BuildPackage(build_py):
    """Adds what is compiled to the package."""

    def run(self) -> None:
        staged = SCRATCH / "staged"
        for leftover in (Path(self.build_lib), staged):
            shutil.rmtree(leftover, ignore_errors=True)
        super().run()
        self._cmake("--preset", "release", f"-DPYTHON3={sys.executable}")
        self._cmake("--build", str(TREE))
        for component in ("runtime", "python"):
            self._cmake("--install", str(TREE), "--strip", "--prefix", str(staged), "--component", component)
        package = Path(self.build_lib) / "zelcam"
        for extension in staged.glob("lib/python3/dist-packages/zelcam/*.so"):
            shutil.copy(extension, package)
        # A wheel has no links: each library goes under the name that programs load it by.
        shutil.copytree(staged / "lib" / "zelcam", package / "lib" / "zelcam", dirs_exist_ok=True)
        libraries = list(staged.glob("lib/*.so.*"))
        linked = {library.resolve() for library in libraries if library.is_symlink()}
        for library in libraries:
            if library not in linked:
                shutil.copy(library, package / "lib")

    @staticmethod
    def _cmake(*arguments: str) -> None:
        subprocess.run(["cmake", *arguments], cwd=ROOT, check=True)


class CompiledDistribution(Distribution):
    """One for a machine and a version of Python."""

    def has_ext_modules(self) -> bool:
        return True


SCRATCH.mkdir(parents=True, exist_ok=True)
setup(
    version=version(),
    packages=["zelcam"],
    package_dir={"": "python"},
    package_data={"zelcam": ["py.typed", "*.pyi"]},
    cmdclass={"build_py": BuildPackage},
    distclass=CompiledDistribution,
    options={"build": {"build_base": str(SCRATCH)}, "egg_info": {"egg_base": str(SCRATCH)}},
)

"""Checks the types with mypy: the package and the examples; and that the stub has what the extension has."""

import ast
import subprocess
import sys
import tempfile
from pathlib import Path

from documents import ROOT, examples


def run(*arguments: str) -> None:
    done = subprocess.run([sys.executable, "-m", *arguments], cwd=ROOT)
    if done.returncode != 0:
        sys.exit(done.returncode)


def public(names) -> set[str]:
    return {name for name in names if not name.startswith("_")}


def names_in(body: list[ast.stmt]) -> set[str]:
    """What the statements of a module or a class define."""
    targets = [target for one in body if isinstance(one, ast.Assign) for target in one.targets]
    targets += [one.target for one in body if isinstance(one, ast.AnnAssign)]
    defined = [one.name for one in body if isinstance(one, (ast.ClassDef, ast.FunctionDef))]
    return public([target.id for target in targets] + defined)


def check_stub() -> None:
    from zelcam import _zelcam

    stub = ast.parse((ROOT / "python/zelcam/_zelcam.pyi").read_text()).body
    pairs = [("the module", names_in(stub), public(vars(_zelcam)))]
    for one in stub:
        if isinstance(one, ast.ClassDef):
            has = public(vars(getattr(_zelcam, one.name))) - {"name", "value"}
            pairs.append((one.name, names_in(one.body) - {"name", "value"}, has))
    for place, said, has in pairs:
        if said != has:
            sys.exit(f"{place}: the stub has {sorted(said - has)}, the extension {sorted(has - said)}")


with tempfile.TemporaryDirectory() as folder:
    files = []
    for number, (_, code) in enumerate(examples("README.md", "docs/python.md")):
        file = Path(folder) / f"example{number}.py"
        opens = "" if "zelcam.open(" in code else "import zelcam\ncamera = zelcam.open()\n"
        file.write_text(opens + code)
        files.append(str(file))
    run("mypy", "--strict", "-p", "zelcam")
    run("mypy", "--strict", "--allow-untyped-calls", "--ignore-missing-imports", *files)
check_stub()

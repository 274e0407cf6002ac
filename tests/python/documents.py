"""The Python in the documents."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def examples(*names: str) -> list[tuple[str, str]]:
    """The blocks of Python in documents, each with where it is."""
    found = []
    for name in names:
        text = (ROOT / name).read_text()
        for block in re.finditer(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
            line = text.count("\n", 0, block.start()) + 2
            found.append((f"{name}:{line}", block.group(1)))
    return found

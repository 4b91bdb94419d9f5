"""doc_paths.py: every path that a page names in backquotes must be there.

Only what looks like a path of this project counts: it begins with the name of something in the checkout's root and has
a slash. A star stands for any name.
"""

import glob
import os
import re
import sys

PAGES = ["README.md", "CONTRIBUTING.md", "docs/architecture.md", "docs/macos.md", "tools/emulated_drive/README.md"]
NAME = re.compile(r"`([\w.*-]+/[\w./*-]*)`")


def missing(root, pages):
    """(page, path) of every path that is named and is not there."""
    for page in pages:
        with open(os.path.join(root, page), encoding="utf-8") as text:
            for path in NAME.findall(text.read()):
                first = path.split("/", 1)[0]
                made_by_a_build = first == "build"
                if made_by_a_build or not os.path.exists(os.path.join(root, first)):
                    continue
                if not glob.glob(os.path.join(root, path)):
                    yield page, path


def main():
    found = list(missing(".", PAGES))
    for page, path in found:
        print(f"{page}: names {path}, which is not there", file=sys.stderr)
    if found:
        sys.exit(f"doc_paths.py: {len(found)} paths are not there")


if __name__ == "__main__":
    main()

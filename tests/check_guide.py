"""Runs a document's steps as they are written: each block marked `sh`, one after the other in one shell. What a block
prints must be what stands in the block marked `text` right behind it.

    check_guide.py DOCUMENT FOLDER

PREFIX in the environment is where the library was installed. FOLDER is made anew. Status 1 at the first difference.
"""

import pathlib
import shutil
import subprocess
import sys


def blocks_of(document):
    """Pairs of language and text, in their order; None for prose in between."""
    blocks, language, lines = [], None, []
    for line in document.splitlines():
        if language is None and line.startswith("```"):
            language, lines = line[3:], []
        elif language is not None and line == "```":
            blocks.append((language, "".join(line + "\n" for line in lines)))
            language = None
        elif language is not None:
            lines.append(line)
        elif line:
            blocks.append(None)
    return blocks


def main():
    document, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    blocks = blocks_of(document.read_text())
    script, expected = "set -eu\n", []
    for block, behind in zip(blocks, blocks[1:] + [None]):
        if block is None or block[0] != "sh":
            continue
        number = len(expected)
        script += "{\n" + block[1] + f"}} > '{folder}/{number}.out' 2>&1\n"
        expected.append((block[1], behind[1] if behind is not None and behind[0] == "text" else None))
    outcome = subprocess.run(["sh", "-c", script], cwd=folder, capture_output=True, text=True, check=False)
    for number, (step, wanted) in enumerate(expected):
        output = folder / f"{number}.out"
        printed = output.read_text() if output.exists() else "(not run)"
        if wanted is not None and printed != wanted:
            sys.exit(f"{step}\nprinted\n{printed}\ninstead of\n{wanted}")
        if outcome.returncode != 0 and not (folder / f"{number + 1}.out").exists():
            sys.exit(f"{step}\nended with status {outcome.returncode}:\n{printed}{outcome.stderr}")
    if len(expected) < 5:
        sys.exit(f"only {len(expected)} steps in {document}")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""clang-tidy, with clang's thread safety analysis, over the product and the simulators.

usage: check-lint.py BUILD_FOLDER [SOURCE...]

The build folder is one without precompiled headers of the product. A source that passed is not looked at again as long
as it, all that it includes, and .clang-tidy stay as they are: build/lint remembers.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
build = pathlib.Path(sys.argv[1]).resolve()
passed = root / "build/lint"
compiler = "x86_64-w64-mingw32-g++-posix"


def library_folders():
    """clang does not look for the library of this variant of the compiler by itself."""
    said = subprocess.run([compiler, "-E", "-x", "c++", "-v", os.devnull], capture_output=True, text=True, check=True)
    return dict.fromkeys(re.findall(r"^ (.*/c\+\+\S*)$", said.stderr, re.MULTILINE))


arguments = ["--quiet", f"-p={build}"]
for argument in ["--target=x86_64-w64-mingw32", "-Wno-unknown-warning-option", "-Wno-ignored-optimization-argument",
                 "-Wthread-safety", *(f"-isystem{folder}" for folder in library_folders())]:
    arguments.append(f"--extra-arg={argument}")


def mark(command):
    """The file that says that this very source has passed."""
    words = shlex.split(command["command"])
    start = next(i for i, word in enumerate(words) if word.endswith(compiler))  # after a compiler cache
    output = words.index("-o")
    preprocess = words[start:output] + words[output + 2:] + ["-E", "-C"]
    text = subprocess.run(preprocess, cwd=command["directory"], capture_output=True, check=True).stdout
    text += (root / ".clang-tidy").read_bytes() + "\n".join(arguments).encode()
    return passed / hashlib.sha256(text).hexdigest()


def check(command):
    """What clang-tidy says of one source; empty if nothing."""
    remembered = mark(command)
    if remembered.exists():
        return ""
    run = subprocess.run(["clang-tidy-14", *arguments, command["file"]], capture_output=True, text=True)
    if run.returncode != 0:
        return run.stdout or run.stderr
    remembered.touch()
    return ""


def is_wanted(source):
    if sys.argv[2:]:
        return source in [str(pathlib.Path(name).resolve()) for name in sys.argv[2:]]
    return source.endswith(".cpp") and source.startswith((f"{root}/driver/", f"{root}/simulator/"))


passed.mkdir(parents=True, exist_ok=True)
commands = [row for row in json.loads((build / "compile_commands.json").read_text()) if is_wanted(row["file"])]
with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
    findings = [said for said in pool.map(check, commands) if said]
print("".join(findings) or f"{len(commands)} sources are clean.")
if findings:
    sys.exit(f"Repeat it for one source with: scripts/check-lint.py {build.relative_to(root)} SOURCE")

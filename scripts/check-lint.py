#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""clang-tidy, with clang's thread safety analysis, over the product and the simulators.

usage: check-lint.py BUILD_FOLDER [SOURCE...]

The build folder is one without precompiled headers of the product. Most of the time goes into the platform's headers,
so the sources of a room are looked at as one, where they can be compiled as one; sources that are named are looked at
alone. What passed is not looked at again as long as it, all that it includes, and .clang-tidy stay as they are:
build/lint remembers.
"""
import collections
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
named = [str(pathlib.Path(name).resolve()) for name in sys.argv[2:]]
passed = root / "build/lint"
compiler = "x86_64-w64-mingw32-g++-posix"


def library_folders():
    """clang does not look for the library of this variant of the compiler by itself."""
    said = subprocess.run([compiler, "-E", "-x", "c++", "-v", os.devnull], capture_output=True, text=True, check=True)
    return dict.fromkeys(re.findall(r"^ (.*/c\+\+\S*)$", said.stderr, re.MULTILINE))


# A room as one source includes its sources, and what is hidden in one of them may have the name of a local variable in
# another; the compiler has looked for shadows in each of them.
tidy = ["clang-tidy-14", "--quiet", "--checks=-bugprone-suspicious-include"]
for_clang = ["--target=x86_64-w64-mingw32", "-Wno-unknown-warning-option", "-Wno-ignored-optimization-argument",
             "-Wno-shadow", "-Wthread-safety", *(f"-isystem{folder}" for folder in library_folders())]


def flags_of(row):
    """What the compiler is told of a source, but for the source and what becomes of it."""
    words = shlex.split(row["command"])
    start = next(i for i, word in enumerate(words) if word.endswith(compiler))  # after a compiler cache
    return tuple(words[start + 1:words.index("-o")])


def rooms():
    """The sources that are wanted: a list for each room, and for those of its sources that are compiled in one way."""
    found = collections.defaultdict(list)
    for row in json.loads((build / "compile_commands.json").read_text()):
        source = row["file"]
        is_ours = source.endswith(".cpp") and source.startswith((f"{root}/driver/", f"{root}/simulator/"))
        if source in named or (is_ours and not named):
            found[pathlib.Path(source).parent, flags_of(row), source if named else ""].append(source)
    return [(sources, flags) for (_, flags, _), sources in found.items()]


def as_one(sources):
    """A source that is all of them."""
    if len(sources) == 1:
        return pathlib.Path(sources[0])
    name = "_".join(pathlib.Path(sources[0]).parent.relative_to(root).parts)
    text = "".join(f'#include "{source}"\n' for source in sources)
    file = passed / f"{name}_{hashlib.sha256(text.encode()).hexdigest()[:8]}.cpp"
    file.write_text(text)
    return file


def findings_in(source, flags):
    """What the compiler or clang-tidy says of one source; empty if nothing."""
    preprocessed = subprocess.run([compiler, *flags, "-E", "-C", source], cwd=build, capture_output=True)
    if preprocessed.returncode != 0:
        return preprocessed.stderr.decode(errors="replace")
    text = preprocessed.stdout + (root / ".clang-tidy").read_bytes() + "\n".join([*tidy, *for_clang]).encode()
    remembered = passed / hashlib.sha256(text).hexdigest()
    if remembered.exists():
        return ""
    run = subprocess.run([*tidy, source, "--", *flags, *for_clang], cwd=build, capture_output=True, text=True)
    if run.returncode == 0:
        remembered.touch()
        return ""
    return run.stdout or run.stderr or f"{source}: clang-tidy ended with {run.returncode}\n"


def check(sources, flags):
    """What is to be said of the sources of a room; empty if nothing."""
    said = findings_in(as_one(sources), flags)
    if said and len(sources) > 1:  # they may not go together
        return "".join(findings_in(pathlib.Path(one), flags) for one in sources)
    return said


passed.mkdir(parents=True, exist_ok=True)
work = rooms()
if not work:
    sys.exit("check-lint.py: the build folder knows none of these sources")
with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
    findings = [said for said in pool.map(lambda room: check(*room), work) if said]
print("".join(findings) or f"{sum(len(sources) for sources, _ in work)} sources are clean.")
if findings:
    sys.exit(f"Repeat it for one source with: scripts/check-lint.py {build.relative_to(root)} SOURCE")

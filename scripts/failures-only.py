#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Passes on what CTest prints, but of a program's tests only those that failed.

A test that neither passed nor failed is passed on too: there its program crashed or hung.
"""
import re
import signal
import sys

BEGIN = re.compile(r"\[ RUN      \] (\S+)")
BANNER = re.compile(r"\[[-=]+\]")
CTEST_LINE = re.compile(r"\s*(\d+/\d+ Test |Start +\d+:)")


def quiet_end(line, test):
    """A test may have printed something before on the same line."""
    return any(f"{mark} {test} (" in line for mark in ("[       OK ]", "[  SKIPPED ]"))


def failures_only(lines):
    test, kept = None, []  # the running test, and what it has printed so far
    for line in lines:
        begin = BEGIN.match(line)
        if begin or CTEST_LINE.match(line):
            yield from kept
            test, kept = begin and begin[1], []
        if test is None:
            if not BANNER.match(line):
                yield line
            continue
        kept.append(line)
        if quiet_end(line, test):
            test, kept = None, []
        elif f"[  FAILED  ] {test}" in line:
            yield from kept
            test, kept = None, []
    yield from kept


signal.signal(signal.SIGINT, signal.SIG_IGN)  # ends when CTest does, and shows what was running
sys.stdin.reconfigure(encoding="utf-8", errors="surrogateescape", newline="")
sys.stdout.reconfigure(encoding="utf-8", errors="surrogateescape", newline="")
for shown in failures_only(sys.stdin):
    sys.stdout.write(shown)
    sys.stdout.flush()

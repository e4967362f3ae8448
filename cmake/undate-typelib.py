#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Takes the time at which widl made a type library out of it, so that every build gives the same bytes.

usage: undate-typelib.py FILE.tlb

widl keeps the time twice, as custom data of the library: as text that ends in a line feed, and after the text's padding
as a number (0x13 is VT_UI4) of seconds.
"""
import pathlib
import re
import sys

file = pathlib.Path(sys.argv[1])
undated, count = re.subn(
    rb"( at )[A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}(\nW{0,3}\x13\x00).{4}",
    rb"\1Thu Jan  1 00:00:00 1970\g<2>\0\0\0\0",
    file.read_bytes(),
    flags=re.DOTALL,
)
if count != 1:
    sys.exit(f"{file}: has no time where widl puts it; look at {sys.argv[0]}")
file.write_bytes(undated)

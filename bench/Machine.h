// SPDX-License-Identifier: MIT
#pragma once

/// Prints one line that says when and on what this runs: date, processor and their number, Windows or Wine.
void PrintMachine();

// SPDX-License-Identifier: MIT
#pragma once

/// Prints when and on what this runs: date, Windows or Wine, processors and their number; and the sizes of the files of
/// the product that stand beside this program.
void PrintMachine();

// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, what members of `Printer` and `PrinterStatus` cost: beside the raw spooler calls
/// that each stands for, through the vtable, through IDispatch::Invoke, and in a script; what the product itself adds
/// to the raw calls, and what a wrapper would add that does nothing but copy a text into a BSTR.
///
/// The spooler is the simulator, in the same process. Throws std::runtime_error if a member makes other spooler calls
/// than the raw code that it is compared with.
void PrintMemberTable();

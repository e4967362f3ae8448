// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, what asking a device costs through the port monitor of the virtual label printer,
/// beside the bare loads of the monitor with the same requests: two status properties, and the round trip of a query.
///
/// Throws std::runtime_error if a member sends another number of requests than the bare code that it is compared with.
void PrintDeviceTable();

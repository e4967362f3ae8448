// SPDX-License-Identifier: MIT
#pragma once

/// Prints, as a table in Markdown, what a notice costs that brings one event of one job, while 1, 10, 100, 1,000 and
/// 10,000 jobs of the printer are being followed: through the product, of its oldest and of its newest job, and through
/// a bare loop over FindNextPrinterChangeNotification.
void PrintLiveJobsTable();

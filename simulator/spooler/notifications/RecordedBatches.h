// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/Recording.h"
#include "spooler/notifications/Batch.h"
#include "spooler/notifications/NotifyRequest.h"

/// The batches that a client hears who asks for this while the recorded things happen: with the entries and the bits of
/// its own request, and with what came at the recording place without having been asked for. A batch of which nothing
/// is left is not told, but what it tells becomes true with the next.
std::vector<Batch> BatchesFor(const NotifyRequest& request, const Recording& recording);

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/HistoryDeletionError.h>

namespace Sorvane {

HistoryDeletionError::HistoryDeletionError(int64_t failed, int64_t removed)
    : failed_(failed)
    , removed_(removed)
    , message_("Removed " + std::to_string(removed) + " transcript(s). " + std::to_string(failed)
          + " could not be deleted and remain selected.")
{
}

} // namespace Sorvane

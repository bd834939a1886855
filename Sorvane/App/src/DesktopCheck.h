// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

namespace Sorvane {

// Whether this desktop lets itself be dictated into; without models, and without a trace. Each returns the exit status.

// --check-focus: finds the text field that the user is in.
int checkFocus();

// --check-recording: listens twice for a moment, and forgets what was heard.
int checkRecording();

} // namespace Sorvane

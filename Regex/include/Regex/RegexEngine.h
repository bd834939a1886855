// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <memory>

namespace Regex {

class CompiledExpression;

// A compiled expression. Copies share it; it never changes, and any number of threads may search with it.
struct RegexEngine {
    std::shared_ptr<const CompiledExpression> regex;
};

} // namespace Regex

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Steps.h"

namespace Scenarios {

const Steps& allSteps()
{
    static const Steps all = [] {
        Steps steps = givenSteps();
        steps.merge(userSteps());
        steps.merge(expectations());
        return steps;
    }();
    return all;
}

} // namespace Scenarios

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Story.h"

#include <functional>
#include <map>
#include <string>

namespace Scenarios {

class Stage;

// What each line of a story does, by its words.
using Steps = std::map<std::string, std::function<void(Stage&, const Step&)>>;

const Steps& allSteps();

// Its parts: what is so beforehand and what happens to the world, what the user does, and what must have come of it.
Steps givenSteps();
Steps userSteps();
Steps expectations();

} // namespace Scenarios

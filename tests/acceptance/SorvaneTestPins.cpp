// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestComposition.h"

#include <RunCommand.h>

#include <string>
#include <vector>

// The program sorvane with other pins: a test has nothing that those of the product fit.
int main(int count, char** values)
{
    const std::vector<std::string> arguments(values, values + count);
    return Sorvane::runCommand(arguments, Acceptance::testComposition());
}

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Composition.h"
#include "RunCommand.h"

#include <string>
#include <vector>

int main(int count, char** values)
{
    const std::vector<std::string> arguments(values, values + count);
    return Sorvane::runCommand(arguments, { .version = SORVANE_VERSION });
}

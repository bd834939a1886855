// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <vector>

// One way in which a hub can fail its users, and what it is told to play for that.
struct Fault {
    std::string name;
    std::vector<std::string> played;
};

// For a model of "weights/a.bin" (100,000 bytes), "weights/b.bin" (300,000) and "meta.json" (1,000, listed without a
// digest), which come in this order.
std::vector<Fault> allFaults();

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// These tests press keys and write to the clipboard: never on the desktop of whoever runs them.
class PrivateSession final : public testing::Environment {
public:
    void SetUp() override
    {
        if (!std::getenv("DESKTOP_SESSION_FOLDER"))
            GTEST_FAIL() << "run this by ctest, or by tests/desktop/desktop-session";
    }
};

} // namespace

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    testing::AddGlobalTestEnvironment(new PrivateSession); // which owns it
    return RUN_ALL_TESTS();
}

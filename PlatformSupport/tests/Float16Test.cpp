// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Float16.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using PlatformSupport::Float16;
using PlatformSupport::toFloat;
using PlatformSupport::toFloat16;

TEST(Float16, EveryValueSurvivesTheRoundTrip)
{
    for (uint32_t bits = 0; bits < 0x10000; ++bits) {
        const Float16 half { static_cast<uint16_t>(bits) };
        if (std::isnan(toFloat(half)))
            EXPECT_TRUE(std::isnan(toFloat(toFloat16(toFloat(half)))));
        else
            EXPECT_EQ(toFloat16(toFloat(half)), half) << bits;
    }
}

TEST(Float16, RoundsToNearestWithTiesToEven)
{
    EXPECT_EQ(toFloat(toFloat16(1.0f + 0x1p-11f)), 1.0f);
    EXPECT_EQ(toFloat(toFloat16(1.0f + 0x3p-11f)), 1.0f + 0x1p-9f);
    EXPECT_EQ(toFloat(toFloat16(1.0f + 0x1p-11f + 0x1p-20f)), 1.0f + 0x1p-10f);
    EXPECT_EQ(toFloat(toFloat16(0x1p-25f)), 0.0f);
    EXPECT_EQ(toFloat(toFloat16(0x3p-25f)), 0x1p-23f);
}

TEST(Float16, KeepsSubnormalsInfinitiesAndSigns)
{
    EXPECT_EQ(toFloat(Float16 { 0x0001 }), 0x1p-24f);
    EXPECT_EQ(toFloat16(65519.9f).bits, 0x7BFF);
    EXPECT_EQ(toFloat16(65520.0f).bits, 0x7C00);
    EXPECT_EQ(toFloat16(-std::numeric_limits<float>::infinity()).bits, 0xFC00);
    EXPECT_EQ(toFloat16(-0.0f).bits, 0x8000);
}

TEST(Float16, RowsAgreeWithSingleValues)
{
    std::vector<float> values(1003);
    for (int i = 0; i < 1003; ++i)
        values[static_cast<size_t>(i)] = std::ldexp(static_cast<float>(i * 7919 % 2003) - 1001.5f, i % 41 - 30);
    std::vector<Float16> halves(values.size());
    std::vector<float> back(values.size());
    toFloat16(values, halves);
    toFloat(halves, back);
    for (size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(halves[i], toFloat16(values[i])) << values[i];
        EXPECT_EQ(back[i], toFloat(halves[i]));
    }
}

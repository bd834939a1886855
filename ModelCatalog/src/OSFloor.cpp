// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/OSFloor.h>

namespace ModelCatalog {

namespace {

bool processorRunsTheKernels()
{
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("f16c")
        && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
#elif defined(__aarch64__)
    return true;
#else
    return false;
#endif
}

} // namespace

OSFloor OSFloor::packageFloor()
{
    return { .iOS = 16, .macOS = 13, .tvOS = 16, .visionOS = 1, .watchOS = 9 };
}

OSFloor OSFloor::multifunction()
{
    return { .iOS = 18, .macOS = 15, .tvOS = 18, .visionOS = 2, .watchOS = 11 };
}

OSFloor OSFloor::mlx()
{
    return { .iOS = 17, .macOS = 14, .tvOS = 17, .visionOS = 1, .watchOS = 11 };
}

bool OSFloor::isSatisfiedHere() const
{
    return processorRunsTheKernels();
}

std::optional<std::string> OSFloor::unmetReason(std::string_view name) const
{
    if (isSatisfiedHere())
        return {};
    return std::string(name) + " needs iOS " + std::to_string(iOS) + " / macOS " + std::to_string(macOS) + " / tvOS "
        + std::to_string(tvOS) + " / visionOS " + std::to_string(visionOS) + " / watchOS " + std::to_string(watchOS)
        + "; this system is older";
}

} // namespace ModelCatalog

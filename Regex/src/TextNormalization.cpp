// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "UTF16Text.h"

#include <PlatformSupport/Precondition.h>
#include <Regex/TextNormalization.h>

#include <unicode/normalizer2.h>

namespace Regex {

std::string nfkc(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto* normalizer = icu::Normalizer2::getNFKCInstance(status);
    PlatformSupport::precondition(U_SUCCESS(status), "ICU has its normalisation data");
    return utf8(normalizer->normalize(utf16(text), status));
}

} // namespace Regex

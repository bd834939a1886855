// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <locale.h>

#include <clocale>

namespace Sorvane {

// Lets the calling thread read text as UTF-8 for a while, whatever the program's locale is, and leaves that alone.
class ScopedUTF8Locale {
public:
    ScopedUTF8Locale()
        : utf8_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
        , former_(uselocale(utf8_))
    {
    }
    ~ScopedUTF8Locale()
    {
        uselocale(former_);
        if (utf8_ != nullptr)
            freelocale(utf8_);
    }
    ScopedUTF8Locale(const ScopedUTF8Locale&) = delete;
    ScopedUTF8Locale& operator=(const ScopedUTF8Locale&) = delete;

private:
    locale_t utf8_; // null where the system has no such locale; then the thread's stays
    locale_t former_;
};

} // namespace Sorvane

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DesktopLinux {

using SharedBytes = std::shared_ptr<const std::vector<std::byte>>;

// A form in which the clipboard's content can be had, and what comes back under it.
struct SelectionTarget {
    std::string name;
    std::string type; // of the property that holds it; often the name
    std::uint8_t format = 8; // bits of its elements
    SharedBytes bytes;
};

// How a pasteboard names the form. Plain text in UTF-8 has the pasteboard's own name; the others have the target's,
// and after it what does not follow from that: "image/png", "TEXT as UTF8_STRING/8", "LENGTH as INTEGER/32". No two
// forms have the same name.
std::string pasteboardType(const SelectionTarget& target);

// The other way round, without bytes. Nothing if no program could have offered that.
std::optional<SelectionTarget> targetOfPasteboardType(std::string_view type);

// Whether to leave a target out of what is kept: it says how the others are had, or asks the owner to do something, or
// means something inside the owner only.
bool isNoContent(std::string_view target);

// Every form in which programs ask for plain text.
std::vector<SelectionTarget> targetsOfText(std::string_view text);

} // namespace DesktopLinux

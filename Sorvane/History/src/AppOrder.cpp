// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AppOrder.h"

#include "StoredFields.h"

#include <PlatformSupport/UTF8.h>

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace Sorvane {

namespace {

struct FreePlist {
    void operator()(void* node) const { plist_free(node); }
};
using Plist = std::unique_ptr<void, FreePlist>;

[[noreturn]] void refuse()
{
    throw StoredFormatError("not a property list of texts");
}

uint64_t bigEndian(std::string_view bytes)
{
    uint64_t number = 0;
    for (const char byte : bytes)
        number = number << 8U | static_cast<uint8_t>(byte);
    return number;
}

// A binary property list ends with a table of where its objects stand, and 32 bytes that say where the table does.
struct BinaryTrailer {
    explicit BinaryTrailer(std::string_view list)
    {
        constexpr size_t size = 32;
        if (list.size() < size)
            refuse();
        const auto trailer = list.substr(list.size() - size);
        offsetSize = bigEndian(trailer.substr(6, 1));
        objectCount = bigEndian(trailer.substr(8, 8));
        topObject = bigEndian(trailer.substr(16, 8));
        tableStart = bigEndian(trailer.substr(24, 8));
        if (offsetSize == 0 || offsetSize > 8 || objectCount > list.size() || tableStart > list.size()
            || objectCount * offsetSize > list.size() - tableStart)
            refuse();
    }

    uint64_t offsetSize;
    uint64_t objectCount;
    uint64_t topObject;
    uint64_t tableStart;
};

bool isContainer(char marker)
{
    const auto type = static_cast<uint8_t>(marker) >> 4U;
    return type >= 0xA; // array, ordered set, set, dictionary, and kinds that do not exist
}

// Objects of a binary list can be used many times over: a few hundred bytes of lists of lists stand for more texts
// than any memory holds. A list of texts has no list inside.
void refuseNesting(std::string_view list)
{
    const BinaryTrailer trailer(list);
    for (uint64_t object = 0; object < trailer.objectCount; ++object) {
        const auto entry = list.substr(trailer.tableStart + object * trailer.offsetSize, trailer.offsetSize);
        const uint64_t offset = bigEndian(entry);
        if (offset >= list.size() || (object != trailer.topObject && isContainer(list[offset])))
            refuse();
    }
}

std::string text(plist_t node)
{
    if (!node || plist_get_node_type(node) != PLIST_STRING)
        refuse();
    uint64_t size = 0;
    const char* const bytes = plist_get_string_ptr(node, &size);
    std::string text(bytes, size);
    if (!PlatformSupport::isUTF8(text))
        refuse();
    return text;
}

} // namespace

std::vector<std::string> decodedAppOrder(std::string_view propertyList)
{
    if (propertyList.size() > maximumAppOrderSize)
        refuse();
    if (propertyList.starts_with("bplist"))
        refuseNesting(propertyList);
    plist_t parsed = nullptr;
    plist_from_memory(propertyList.data(), static_cast<uint32_t>(propertyList.size()), &parsed);
    const Plist list(parsed);
    if (!list || plist_get_node_type(list.get()) != PLIST_ARRAY)
        refuse();
    std::vector<std::string> texts;
    for (uint32_t item = 0; item < plist_array_get_size(list.get()); ++item)
        texts.push_back(text(plist_array_get_item(list.get(), item)));
    return texts;
}

} // namespace Sorvane

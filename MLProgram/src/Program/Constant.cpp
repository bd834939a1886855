// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/Constant.h"

#include "Program/ElementCodec.h"

#include <PlatformSupport/Precondition.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace MLProgram {

using PlatformSupport::precondition;

namespace {

void checkSize(ScalarType type, const Shape& shape, size_t byteCount)
{
    const auto count = checkedElementCount(shape);
    precondition(count && checkedByteCount(type, *count) == static_cast<int64_t>(byteCount),
        "a constant has as many bytes as its type and shape say");
}

} // namespace

Constant::Constant(
    ScalarType type, const Shape& shape, std::span<const std::byte> bytes, std::shared_ptr<const void> owner)
    : type_(type)
    , shape_(shape)
    , bytes_(bytes)
    , owner_(std::move(owner))
    , isMapped_(owner_ != nullptr)
{
    checkSize(type, shape, bytes.size());
}

Constant::Constant(ScalarType type, const Shape& shape, std::vector<std::byte> bytes)
    : type_(type)
    , shape_(shape)
{
    checkSize(type, shape, bytes.size());
    const auto owned = std::make_shared<const std::vector<std::byte>>(std::move(bytes));
    bytes_ = *owned;
    owner_ = owned;
}

Constant::Constant(std::string text)
    : type_(ScalarType::string)
{
    const auto owned = std::make_shared<const std::string>(std::move(text));
    bytes_ = std::as_bytes(std::span<const char>(*owned));
    owner_ = owned;
}

void Constant::releasePages() const noexcept
{
    if (!isMapped_)
        return;
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<uintptr_t>(bytes_.data());
    const uintptr_t first = (begin + page - 1) / page * page; // neighbours may still be needed
    const uintptr_t last = (begin + bytes_.size()) / page * page;
    if (first < last)
        madvise(const_cast<std::byte*>(bytes_.data()) + (first - begin), last - first, MADV_DONTNEED);
}

std::string_view Constant::text() const noexcept
{
    if (!isText())
        return {};
    return { reinterpret_cast<const char*>(bytes_.data()), bytes_.size() };
}

Tensor Constant::widened() const
{
    Tensor tensor(tensorType());
    widenInto(tensor.view());
    return tensor;
}

void Constant::widenInto(const TensorView& to) const
{
    precondition(!isText() && to.type == tensorType(), "a constant is widened into a tensor of its own type");
    switch (to.type.element) {
    case ElementType::real:
        return readReals(type_, bytes_, 0, to.reals());
    case ElementType::integer:
        return readIntegers(type_, bytes_, 0, to.integers());
    case ElementType::boolean:
        std::transform(bytes_.begin(), bytes_.end(), to.booleans().begin(),
            [](std::byte value) { return static_cast<uint8_t>(value != std::byte { 0 }); });
        return;
    }
}

} // namespace MLProgram

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/DecoderTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string affine(const std::string& type, const std::string& parameters)
{
    return type + " w = constexpr_affine_dequantize()[" + parameters + "];";
}

TEST(ScaleDecoders, DequantizeWithOneScale)
{
    EXPECT_THAT(decodedReals(affine("tensor<fp32, [4]>",
                    "axis = int32(0), quantized_data = tensor<int8, [4]>([-128, -1, 0, 127]), scale = fp32(0x1p-1), "
                    "zero_point = int8(-1)")),
        ElementsAre(-63.5F, 0.0F, 0.5F, 64.0F));
}

// 255 - 0 and 0 - 255 do not fit the stored type.
TEST(ScaleDecoders, SubtractInAWiderType)
{
    EXPECT_THAT(decodedReals(affine("tensor<fp16, [2]>",
                    "axis = int32(0), quantized_data = tensor<uint8, [2]>([0, 255]), scale = fp16(0x1p+0), "
                    "zero_point = uint8(255)")),
        ElementsAre(-255, 0));
    EXPECT_THAT(
        decodedReals(affine("tensor<fp32, [1]>",
            "axis = int32(0), quantized_data = tensor<int8, [1]>([-128]), scale = fp32(1), zero_point = int8(127)")),
        ElementsAre(-255));
}

TEST(ScaleDecoders, DequantizeWithVectorsAlongTheAxis)
{
    const std::string data = "quantized_data = tensor<int8, [2, 3]>([[1, 2, 3], [4, 5, 6]]), ";
    EXPECT_THAT(
        decodedReals(affine("tensor<fp32, [2, 3]>",
            data + "axis = int32(0), scale = tensor<fp32, [2]>([1, 10]), zero_point = tensor<int8, [2]>([0, 1])")),
        ElementsAre(1, 2, 3, 30, 40, 50));
    EXPECT_THAT(decodedReals(affine("tensor<fp32, [2, 3]>",
                    data + "axis = int32(-1), scale = tensor<fp32, [3]>([1, 10, 100]), zero_point = int8(1)")),
        ElementsAre(0, 10, 200, 3, 40, 500));
    EXPECT_THAT(decodedReals(affine("tensor<fp32, [2, 3]>",
                    data + "axis = int32(1), scale = fp32(2), zero_point = tensor<fp32, [3]>([0x1p-1, 1, 0])")),
        ElementsAre(1, 2, 6, 7, 8, 12));
}

TEST(ScaleDecoders, RefuseScalesThatDoNotFit)
{
    const std::string data = "quantized_data = tensor<int8, [2]>([1, 2]), ";
    EXPECT_THAT(
        faultOfDecoding(affine("tensor<fp32, [2]>", data + "axis = int32(0), scale = tensor<fp32, [3]>([1, 2, 3])")),
        HasSubstr("model.mil, line 3: constexpr_affine_dequantize: scale and zero_point do not fit"));
    EXPECT_THAT(
        faultOfDecoding(affine("tensor<fp32, [2]>",
            data + "axis = int32(0), scale = tensor<fp32, [2]>([1, 2]), zero_point = tensor<int8, [3]>([1, 2, 3])")),
        HasSubstr("do not fit"));
    EXPECT_THAT(
        faultOfDecoding(affine("tensor<fp32, [2]>", data + "axis = int32(1), scale = tensor<fp32, [2]>([1, 2])")),
        HasSubstr("axis is out of range"));
    EXPECT_THAT(faultOfDecoding(affine("tensor<fp32, [2]>", data + "axis = int32(0)")), HasSubstr("scale is missing"));
    EXPECT_THAT(faultOfDecoding(affine("tensor<fp32, [2]>", data + "axis = int32(0), scale = int32(1)")),
        HasSubstr("scale is of a type"));
}

TEST(ScaleDecoders, RefuseOutputsThatAreDeclaredOtherwise)
{
    const std::string parameters = "axis = int32(0), quantized_data = tensor<int8, [2]>([1, 2]), scale = fp32(1)";
    EXPECT_THAT(faultOfDecoding(affine("tensor<fp16, [2]>", parameters)),
        HasSubstr("the output is declared as tensor<fp16, [2]> and is tensor<fp32, [2]>"));
    EXPECT_THAT(faultOfDecoding(affine("tensor<fp32, [3]>", parameters)), HasSubstr("declared as tensor<fp32, [3]>"));
    EXPECT_THAT(faultOfDecoding(
                    "tensor<fp32, [2]> a, tensor<fp32, [2]> b = constexpr_affine_dequantize()[" + parameters + "];"),
        HasSubstr("too many outputs"));
    EXPECT_THAT(faultOfDecoding("constexpr_affine_dequantize()[" + parameters + "];"), HasSubstr("too few outputs"));
}

TEST(ScaleDecoders, ScaleBlocks)
{
    EXPECT_THAT(decodedReals("tensor<fp16, [2, 4]> w = constexpr_blockwise_shift_scale("
                             "data = tensor<int4, [2, 4]>([[1, 2, 3, 4], [-5, -6, -7, -8]]), "
                             "scale = tensor<fp16, [1, 2]>([[1, 0x1p-1]]), offset = tensor<int4, [1, 2]>([[1, 2]]));"),
        ElementsAre(0, 1, 0.5F, 1, -6, -7, -4.5F, -5));
    EXPECT_THAT(decodedReals("tensor<fp32, [4]> w = constexpr_blockwise_shift_scale("
                             "data = tensor<uint4, [4]>([0, 5, 10, 15]), scale = tensor<fp32, [4]>([1, 2, 3, 4]));"),
        ElementsAre(0, 10, 30, 60));
    EXPECT_THAT(decodedReals("fp32 w = constexpr_blockwise_shift_scale(data = fp8e4m3fn(0x1.8p+0), scale = fp32(2));"),
        ElementsAre(3));
}

TEST(ScaleDecoders, RefuseBlocksThatDoNotDivide)
{
    for (const char* const scale : { "tensor<fp32, [3]>([1, 2, 3])", "fp32(1)", "tensor<fp32, [0]>([])" })
        EXPECT_THAT(faultOfDecoding("tensor<fp32, [4]> w = constexpr_blockwise_shift_scale("
                                    "data = tensor<uint4, [4]>([0, 5, 10, 15]), scale = "
                        + std::string(scale) + ");"),
            HasSubstr("scale does not divide data"));
    EXPECT_THAT(
        faultOfDecoding("tensor<fp32, [2]> w = constexpr_blockwise_shift_scale(data = tensor<int8, [2]>([0, 5]), "
                        "scale = tensor<fp32, [2]>([1, 2]), offset = tensor<int8, [1]>([1]));"),
        HasSubstr("offset has another shape"));
}

TEST(ScaleDecoders, ScaleTheSetElementsOfASparseWeight)
{
    const std::vector<Constant> outputs = decode(
        "tensor<uint1, [2, 3]> m, tensor<fp32, [3]> v = constexpr_sparse_blockwise_shift_scale("
        "data_mask = tensor<uint1, [2, 3]>([[1, 0, 1], [0, 0, 1]]), nonzero_data = tensor<int8, [3]>([1, 2, 3]), "
        "scale = tensor<fp32, [2, 1]>([[10], [100]]), offset = tensor<int8, [2, 1]>([[0], [1]]));");
    EXPECT_THAT(reals(outputs[0]), ElementsAre(1, 0, 1, 0, 0, 1));
    EXPECT_THAT(reals(outputs[1]), ElementsAre(10, 20, 200));
}

TEST(ScaleDecoders, RefuseAMaskOfAnotherCount)
{
    for (const char* const data : { "tensor<int8, [1]>([1])", "tensor<int8, [3]>([1, 2, 3])" })
        EXPECT_THAT(
            faultOfDecoding("tensor<uint1, [2]> m, tensor<fp32, [?]> v = constexpr_sparse_blockwise_shift_scale("
                            "data_mask = tensor<uint1, [2]>([1, 1]), scale = tensor<fp32, [1]>([1]), nonzero_data = "
                + std::string(data) + ");"),
            HasSubstr("than the mask says"));
}

TEST(ScaleDecoders, CastHalves)
{
    const std::string source
        = "constexpr_cast()[source_val = tensor<fp16, [2]>([0x1p-24, -1]), output_dtype = string(\"fp32\")];";
    EXPECT_THAT(decodedReals("tensor<fp32, [2]> w = " + source), ElementsAre(0x1p-24F, -1));
    EXPECT_THAT(faultOfDecoding("fp32 w = constexpr_cast()[source_val = fp16(1), output_dtype = string(\"int32\")];"),
        HasSubstr("only floating-point types are cast"));
}

} // namespace
} // namespace MLProgram

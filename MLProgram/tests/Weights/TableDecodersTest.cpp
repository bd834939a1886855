// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/DecoderTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(TableDecoders, LookUpPackedIndicesOfTheOlderGeneration)
{
    EXPECT_THAT(decodedReals("tensor<fp16, [5]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [2]>([108, 3]), "
                             "lut = tensor<fp16, [4]>([10, 11, 12, 13]), shape = tensor<uint32, [1]>([5])];"),
        ElementsAre(10, 13, 12, 11, 13));
    EXPECT_THAT(decodedReals("tensor<int8, [1, 3]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [1]>([5]), "
                             "lut = tensor<int8, [2]>([-1, 1]), shape = tensor<uint32, [2]>([1, 3])];"),
        ElementsAre(1, -1, 1));
}

TEST(TableDecoders, LookUpIndicesOfSixBits)
{
    std::string lut;
    for (int i = 0; i < 64; ++i)
        lut += (i > 0 ? ", " : "") + std::to_string(i);
    EXPECT_THAT(
        decodedReals("tensor<fp32, [3]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [3]>([127, 8, 2]), "
                     "lut = tensor<fp32, [64]>(["
            + lut + "]), shape = tensor<uint32, [1]>([3])];"),
        ElementsAre(63, 33, 32));
}

TEST(TableDecoders, RefuseTablesAndIndicesOfOtherSizes)
{
    EXPECT_THAT(
        faultOfDecoding("tensor<fp32, [8]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [3]>([1, 2, 3]), "
                        "lut = tensor<fp32, [3]>([0, 1, 2]), shape = tensor<uint32, [1]>([8])];"),
        HasSubstr("a number of entries"));
    EXPECT_THAT(faultOfDecoding("tensor<fp32, [17]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [2]>([1, 2]), "
                                "lut = tensor<fp32, [2]>([0, 1]), shape = tensor<uint32, [1]>([17])];"),
        HasSubstr("indices do not fit the shape"));
    EXPECT_THAT(
        faultOfDecoding("tensor<fp32, [8]> w = constexpr_lut_to_dense()[indices = tensor<uint8, [1]>([1]), "
                        "lut = tensor<fp32, [2]>([0, 1]), shape = tensor<uint32, [2]>([4294967295, 4294967295])];"),
        HasSubstr("indices do not fit the shape"));
}

TEST(TableDecoders, LookUpByGroups)
{
    EXPECT_THAT(decodedReals("tensor<fp32, [2, 2]> w = constexpr_lut_to_dense("
                             "indices = tensor<uint1, [2, 2]>([[0, 1], [1, 0]]), "
                             "lut = tensor<fp32, [2, 1, 2, 1]>([[[[1], [2]]], [[[3], [4]]]]));"),
        ElementsAre(1, 2, 4, 3));
}

TEST(TableDecoders, LookUpVectorsAlongAnAxis)
{
    const std::string lut = "lut = tensor<fp32, [1, 1, 2, 2]>([[[[1, 2], [3, 4]]]]), ";
    const std::string indices = "indices = tensor<uint1, [2, 2]>([[0, 1], [1, 1]]), ";
    EXPECT_THAT(
        decodedReals("tensor<fp32, [4, 2]> w = constexpr_lut_to_dense(" + indices + lut + "vector_axis = int32(0));"),
        ElementsAre(1, 3, 2, 4, 3, 3, 4, 4));
    EXPECT_THAT(
        decodedReals("tensor<fp32, [2, 4]> w = constexpr_lut_to_dense(" + indices + lut + "vector_axis = int32(-1));"),
        ElementsAre(1, 2, 3, 4, 3, 4, 3, 4));
    EXPECT_THAT(faultOfDecoding(
                    "tensor<fp32, [2, 4]> w = constexpr_lut_to_dense(" + indices + lut + "vector_axis = int32(2));"),
        HasSubstr("vector_axis is out of range"));
}

TEST(TableDecoders, RefuseTablesThatDoNotFitTheIndices)
{
    for (const char* const lut :
        { "tensor<fp32, [1, 4, 1]>([[[1], [2], [3], [4]]])", "tensor<fp32, [2, 1]>([[1], [2]])",
            "tensor<fp32, [3, 2, 1]>([[[1], [2]], [[1], [2]], [[1], [2]]])", "tensor<fp32, [1, 2, 0]>([[[], []]])" })
        EXPECT_THAT(
            faultOfDecoding(
                "tensor<fp32, [4]> w = constexpr_lut_to_dense(indices = tensor<uint1, [4]>([0, 1, 0, 1]), lut = "
                + std::string(lut) + ");"),
            HasSubstr("lut does not fit the indices"))
            << lut;
    EXPECT_THAT(faultOfDecoding("tensor<fp32, [1]> w = constexpr_lut_to_dense(indices = tensor<int32, [1]>([0]), "
                                "lut = tensor<fp32, [1, 2, 1]>([[[1], [2]]]));"),
        HasSubstr("a type that is not supported"));
}

TEST(TableDecoders, LookUpSparseWeights)
{
    const std::vector<Constant> outputs = decode(
        "tensor<uint1, [2, 2]> m, tensor<fp32, [3]> v = constexpr_lut_to_sparse("
        "indices_mask = tensor<uint1, [2, 2]>([[1, 0], [1, 1]]), indices_nonzero_data = tensor<uint1, [3]>([1, 0, 1]), "
        "lut = tensor<fp32, [2, 1, 2, 1]>([[[[1], [2]]], [[[3], [4]]]]));");
    EXPECT_THAT(reals(outputs[0]), ElementsAre(1, 0, 1, 1));
    EXPECT_THAT(reals(outputs[1]), ElementsAre(2, 3, 4));
}

TEST(TableDecoders, LookUpVectorsOfSparseWeights)
{
    const std::vector<Constant> outputs = decode(
        "tensor<uint1, [4, 2]> m, tensor<fp32, [6]> v = constexpr_lut_to_sparse("
        "indices_mask = tensor<uint1, [2, 2]>([[1, 0], [1, 1]]), indices_nonzero_data = tensor<uint1, [3]>([1, 0, 1]), "
        "lut = tensor<fp32, [1, 1, 2, 2]>([[[[1, 2], [3, 4]]]]), vector_axis = int32(0));");
    EXPECT_THAT(reals(outputs[0]), ElementsAre(1, 0, 1, 0, 1, 1, 1, 1));
    EXPECT_THAT(reals(outputs[1]), ElementsAre(3, 4, 1, 3, 2, 4));
}

TEST(TableDecoders, RefuseSparseIndicesOfAnotherCount)
{
    EXPECT_THAT(faultOfDecoding(
                    "tensor<uint1, [2]> m, tensor<fp32, [?]> v = constexpr_lut_to_sparse("
                    "indices_mask = tensor<uint1, [2]>([1, 1]), indices_nonzero_data = tensor<uint1, [3]>([1, 0, 1]), "
                    "lut = tensor<fp32, [1, 2, 1]>([[[1], [2]]]));"),
        HasSubstr("the mask does not fit"));
}

TEST(SparseDecoders, SpreadValuesByBothGenerationsOfMasks)
{
    EXPECT_THAT(
        decodedReals("tensor<fp16, [2, 5]> w = constexpr_sparse_to_dense()[mask = tensor<uint8, [2]>([130, 2]), "
                     "nonzero_data = tensor<fp16, [3]>([1, 2, 3]), shape = tensor<uint32, [2]>([2, 5])];"),
        ElementsAre(0, 1, 0, 0, 0, 0, 0, 2, 0, 3));
    EXPECT_THAT(decodedReals("tensor<fp32, [3]> w = constexpr_sparse_to_dense(mask = tensor<uint1, [3]>([1, 0, 1]), "
                             "nonzero_data = tensor<fp32, [2]>([1, 2]));"),
        ElementsAre(1, 0, 2));
    EXPECT_THAT(decodedReals("tensor<uint6, [3]> w = constexpr_sparse_to_dense(mask = tensor<uint1, [3]>([0, 1, 1]), "
                             "nonzero_data = tensor<uint6, [2]>([33, 63]));"),
        ElementsAre(0, 33, 63));
}

TEST(SparseDecoders, RefuseMasksThatDoNotFit)
{
    EXPECT_THAT(faultOfDecoding("tensor<fp32, [3]> w = constexpr_sparse_to_dense(mask = tensor<uint1, [3]>([1, 1, 1]), "
                                "nonzero_data = tensor<fp32, [2]>([1, 2]));"),
        HasSubstr("nonzero_data is shorter"));
    EXPECT_THAT(faultOfDecoding("tensor<fp32, [3]> w = constexpr_sparse_to_dense(mask = tensor<uint1, [3]>([1, 0, 0]), "
                                "nonzero_data = tensor<fp32, [2]>([1, 2]));"),
        HasSubstr("nonzero_data is longer"));
    EXPECT_THAT(faultOfDecoding("tensor<fp32, [9]> w = constexpr_sparse_to_dense()[mask = tensor<uint8, [1]>([1]), "
                                "nonzero_data = tensor<fp32, [1]>([1]), shape = tensor<uint32, [1]>([9])];"),
        HasSubstr("mask does not fit the shape"));
}

TEST(WeightDecoder, TakesTheOutputsOfOtherDecoders)
{
    EXPECT_THAT(decodedReals("tensor<int8, [4]> i = constexpr_lut_to_dense(indices = tensor<uint1, [4]>([0, 1, 1, 0]), "
                             "lut = tensor<int8, [1, 2, 1]>([[[3], [-4]]])); "
                             "tensor<fp16, [4]> w = constexpr_blockwise_shift_scale(data = i, "
                             "scale = tensor<fp16, [2]>([1, 2]));"),
        ElementsAre(3, -4, -8, 6));
    EXPECT_THAT(decodedReals("tensor<uint1, [3]> m, tensor<fp32, [2]> v = constexpr_sparse_blockwise_shift_scale("
                             "data_mask = tensor<uint1, [3]>([1, 0, 1]), nonzero_data = tensor<int8, [2]>([1, 2]), "
                             "scale = tensor<fp32, [1]>([5])); "
                             "tensor<fp32, [3]> w = constexpr_sparse_to_dense(mask = m, nonzero_data = v);"),
        ElementsAre(5, 0, 10));
}

TEST(WeightDecoder, KnowsItsOperations)
{
    EXPECT_TRUE(isWeightDecoder("constexpr_cast"));
    EXPECT_FALSE(isWeightDecoder("constexpr_unknown"));
    EXPECT_FALSE(isWeightDecoder("cast"));
}

} // namespace
} // namespace MLProgram

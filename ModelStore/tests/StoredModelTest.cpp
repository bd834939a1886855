// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestFiles.h"

#include <ModelStore/ModelStoreError.h>
#include <ModelStore/StoredModel.h>

#include <gtest/gtest.h>

using namespace ModelStore;

namespace {

std::string refusal(const StoredModel& model, const std::vector<std::string>& files)
{
    try {
        model.requireFiles(files);
    } catch (const ModelStoreError& error) {
        EXPECT_EQ(error.which(), ModelStoreError::Case::localFileMissing);
        return error.description();
    }
    return "none";
}

} // namespace

TEST(StoredModel, JoinsPathsToItsRoot)
{
    EXPECT_EQ(StoredModel::platformLocal("/m").path("a/b"), "/m/a/b");
    EXPECT_EQ(StoredModel::platformLocal("/m/").path("a"), "/m/a");
    EXPECT_EQ(StoredModel::platformLocal("/m").path(""), "/m");
    EXPECT_EQ(StoredModel::platformLocal("").path("a"), "a");
    EXPECT_EQ(StoredModel::platformLocal("").path(""), "");
}

TEST(StoredModel, ReadsTextThatIsUTF8)
{
    const StoredModel model = StoredModel::platformLocal(freshDirectory());
    const auto readBack = [&](std::string_view content) {
        model.fileSystem->write(model.path("t"), bytesOf(content));
        return model.readString("t");
    };
    EXPECT_EQ(readBack("caf\u00e9 \U0001F600 \u20AC"), "caf\u00e9 \U0001F600 \u20AC");
    EXPECT_EQ(readBack(""), "");
    for (const char* bad :
        { "\xFF", "a\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82" }) {
        try {
            readBack(bad);
            FAIL() << bad;
        } catch (const ModelStoreError& error) {
            EXPECT_EQ(error.description(), "t is not valid UTF-8");
        }
    }
}

TEST(StoredModel, RequiresFiles)
{
    const StoredModel model = StoredModel::platformLocal(freshDirectory());
    model.fileSystem->makeDirectory(model.path("weights"));
    model.fileSystem->write(model.path("meta.json"), {});
    EXPECT_TRUE(model.exists("meta.json"));
    EXPECT_EQ(refusal(model, {}), "none");
    EXPECT_EQ(refusal(model, { "weights/", "meta.json" }), "none");
    EXPECT_EQ(refusal(model, { "meta.json", "more/", "other" }),
        "required local model file is missing: " + model.rootPath + "/more");
}

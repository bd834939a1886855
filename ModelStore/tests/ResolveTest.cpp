// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>

#include <gmock/gmock.h>

using namespace ModelStore;
using testing::ElementsAre;

namespace {

RemoteEntry file(const std::string& path, int64_t size = 1)
{
    return { .path = path, .size = size, .sha256 = {} };
}

std::vector<std::string> resolved(const std::vector<std::string>& files, const std::vector<RemoteEntry>& tree)
{
    std::vector<std::string> paths;
    for (const RemoteEntry& entry : ::ModelStore::ModelStore::resolve(files, tree, "owner/name"))
        paths.push_back(entry.path);
    return paths;
}

std::string failure(const std::vector<std::string>& files, const std::vector<RemoteEntry>& tree)
{
    try {
        resolved(files, tree);
    } catch (const ModelStoreError& error) {
        return error.description();
    }
    return "none";
}

} // namespace

TEST(Resolve, KeepsTheOrderOfTheRequestAndOfTheTree)
{
    const std::vector<RemoteEntry> tree { file("a/z"), file("a/b"), file("c"), file("ab") };
    EXPECT_THAT(resolved({ "c", "a/" }, tree), ElementsAre("c", "a/z", "a/b"));
    EXPECT_THAT(resolved({ "a/", "a/b" }, tree), ElementsAre("a/z", "a/b"));
    EXPECT_THAT(resolved({ "a/b", "a/" }, tree), ElementsAre("a/b", "a/z"));
    EXPECT_TRUE(resolved({}, tree).empty());
}

TEST(Resolve, TakesAFileForTheDirectoryOfItsName)
{
    EXPECT_THAT(resolved({ "weights/" }, { file("weights"), file("weights.bin") }), ElementsAre("weights"));
}

TEST(Resolve, TakesTheFirstOfTwoEntriesOfOnePath)
{
    const auto entries = ::ModelStore::ModelStore::resolve({ "a", "a" }, { file("a", 1), file("a", 2) }, "owner/name");
    EXPECT_THAT(entries, ElementsAre(file("a", 1)));
}

TEST(Resolve, NamesWhatIsNotThere)
{
    EXPECT_EQ(failure({ "a", "b/" }, { file("a"), file("bc") }), "owner/name/b/ is not in the repo at that revision");
    EXPECT_EQ(failure({ "a" }, {}), "owner/name/a is not in the repo at that revision");
}

TEST(Resolve, RefusesEntriesThatLeadElsewhereOrHaveNoSize)
{
    for (const char* unsafe : { "a/../../b", "a//b", "a/./b", "a/b\tc", "a/b\n", "a/b\r", "a//" })
        EXPECT_EQ(failure({ "a/" }, { file(unsafe) }), std::string("unsafe tree entry: ") + unsafe);
    EXPECT_EQ(failure({ "a" }, { file("a", -1) }), "unsafe tree entry: a");
    EXPECT_EQ(failure({ "c" }, { file("a/../b"), file("c") }), "none"); // nobody asked for it
}

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Plays every fault against a real hub and holds what comes of it against docs/Downloads.md. With SORVANE_WRITE_DOCS in
// the environment, the page's table is written instead.
#include "Faults.h"

#include "Download.h"

#include <PlatformSupport/WholeFile.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>

using TestSupport::TestHub;

namespace {

const std::string page = DOCUMENTS "/Downloads.md";
const std::string tableHead = "| what goes wrong | what the user reads | on disk | next time | fetched then, bytes |\n"
                              "|---|---|---|---|---|\n";

// What comes of a fault, as a row of the page's table.
std::string rowOf(const TestHub& hub, const Fault& fault)
{
    Download application(hub, Download::Transport::application);
    Download library(hub, Download::Transport::library);
    hub.clear();
    for (const std::string& played : fault.played)
        hub.play(played);
    std::string message = application.attempt();
    if (const std::string other = library.attempt(); other != message)
        message += "<br>library: " + other;
    const std::string onDisk = application.onDisk();
    EXPECT_EQ(library.onDisk() == onDisk, message.find("library: complete") == std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(application.folder() / "a"));

    hub.clear();
    const std::string next = application.attempt();
    EXPECT_EQ(next, "complete");
    EXPECT_TRUE(application.store().isDownloaded(application.spec()));
    return "| " + fault.name + " | " + message + " | " + onDisk + " | " + next + " | "
        + std::to_string(application.fetched()) + " |\n";
}

std::string table()
{
    const TestHub hub;
    Download::publish(hub);
    std::string rows;
    for (const Fault& fault : allFaults()) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, fault.name);
        rows += rowOf(hub, fault);
    }
    return rows;
}

} // namespace

TEST(Faults, EndAsThePageSays)
{
    constexpr size_t largestPage = 1'000'000;
    const std::string text = PlatformSupport::readFile(page, largestPage);
    const size_t begin = text.find(tableHead) + tableHead.size();
    const size_t end = std::min(text.find("\n\n", begin) + 1, text.size());
    const std::string measured = table();
    if (std::getenv("SORVANE_WRITE_DOCS") != nullptr)
        PlatformSupport::replaceFile(
            page, text.substr(0, begin) + measured + text.substr(end), PlatformSupport::Durability::content);
    else
        EXPECT_EQ(text.substr(begin, end - begin), measured);
}

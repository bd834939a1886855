// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Faults.h"

namespace {

std::string ofListing(const std::string& fault)
{
    return R"({"on": "tree", )" + fault + "}";
}

std::string listed(const std::string& entry)
{
    return ofListing(R"("fault": "add", "entries": [)" + entry + "]");
}

std::string edited(const std::string& change)
{
    return ofListing(R"("fault": "edit", "path": "weights/b.bin", "change": )" + change);
}

std::string ofB(const std::string& fault)
{
    return R"({"on": "content/weights/b.bin", )" + fault + "}";
}

std::string ofRedirect(const std::string& to)
{
    return R"({"on": "resolve/weights/b.bin", "fault": "redirect", "to": ")" + to + "\"}";
}

} // namespace

std::vector<Fault> allFaults()
{
    return {
        { "The listing is not there (404)", { ofListing(R"("status": 404)") } },
        { "The hub is broken (500) at the listing", { ofListing(R"("status": 500)") } },
        { "The listing is a web page", { ofListing(R"("fault": "body", "with": "<html>")") } },
        { "The listing is cut off", { ofListing(R"("fault": "truncate", "after": 100)") } },
        { "The listing never comes", { ofListing(R"("fault": "stall", "after": 0)") } },
        { "The listing lacks one size", { ofListing(R"("fault": "drop", "path": "weights", "field": "size")") } },
        { "The listing is very long (24 MB)",
            { ofListing(R"("fault": "body", "with": "        ", "repeat": 3000000)") } },
        { "The listing is nested without end", { ofListing(R"("fault": "body", "with": "[", "repeat": 100000)") } },
        { "A listed path leads out of the model",
            { listed(R"({"type": "file", "path": "weights/../../a", "size": 1})") } },
        { "A listed path is absolute", { listed(R"({"type": "file", "path": "/etc/a", "size": 1})") } },
        { "A listed path has a tab", { listed(R"({"type": "file", "path": "weights/a\tb", "size": 1})") } },
        { "A path is listed twice", { listed(R"({"type": "file", "path": "weights/a.bin", "size": 1})") } },
        { "A listed size is negative", { edited(R"({"size": -1})") } },
        { "A listed size is beyond the disk", { edited(R"({"size": 1000000000000000000})") } },
        { "A requested file is not listed",
            { ofListing(R"("fault": "edit", "path": "meta.json", "change": {"path": "other.json"})") } },
        { "A listed digest is missing", { edited(R"({"lfs": null})") } },
        { "A listed digest is in upper case", { ofListing(R"("fault": "upper-case-digests")") } },
        { "A listed digest is another", { edited(R"({"lfs": {"oid": "00"}})") } },
        { "The file is forbidden (403)", { ofB(R"("status": 403)") } },
        { "The file is not there (404)", { ofB(R"("status": 404)") } },
        { "The content host is broken (500)", { ofB(R"("status": 500)") } },
        { "The answer has no content (204)", { ofB(R"("status": 204)") } },
        { "The answer calls itself a part (206)", { ofB(R"("as": 206)") } },
        { "The file is shorter than listed", { ofB(R"("fault": "shorter", "bytes": 1)") } },
        { "The file is longer than listed", { ofB(R"("fault": "extra", "bytes": 1)") } },
        { "The file is cut off", { ofB(R"("fault": "truncate", "after": 200000)") } },
        { "The connection is reset in the middle", { ofB(R"("fault": "reset", "after": 200000)") } },
        { "The file stalls in the middle", { ofB(R"("fault": "stall", "after": 200000)") } },
        { "The file trickles", { ofB(R"("fault": "trickle", "bytes": 50000, "pause": 0.05)") } },
        { "The file's length is not announced", { ofB(R"("fault": "unannounced")") } },
        { "One bit of the file is wrong", { ofB(R"("fault": "flip", "at": 150000)") } },
        { "The file was replaced after it was listed",
            { ofB(R"("fault": "replace", "with": "new", "repeat": 100000)") } },
        { "One bit of a file without a digest is wrong", { R"({"on": "content/meta.json", "fault": "flip"})" } },
        { "Redirects without end", { ofRedirect("itself") } },
        { "A redirect to a server that is not there", { ofRedirect("http://127.0.0.1:1/b.bin") } },
        { "A redirect to another protocol", { ofRedirect("file:///etc/hostname") } },
    };
}

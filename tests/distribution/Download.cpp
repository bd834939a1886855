// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Download.h"

#include <ModelStore/CancelableSpeechTransport.h>
#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/FoundationTransport.h>
#include <PlatformSupport/BlockingValue.h>

#include <algorithm>
#include <set>

using namespace std::chrono_literals;
using TestSupport::TestHub;

namespace {

std::shared_ptr<ModelStore::ModelTransport> makeTransport(const TestHub& hub, Download::Transport kind)
{
    PlatformSupport::URLSessionOptions options;
    options.inactivityLimit = 2s; // a minute for users
    options.certificates = hub.certificate();
    const auto session = std::make_shared<PlatformSupport::URLSession>(options);
    if (kind == Download::Transport::application)
        return std::make_shared<ModelStore::CancelableSpeechTransport>(session);
    return std::make_shared<ModelStore::FoundationTransport>(session);
}

} // namespace

Download::Download(const TestHub& hub, Transport transport)
    : hub_(hub)
    , store_(makeTransport(hub, transport), std::make_shared<ModelStore::FoundationFileSystem>(folder_.path().string()),
          hub.origin())
    , spec_ { .repo = "owner/name",
        .revision = "v1",
        .files = { "weights/a.bin", "weights/", "meta.json" },
        .cacheDirectory = {} }
{
}

void Download::publish(const TestHub& hub)
{
    hub.publish("owner/name", "v1", "weights/a.bin", std::string(100'000, 'a'));
    hub.publish("owner/name", "v1", "weights/b.bin", std::string(300'000, 'b'));
    hub.publish("owner/name", "v1", "meta.json", std::string(1'000, ' '));
}

std::string Download::attempt()
{
    const auto earlier = hub_.log().size();
    std::string end = "complete";
    try {
        (void)PlatformSupport::blockingValue([&] { return store_.download(spec_, {}); });
    } catch (const std::exception& error) {
        end = withoutPlaces(error.what());
    }
    const auto log = hub_.log();
    fetched_ = 0;
    for (size_t i = earlier; i < log.size(); ++i)
        if (log[i].place != "tree")
            fetched_ += log[i].bytes;
    return end;
}

// The same on every computer.
std::string Download::withoutPlaces(std::string text) const
{
    const auto replaceAll = [&text](const std::string& what, const std::string& with) {
        for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
            text.replace(at, what.size(), with);
    };
    replaceAll(hub_.origin(), "https://hub");
    replaceAll(folder_.path().string(), "<caches>");
    const size_t space = text.find(", and ");
    const size_t end = text.find(" are free");
    if (space != std::string::npos && end != std::string::npos)
        text.replace(space, end - space, ", and …");
    return text;
}

std::string Download::onDisk() const
{
    namespace fs = std::filesystem;
    const fs::path location = store_.location(spec_);
    std::set<std::string> files;
    if (fs::exists(location))
        for (const auto& entry : fs::recursive_directory_iterator(location))
            if (entry.is_regular_file())
                files.insert(fs::relative(entry.path(), location));
    std::string text;
    for (const std::string& file : files)
        text += (text.empty() ? "" : ", ") + file;
    return text.empty() ? "nothing" : text;
}

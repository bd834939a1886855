// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/DownloadProgressObserver.h>
#include <PlatformSupport/URLSession.h>
#include <PlatformSupport/WholeFile.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <TestHub.h>

#include <cstdlib>
#include <latch>
#include <optional>

namespace PlatformSupport {

using namespace std::chrono_literals;
using testing::ElementsAre;
using TestSupport::TestHub;

namespace {

constexpr size_t maximumSize = 100'000'000;
constexpr int64_t step = DownloadProgressObserver::step;
const std::string file = "a/weights.bin";

class TransferTest : public testing::Test {
protected:
    TransferTest() { hub_.publish("owner/name", "v1", file, content_); }

    std::string url() const { return hub_.origin() + "/owner/name/resolve/v1/" + file; }
    void playOnContent(const std::string& fault) const { hub_.play(R"({"on": "content/*", )" + fault + "}"); }

    HTTPResponse send(const URLRequest& request)
    {
        return blockingValue([&] { return session_.data(request); });
    }
    HTTPResponse get(const std::string& address)
    {
        return send({ .url = address, .method = "GET", .body = {}, .contentType = {} });
    }
    nlohmann::json echo(const std::string& method, std::optional<std::string> body, std::optional<std::string> type)
    {
        return nlohmann::json::parse(send({ .url = hub_.origin() + "/echo",
                                              .method = method,
                                              .body = std::move(body),
                                              .contentType = std::move(type) })
                                         .body);
    }

    // The response, and the file's bytes as its body.
    HTTPResponse download(std::optional<int64_t> largestSize = {}, const URLSession::DidWrite& didWrite = {})
    {
        return blockingValue([&]() -> Awaitable<HTTPResponse> { return downloadHere(largestSize, didWrite); });
    }
    Awaitable<HTTPResponse> downloadHere(std::optional<int64_t> largestSize, URLSession::DidWrite didWrite)
    {
        const DownloadRequest request { .url = url(), .folder = folder_.path(), .largestSize = largestSize };
        Downloaded result = co_await session_.download(request, std::move(didWrite));
        result.response.body += readFile(result.file.path(), maximumSize);
        co_return result.response;
    }

    template <typename Operation> std::optional<URLError::Code> failure(Operation operation)
    {
        try {
            operation();
        } catch (const URLError& error) {
            return error.code();
        }
        return std::nullopt;
    }
    std::optional<URLError::Code> downloadFailure()
    {
        const auto code = failure([&] { download(); });
        EXPECT_TRUE(folder_.names().empty());
        return code;
    }

    TestHub hub_;
    TestSupport::TemporaryFolder folder_;
    std::string content_ = std::string(3 * step, 'w');
    URLSession session_ { { .inactivityLimit = 500ms, .largestBody = 10'000'000, .certificates = {} } };
};

} // namespace

TEST_F(TransferTest, BringsABodyOverARedirect)
{
    const HTTPResponse response = get(url());
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, content_);
    EXPECT_EQ(response.header("content-length"), std::to_string(content_.size()));
    EXPECT_EQ(response.header("location"), std::nullopt); // the headers are those of the last answer
}

TEST_F(TransferTest, SendsNothingThatWasNotAskedFor)
{
    const auto request = echo("GET", {}, {});
    std::vector<std::string> names;
    for (const auto& header : request["headers"])
        names.push_back(header[0]);
    EXPECT_THAT(names, ElementsAre("Host", "Accept"));
}

TEST_F(TransferTest, SendsABodyAndItsType)
{
    const auto post = echo("POST", "a body", "text/plain");
    EXPECT_EQ(post["method"], "POST");
    EXPECT_EQ(post["body"], "a body");
    EXPECT_THAT(post["headers"], testing::Contains(nlohmann::json({ "Content-Type", "text/plain" })));
    EXPECT_EQ(echo("PUT", "", {})["method"], "PUT");
    EXPECT_THAT(
        echo("GET", {}, "text/plain")["headers"], testing::Contains(nlohmann::json({ "Content-Type", "text/plain" })));
}

TEST_F(TransferTest, TurnsAPostIntoAGetWhereARedirectAsksForIt)
{
    hub_.play(R"({"on": "refs", "fault": "redirect", "to": "/echo"})");
    const HTTPResponse response = send({ .url = hub_.origin() + "/api/models/owner/name/refs",
        .method = "POST",
        .body = "a body",
        .contentType = "text/plain" });
    const auto echoed = nlohmann::json::parse(response.body);
    EXPECT_EQ(echoed["method"], "GET");
    EXPECT_EQ(echoed["body"], "");
}

TEST_F(TransferTest, TakesEveryStatusForAnAnswer)
{
    for (const int status : { 204, 206, 403, 404, 500 }) {
        hub_.clear();
        playOnContent(R"("status": )" + std::to_string(status) + R"(, "body": "why")");
        const std::string body = status == 204 ? "" : "why";
        EXPECT_EQ(get(url()).status, status);
        EXPECT_EQ(get(url()).body, body);
        EXPECT_EQ(download().status, status);
        EXPECT_EQ(download().body, body);
    }
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(TransferTest, DownloadsIntoAFileAndTellsHowFarItIs)
{
    std::vector<int64_t> counts;
    std::set<int64_t> expected;
    const HTTPResponse response = download({}, [&](int64_t bytes, int64_t ofBytes) {
        counts.push_back(bytes);
        expected.insert(ofBytes);
    });
    EXPECT_EQ(response.body, content_);
    EXPECT_TRUE(std::ranges::is_sorted(counts));
    EXPECT_EQ(counts.back(), content_.size());
    EXPECT_THAT(expected, ElementsAre(content_.size()));
    EXPECT_TRUE(folder_.names().empty()); // the file went with its object
}

TEST_F(TransferTest, DownloadsWithoutKnowingTheLength)
{
    playOnContent(R"("fault": "unannounced")");
    int64_t expected = 0;
    EXPECT_EQ(download({}, [&](int64_t, int64_t ofBytes) { expected = ofBytes; }).body, content_);
    EXPECT_EQ(expected, -1);
}

TEST_F(TransferTest, PassesOnWhatTheObserverThrows)
{
    EXPECT_THROW(download({}, [](int64_t, int64_t) { throw std::out_of_range("enough"); }), std::out_of_range);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(TransferTest, CutsOffAServerThatSendsTooMuch)
{
    const auto excess = [&](int64_t largestSize) -> int64_t {
        try {
            download(largestSize);
        } catch (const DataLengthError& error) {
            return error.bytes();
        }
        return 0;
    };
    const auto size = static_cast<int64_t>(content_.size());
    EXPECT_EQ(excess(size), 0);
    EXPECT_EQ(excess(size - 1), size);
    playOnContent(R"("fault": "endless")");
    EXPECT_GT(excess(size), size);
    EXPECT_TRUE(folder_.names().empty());
    EXPECT_EQ(failure([&] { get(url()); }), URLError::Code::dataLengthExceedsMaximum);
}

TEST_F(TransferTest, NoticesALostConnection)
{
    playOnContent(R"("fault": "truncate", "after": 1000)");
    EXPECT_EQ(downloadFailure(), URLError::Code::networkConnectionLost);
    EXPECT_EQ(failure([&] { get(url()); }), URLError::Code::networkConnectionLost);
    playOnContent(R"("fault": "reset", "after": 1000)");
    EXPECT_EQ(downloadFailure(), URLError::Code::networkConnectionLost);
}

TEST_F(TransferTest, WaitsNoLongerForAServerThatIsSilent)
{
    playOnContent(R"("fault": "stall", "after": 0)");
    EXPECT_EQ(downloadFailure(), URLError::Code::timedOut);
    playOnContent(R"("fault": "stall", "after": 1000)");
    EXPECT_EQ(downloadFailure(), URLError::Code::timedOut);
    EXPECT_EQ(failure([&] { get(url()); }), URLError::Code::timedOut);
}

TEST_F(TransferTest, WaitsForAServerThatIsSlow)
{
    hub_.publish("owner/name", "v1", file, "12345678");
    playOnContent(R"("fault": "trickle", "bytes": 1, "pause": 0.08)"); // longer in all than it may be silent
    EXPECT_EQ(download().body, "12345678");
}

TEST_F(TransferTest, FollowsTwentyRedirectsAndNoMore)
{
    hub_.play(R"({"on": "resolve/*", "fault": "redirect", "to": "itself", "times": 19})");
    EXPECT_EQ(get(url()).body, content_); // and the twentieth leads to the content
    hub_.play(R"({"on": "resolve/*", "fault": "redirect", "to": "itself", "times": 20})");
    EXPECT_EQ(downloadFailure(), URLError::Code::tooManyRedirects);
}

TEST_F(TransferTest, FollowsNoRedirectToAnotherProtocol)
{
    hub_.play(R"({"on": "resolve/*", "fault": "redirect", "to": "file:///etc/passwd"})");
    EXPECT_EQ(downloadFailure(), URLError::Code::unsupportedURL);
}

TEST_F(TransferTest, KeepsItsConnections)
{
    for (int i = 0; i < 5; ++i)
        get(hub_.origin() + "/echo");
    std::set<std::string> connections;
    for (const auto& request : hub_.log())
        connections.insert(request.client);
    EXPECT_EQ(connections.size(), 1);
}

TEST_F(TransferTest, GoesThroughTheProxyOfTheEnvironmentButNotToThisComputer)
{
    ::setenv("http_proxy", hub_.origin().c_str(), 1);
    const HTTPResponse response = get("http://models.invalid/echo");
    ::setenv("http_proxy", "http://127.0.0.1:1", 1);
    EXPECT_EQ(get(url()).body, content_);
    ::unsetenv("http_proxy");
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(hub_.log().front().path, "http://models.invalid/echo");
}

TEST_F(TransferTest, EndsWithItsTask)
{
    playOnContent(R"("fault": "stall", "after": 1000)");
    URLSession patient;
    BlockingPool pool(1);
    std::latch hasBegun(1);
    const DownloadRequest request { .url = url(), .folder = folder_.path(), .largestSize = {} };
    const Task<> task = startTask(pool.executor(), [&]() -> Awaitable<void> {
        co_await patient.download(request, [&](int64_t, int64_t) { hasBegun.count_down(); });
    });
    hasBegun.wait();
    EXPECT_EQ(folder_.names().size(), 1);
    task.cancel();
    EXPECT_THROW(blockingValue([&] { return task.value(); }), CancellationError);
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(TransferTest, DoesNotBeginInACancelledTask)
{
    BlockingPool pool(1);
    const Task<HTTPResponse> task = startTask(pool.executor(), [&]() -> Awaitable<HTTPResponse> {
        TaskContext::current()->cancel();
        co_return co_await downloadHere({}, {});
    });
    EXPECT_THROW(blockingValue([&] { return task.value(); }), CancellationError);
    EXPECT_TRUE(hub_.log().empty());
}

TEST_F(TransferTest, EndsWithItsSession)
{
    playOnContent(R"("fault": "stall", "after": 1000)");
    BlockingPool pool(1);
    std::latch hasBegun(1);
    auto session = std::make_unique<URLSession>();
    const DownloadRequest request { .url = url(), .folder = folder_.path(), .largestSize = {} };
    const Task<> task = startTask(pool.executor(), [&]() -> Awaitable<void> {
        co_await session->download(request, [&](int64_t, int64_t) { hasBegun.count_down(); });
    });
    hasBegun.wait();
    session.reset();
    EXPECT_EQ(failure([&] { blockingValue([&] { return task.value(); }); }), URLError::Code::cancelled);
}

TEST(SecureTransfer, TrustsWhomItIsToldToAndGoesNowhereElse)
{
    const TestHub hub(TestHub::Scheme::https);
    hub.publish("owner/name", "v1", file, "some weights");
    const URLRequest request {
        .url = hub.origin() + "/owner/name/resolve/v1/" + file, .method = "GET", .body = {}, .contentType = {}
    };
    const auto failure = [&](URLSession& session) -> std::optional<URLError::Code> {
        try {
            blockingValue([&] { return session.data(request); });
        } catch (const URLError& error) {
            return error.code();
        }
        return std::nullopt;
    };
    URLSession stranger;
    EXPECT_EQ(failure(stranger), URLError::Code::serverCertificateUntrusted);
    URLSession friendly({ .certificates = *hub.certificate() });
    EXPECT_EQ(failure(friendly), std::nullopt);
    hub.play(R"({"on": "resolve/*", "fault": "redirect", "to": "http"})");
    EXPECT_EQ(failure(friendly), URLError::Code::insecureRedirect);
}

} // namespace PlatformSupport

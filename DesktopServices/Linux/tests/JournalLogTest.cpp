// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopLinux/JournalLog.h>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <TemporaryFolder.h>

#include <array>
#include <cstring>

namespace DesktopLinux {

namespace {

using DesktopServices::LogCategory;

constexpr LogCategory insertion { "com.nerith.sorvane", "Insertion" };

// A journal that takes what it is sent, one entry at a time.
class Journal {
public:
    Journal()
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        const auto path = (folder / "socket").string();
        std::memcpy(address.sun_path, path.data(), path.size());
        EXPECT_EQ(::bind(socket_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    std::string receive() const
    {
        std::array<char, 8192> bytes {};
        const auto size = ::recv(socket_.number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        return { bytes.data(), size > 0 ? size_t(size) : 0 };
    }

    TestSupport::TemporaryFolder folder { "/tmp" };

private:
    PlatformSupport::FileDescriptor socket_ { ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0) };
};

std::string field(const std::string& name, const std::string& value)
{
    return name + "\n" + char(value.size()) + std::string(7, '\0') + value + "\n";
}

TEST(JournalLog, SendsEntriesWithTheirCategory)
{
    const Journal journal;
    JournalLog log(journal.folder / "socket");
    log.error(insertion, "two\nlines");
    EXPECT_EQ(journal.receive(),
        field("MESSAGE", "two\nlines") + field("PRIORITY", "3") + field("SYSLOG_IDENTIFIER", "sorvane")
            + field("SORVANE_SUBSYSTEM", "com.nerith.sorvane") + field("SORVANE_CATEGORY", "Insertion"));
}

TEST(JournalLog, WritesToStandardErrorWithoutAJournal)
{
    JournalLog log("/nowhere/socket");
    testing::internal::CaptureStderr();
    log.error(insertion, "words");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "com.nerith.sorvane Insertion: words\n");
}

TEST(JournalLog, DoesNotWaitForAJournalThatIsFrozen)
{
    const Journal journal;
    JournalLog log(journal.folder / "socket");
    testing::internal::CaptureStderr();
    for (int i = 0; i < 5000; ++i)
        log.error(insertion, "words");
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_NE(journal.receive(), "");
}

TEST(JournalLog, KeepsAnEntryThatIsTooLargeForTheJournal)
{
    const Journal journal;
    JournalLog log(journal.folder / "socket");
    const std::string entry(10'000'000, 'x');
    testing::internal::CaptureStderr();
    log.error(insertion, entry);
    EXPECT_GT(testing::internal::GetCapturedStderr().size(), entry.size());
}

} // namespace

} // namespace DesktopLinux

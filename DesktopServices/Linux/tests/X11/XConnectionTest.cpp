// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/X11Testing.h"

#include <DesktopLinux/X11Session.h>

#include <csignal>
#include <fstream>

namespace DesktopLinux {

namespace {

class XConnectionTest : public X11Testing { };

// Sends a message to a window of one's own, which arrives as an event.
void sendMessage(XConnection& connection, xcb_window_t window, std::uint32_t number)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.data.data32[0] = number;
    xcb_send_event(connection.get(), false, window, 0, reinterpret_cast<const char*>(&message));
}

TEST_F(XConnectionTest, HandsOutEventsInOrderByTheMainLoop)
{
    std::vector<std::uint32_t> received;
    const auto subscription = connection.observe([&](const xcb_generic_event_t& event) {
        if (kind(event) == XCB_CLIENT_MESSAGE)
            received.push_back(as<xcb_client_message_event_t>(event).data.data32[0]);
    });
    const auto window = connection.makeWindow(0);
    sendMessage(connection, window, 1);
    connection.synchronise();
    sendMessage(connection, window, 2);
    connection.flush();
    EXPECT_TRUE(received.empty());
    loop.turnUntil([&] { return received.size() == 2; });
    EXPECT_EQ(received, (std::vector<std::uint32_t> { 1, 2 }));
}

TEST_F(XConnectionTest, HandsOutOnceWhatIsUrgent)
{
    std::vector<std::string> received;
    const auto note = [&](const std::string& kindOfHandler) {
        return [&received, kindOfHandler](const xcb_generic_event_t& event) {
            if (kind(event) == XCB_CLIENT_MESSAGE)
                received.push_back(
                    kindOfHandler + std::to_string(as<xcb_client_message_event_t>(event).data.data32[0]));
        };
    };
    const auto ordinary = connection.observe(note("ordinary "));
    const auto urgent = connection.observeUrgent(note("urgent "));
    const auto window = connection.makeWindow(0);
    sendMessage(connection, window, 1);
    connection.synchronise();
    connection.handOutUrgent();
    EXPECT_EQ(received, std::vector<std::string> { "urgent 1" });
    sendMessage(connection, window, 2);
    connection.flush();
    loop.turnUntil([&] { return received.size() == 4; });
    EXPECT_EQ(received, (std::vector<std::string> { "urgent 1", "ordinary 1", "urgent 2", "ordinary 2" }));
}

TEST_F(XConnectionTest, LetsAHandlerWaitForReplies)
{
    int received = 0;
    const auto window = connection.makeWindow(0);
    const auto subscription = connection.observe([&](const xcb_generic_event_t& event) {
        if (kind(event) == XCB_CLIENT_MESSAGE && ++received < 3) {
            sendMessage(connection, window, 0);
            EXPECT_TRUE(connection.synchronise());
        }
    });
    sendMessage(connection, window, 0);
    connection.flush();
    loop.turnUntil([&] { return received == 3; });
}

TEST_F(XConnectionTest, TellsWhoseSubscriptionIsStillThere)
{
    int received = 0;
    auto subscription = connection.observe([&](const xcb_generic_event_t&) { ++received; });
    sendMessage(connection, connection.makeWindow(0), 0);
    connection.synchronise();
    subscription.reset();
    loop.turn();
    EXPECT_EQ(received, 0);
}

TEST_F(XConnectionTest, KnowsWhichRequestsWereRefused)
{
    EXPECT_TRUE(connection.succeeds(xcb_no_operation_checked(connection.get())));
    EXPECT_FALSE(connection.succeeds(xcb_destroy_window_checked(connection.get(), 12345)));
    EXPECT_FALSE(connection.property(12345, XCB_ATOM_WM_NAME));
}

TEST_F(XConnectionTest, ReadsPropertiesUpToASize)
{
    const auto window = connection.makeWindow(0);
    const std::string text = "Grüße";
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
        std::uint32_t(text.size()), text.data());
    ASSERT_TRUE(connection.property(window, XCB_ATOM_WM_NAME));
    EXPECT_EQ(connection.property(window, XCB_ATOM_WM_NAME)->text(), text);
    EXPECT_TRUE(connection.property(window, XCB_ATOM_WM_NAME)->numbers().empty());
    EXPECT_FALSE(connection.property(window, XCB_ATOM_WM_NAME, 4));
    EXPECT_FALSE(connection.property(window, XCB_ATOM_WM_CLASS));
    EXPECT_TRUE(connection.takeProperty(window, XCB_ATOM_WM_NAME, 100));
    EXPECT_FALSE(connection.property(window, XCB_ATOM_WM_NAME));
}

TEST_F(XConnectionTest, NamesAtoms)
{
    const auto atom = connection.atom("SORVANE_TEST");
    EXPECT_NE(atom, XCB_ATOM_NONE);
    EXPECT_EQ(connection.atom("SORVANE_TEST"), atom);
    EXPECT_EQ(connection.atomName(atom), "SORVANE_TEST");
    EXPECT_EQ(connection.atomName(0x1fffffff), "");
}

// A program that has grabbed the server, and is frozen then, stops it for all others.
TEST_F(XConnectionTest, WaitsForAFrozenServerNoLongerThanItsTime)
{
    OtherProgram other;
    EXPECT_EQ(other.ask("grab-server"), "grabbed");
    EXPECT_FALSE(connection.synchronise());
    EXPECT_FALSE(connection.property(connection.root(), XCB_ATOM_WM_NAME));
    EXPECT_FALSE(connection.succeeds(xcb_no_operation_checked(connection.get())));
    other.kill();
    EXPECT_TRUE(connection.synchronise());
}

TEST_F(XConnectionTest, IsRefusedWithoutADisplay)
{
    const std::string display = std::getenv("DISPLAY");
    ::setenv("DISPLAY", ":98765", 1);
    EXPECT_THROW(X11Session(loop.executor(), clock), NoDisplayError);
    ::setenv("DISPLAY", display.c_str(), 1);
}

} // namespace

} // namespace DesktopLinux

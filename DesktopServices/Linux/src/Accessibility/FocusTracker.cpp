// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/FocusTracker.h"

#include "Accessibility/FocusSearch.h"

#include <array>
#include <utility>

namespace DesktopLinux {

using DesktopServices::ProcessIdentifier;

namespace {

constexpr auto registryProgram = "org.a11y.atspi.Registry";
constexpr auto registryPath = "/org/a11y/atspi/registry";
constexpr auto registryInterface = "org.a11y.atspi.Registry";
constexpr auto rootPath = "/org/a11y/atspi/accessible/root";

// Programs tell their elements' changes only while somebody wants to hear of them.
constexpr std::array<const char*, 4> wantedEvents { "object:state-changed:focused", "object:state-changed:active",
    "window:activate", "window:deactivate" };

// Programs that have never told anything are forgotten beyond this.
constexpr size_t mostPrograms = 1000;

// A program that is frozen just then must not keep this one from starting.
constexpr auto firstSearch = std::chrono::milliseconds(300);

} // namespace

FocusTracker::FocusTracker(BusConnection& bus, Tree& tree)
    : bus_(bus)
    , tree_(tree)
{
    events_.push_back(
        bus_.observe("type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged',arg0='focused'",
            [this](sdbus::Message& event) { focusChanged(event); }));
    events_.push_back(bus_.observe("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged'",
        [this](sdbus::Message& change) { programLeft(change); }));
    askForEvents();
    learnPresentFocus();
}

void FocusTracker::askForEvents()
{
    registry_ = bus_.object(registryProgram, registryPath);
    for (const auto* event : wantedEvents) {
        try {
            if (!registry_)
                return;
            auto message = registry_->createMethodCall(registryInterface, "RegisterEvent");
            message << std::string(event);
            message.dontExpectReply();
            registry_->callMethod(message, 0);
        } catch (const sdbus::Error&) {
            return; // the bus is gone, and all elements with it
        }
    }
}

void FocusTracker::focusChanged(sdbus::Message& event)
{
    try {
        std::string state;
        std::int32_t isSet = 0;
        event >> state >> isSet;
        if (state == "focused" && isSet != 0
            && (focused_.size() < mostPrograms || focused_.contains(event.getSender())))
            focused_[event.getSender()] = event.getPath();
    } catch (const sdbus::Error&) {
        // An event in another form tells nothing.
    }
}

// Numbers of processes are given out again, names on the bus are not.
void FocusTracker::programLeft(sdbus::Message& change)
{
    try {
        std::string program;
        std::string before;
        std::string after;
        change >> program >> before >> after;
        if (!after.empty())
            return;
        focused_.erase(program);
        processes_.erase(program);
    } catch (const sdbus::Error&) {
        // The bus itself does not send others.
    }
}

std::optional<ObjectReference> FocusTracker::lastFocused(ProcessIdentifier process, Deadline deadline)
{
    bus_.handle();
    const auto known = focused_;
    for (const auto& [program, path] : known)
        if (processOf(program, deadline) == process)
            return ObjectReference { program, path };
    return std::nullopt;
}

std::optional<ObjectReference> FocusTracker::find(ProcessIdentifier process, Deadline deadline)
{
    const auto programs = tree_.children({ registryProgram, rootPath }).by(deadline);
    for (const auto& program : programs.value)
        if (processOf(program.program, deadline) == process)
            if (auto found = FocusSearch(tree_, deadline).run(program)) {
                focused_[found->program] = found->path;
                return found;
            }
    return std::nullopt;
}

std::optional<ProcessIdentifier> FocusTracker::processOf(const std::string& program, Deadline deadline)
{
    const auto known = processes_.find(program);
    if (known != processes_.end())
        return known->second;
    const auto answer = tree_.process(program).by(deadline);
    if (!answer.succeeded())
        return std::nullopt;
    const auto process = static_cast<ProcessIdentifier>(answer.value);
    if (processes_.size() < mostPrograms)
        processes_[program] = process;
    return process;
}

// The shortcut may be pressed before the focus has moved at all.
void FocusTracker::learnPresentFocus()
{
    const auto deadline = std::chrono::steady_clock::now() + firstSearch;
    for (const auto& program : tree_.children({ registryProgram, rootPath }).by(deadline).value)
        if (const auto found = FocusSearch(tree_, deadline).run(program))
            focused_.try_emplace(found->program, found->path);
}

} // namespace DesktopLinux

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/FocusTracker.h"

#include <array>
#include <deque>
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

// A search of the whole tree of a program ends after so many elements.
constexpr size_t mostElements = 2000;

// Programs that have never told anything are forgotten beyond this.
constexpr size_t mostPrograms = 1000;

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
    for (const auto& [program, path] : known) {
        if (!processes_.contains(program))
            if (const auto answer = tree_.process(program, deadline); answer.succeeded())
                processes_[program] = static_cast<ProcessIdentifier>(answer.value);
        if (const auto owner = processes_.find(program); owner != processes_.end() && owner->second == process)
            return ObjectReference { program, path };
    }
    auto found = find(process, deadline);
    if (found)
        focused_.try_emplace(found->program, found->path);
    return found;
}

std::optional<ObjectReference> FocusTracker::find(ProcessIdentifier process, Deadline deadline)
{
    const auto programs = tree_.children({ registryProgram, rootPath }, deadline);
    for (const auto& program : programs.value) {
        const auto owner = tree_.process(program.program, deadline);
        if (owner.succeeded() && static_cast<ProcessIdentifier>(owner.value) == process)
            if (auto found = findBelow(program, deadline))
                return found;
    }
    return std::nullopt;
}

// Level by level: of two that say that they have the focus, the upper one takes the keys.
std::optional<ObjectReference> FocusTracker::findBelow(const ObjectReference& top, Deadline deadline)
{
    std::deque<ObjectReference> waiting { top };
    for (size_t seen = 0; !waiting.empty() && seen < mostElements; ++seen) {
        const auto element = waiting.front();
        waiting.pop_front();
        const auto states = tree_.states(element, deadline);
        if (states.succeeded() && states.value.has(ElementState::focused))
            return element;
        const auto children = tree_.children(element, deadline);
        if (children.error == DesktopServices::AccessibilityError::cannotComplete)
            return std::nullopt;
        for (const auto& child : children.value)
            if (waiting.size() < mostElements)
                waiting.push_back(child);
    }
    return std::nullopt;
}

} // namespace DesktopLinux

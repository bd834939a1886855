// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinuxApplications.h"

#include <DesktopServices/AccessibilityNames.h>
#include <Regex/Letters.h>
#include <Sorvane/HarnessDetection.h>
#include <Sorvane/TextInsertion.h>

#include <string>
#include <vector>

namespace Sorvane {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::RunningApplication;
using namespace std::chrono_literals;

namespace {

constexpr auto preparationTimeout = 200ms;

// The search for labels stands between the key press and the start of the microphone.
constexpr auto labelSearchTime = 100ms;
constexpr auto labelTimeout = 50ms;
constexpr int labelledElements = 3;
constexpr size_t longestLabel = 200; // characters

InsertionTarget targetWithoutField(const RunningApplication& application)
{
    return { .pid = application.processIdentifier(),
        .name = application.localizedName().value_or("your app"),
        .bundleIdentifier = application.bundleIdentifier() };
}

void appendLabels(std::vector<std::string>& labels, const AccessibilityElement& element)
{
    for (const auto attribute : { AccessibilityAttribute::title, AccessibilityAttribute::description }) {
        const auto label = element.read(attribute, labelTimeout).as<std::string>();
        if (label && Regex::characterCount(*label) <= longestLabel)
            labels.push_back(*label);
    }
}

std::optional<AccessibilityElement> parentBelowWindow(const AccessibilityElement& element)
{
    const auto parent = element.read(AccessibilityAttribute::parent, labelTimeout).as<AccessibilityElement>();
    const bool isWindow = parent
        && parent->read(AccessibilityAttribute::role, labelTimeout).as<std::string>() == AccessibilityRole::window;
    return isWindow ? std::nullopt : parent;
}

std::optional<std::string> titleOfFocusedWindow(const AccessibilityElement& application)
{
    const auto window
        = application.read(AccessibilityAttribute::focusedWindow, labelTimeout).as<AccessibilityElement>();
    return window ? window->read(AccessibilityAttribute::title, labelTimeout).as<std::string>() : std::nullopt;
}

} // namespace

TextInsertion::Target TextInsertion::captureForRecording()
{
    const auto before = foreignApplicationInFront();
    try {
        return capture(HarnessSearch::Yes);
    } catch (const InsertionError& error) {
        if (error.which() != InsertionError::Case::noField)
            throw;
    }
    const auto now = desktop_.workspace.frontmostApplication();
    if (!now || now->processIdentifier() != before->processIdentifier())
        throw InsertionError(InsertionError::Case::focusChanged);
    return targetWithoutField(*now);
}

TextInsertion::Target TextInsertion::capture(HarnessSearch search)
{
    if (!desktop_.permissions.isAccessibilityTrusted())
        throw InsertionError(InsertionError::Case::permission);
    const auto application = foreignApplicationInFront();
    prepareAccessibility(*application);
    const auto root = desktop_.accessibility.applicationElement(application->processIdentifier());
    const auto focused = root.read(AccessibilityAttribute::focusedElement).as<AccessibilityElement>();
    if (!focused)
        throw InsertionError(InsertionError::Case::noField);

    const auto role = focused->read(AccessibilityAttribute::role).as<std::string>();
    const bool hasSelection = focused->read(AccessibilityAttribute::selectedTextRange).succeeded();
    validateField(role, focused->read(AccessibilityAttribute::subrole).as<std::string>(), hasSelection);

    Target target = targetWithoutField(*application);
    target.element = focused;
    if (search == HarnessSearch::Yes)
        target.harness = codingHarness(*application, *focused, root);
    target.application = application;
    target.window = focused->read(AccessibilityAttribute::window).as<AccessibilityElement>();
    return target;
}

std::shared_ptr<RunningApplication> TextInsertion::foreignApplicationInFront() const
{
    auto application = desktop_.workspace.frontmostApplication();
    if (!application || application->processIdentifier() == desktop_.workspace.ownProcessIdentifier())
        throw InsertionError(InsertionError::Case::noField);
    return application;
}

void TextInsertion::prepareAccessibility(const RunningApplication& application)
{
    if (!desktop_.permissions.isAccessibilityTrusted() || !application.isBuiltOnElectron())
        return;
    const auto element = desktop_.accessibility.applicationElement(application.processIdentifier());
    if (element.read(AccessibilityAttribute::manualAccessibility, preparationTimeout).as<bool>() != true)
        element.write(AccessibilityAttribute::manualAccessibility, true, preparationTimeout);
}

std::optional<CodingHarness> TextInsertion::codingHarness(
    const RunningApplication& application, const AccessibilityElement& focused, const AccessibilityElement& root)
{
    const auto deadline = clock_.now() + labelSearchTime;
    std::vector<std::string> labels;
    std::optional<AccessibilityElement> element = focused;
    for (int level = 0; level < labelledElements && element && clock_.now() < deadline; ++level) {
        appendLabels(labels, *element);
        element = parentBelowWindow(*element);
    }
    std::optional<std::string> windowTitle;
    if (clock_.now() < deadline)
        windowTitle = titleOfFocusedWindow(root);
    if (windowTitle)
        windowTitle = titleForHarnessDetection(application, *windowTitle);
    return HarnessDetection::detect(nameForHarnessDetection(application), labels, windowTitle);
}

} // namespace Sorvane

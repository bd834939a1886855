// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinuxApplications.h"
#include "WebHost.h"

#include <DesktopServices/AccessibilityNames.h>
#include <Regex/Letters.h>
#include <Regex/Trimming.h>
#include <Sorvane/AutomaticModeDetection.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace Sorvane {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityURL;
using PlatformSupport::Clock;
using namespace std::chrono_literals;

namespace {

constexpr std::array<std::string_view, 2> mailApps { "com.apple.mail", "com.microsoft.Outlook" };

constexpr std::array<std::string_view, 8> browsers { "com.apple.Safari", "com.google.Chrome",
    "com.google.Chrome.canary", "org.chromium.Chromium", "com.microsoft.edgemac", "com.brave.Browser",
    "company.thebrowser.Browser", "org.mozilla.firefox" };

constexpr std::array<std::string_view, 4> mailHosts { "mail.google.com", "outlook.live.com", "outlook.office.com",
    "outlook.office365.com" };

constexpr std::array<std::string_view, 7> labelsOfOtherFields { "subject", "to", "cc", "bcc", "recipients", "search",
    "search mail" };

constexpr std::array<std::string_view, 2> labelsOfBodies { "message body", "email body" };

constexpr std::array labelAttributes { AccessibilityAttribute::title, AccessibilityAttribute::description,
    AccessibilityAttribute::identifier };
constexpr size_t longestLabel = 120; // characters

// The detection stands between the key press and the start of the microphone.
constexpr auto detectionTime = 120ms;
constexpr auto longestRead = 15ms;
constexpr int longestWalk = 16; // elements

template <typename Table> bool contains(const Table& table, std::string_view text)
{
    return std::find(table.begin(), table.end(), text) != table.end();
}

bool isMailApp(std::string_view bundleIdentifier)
{
    return contains(mailApps, detectionIdentifier(bundleIdentifier)) || isLinuxMailApp(bundleIdentifier);
}

bool isBrowser(std::string_view bundleIdentifier)
{
    return contains(browsers, detectionIdentifier(bundleIdentifier));
}

// Reads within the time that the whole detection has: when it is over, nothing has a value any more.
class FieldReader {
public:
    explicit FieldReader(const Clock& clock)
        : clock_(clock)
        , deadline_(clock.now() + detectionTime)
    {
    }

    bool hasTime() const { return timeLeft() > Clock::Duration::zero(); }

    template <typename Kind>
    std::optional<Kind> read(const AccessibilityElement& element, std::string_view attribute) const
    {
        if (!hasTime())
            return std::nullopt;
        return element.read(attribute, std::min<Clock::Duration>(timeLeft(), longestRead)).template as<Kind>();
    }

    std::optional<std::string> role(const AccessibilityElement& element) const
    {
        return read<std::string>(element, AccessibilityAttribute::role);
    }

private:
    Clock::Duration timeLeft() const { return deadline_ - clock_.now(); }

    const Clock& clock_;
    Clock::Instant deadline_;
};

std::vector<std::string> labels(const FieldReader& reader, const AccessibilityElement& element)
{
    std::vector<std::string> labels;
    for (const auto attribute : labelAttributes) {
        const auto label = reader.read<std::string>(element, attribute);
        if (label && Regex::characterCount(*label) <= longestLabel)
            labels.push_back(*label);
    }
    return labels;
}

// The hosts of all pages and frames between a field and its window.
class WebSearch {
public:
    explicit WebSearch(const FieldReader& reader)
        : reader_(reader)
    {
    }

    // The one host around the field; nothing if there are several, or if anything is unclear.
    std::optional<std::string> host(const AccessibilityElement& field)
    {
        std::optional<AccessibilityElement> element = field;
        for (int step = 0; step < longestWalk && element; ++step) {
            if (!reader_.hasTime() || !isFirstVisit(*element))
                return std::nullopt;
            const auto role = reader_.role(*element);
            if (role == AccessibilityRole::webArea && !addHost(*element))
                return std::nullopt;
            if (role == AccessibilityRole::window || role == AccessibilityRole::application)
                return hosts_.size() == 1 ? std::optional(*hosts_.begin()) : std::nullopt;
            element = reader_.read<AccessibilityElement>(*element, AccessibilityAttribute::parent);
        }
        return std::nullopt;
    }

private:
    bool isFirstVisit(const AccessibilityElement& element)
    {
        if (std::find(visited_.begin(), visited_.end(), element) != visited_.end())
            return false;
        visited_.push_back(element);
        return true;
    }

    bool addHost(const AccessibilityElement& webArea)
    {
        const auto location = reader_.read<AccessibilityURL>(webArea, AccessibilityAttribute::url);
        const auto host = location ? secureWebHost(location->text) : std::nullopt;
        if (host)
            hosts_.insert(*host);
        return host.has_value();
    }

    const FieldReader& reader_;
    std::vector<AccessibilityElement> visited_;
    std::set<std::string> hosts_;
};

} // namespace

TranscriptMode AutomaticModeDetection::captureMode(
    const std::optional<InsertionTarget>& target, DesktopServices::Accessibility& accessibility, Clock& clock)
{
    if (!target || !target->bundleIdentifier || !target->element)
        return TranscriptMode::clean;
    const bool isInMailApp = isMailApp(*target->bundleIdentifier);
    if (!isInMailApp && !isBrowser(*target->bundleIdentifier))
        return TranscriptMode::clean;

    const FieldReader reader(clock);
    const auto& field = *target->element;
    const auto application = accessibility.applicationElement(target->pid);
    if (reader.read<AccessibilityElement>(application, AccessibilityAttribute::focusedElement) != field)
        return TranscriptMode::clean;
    Context context {
        .bundleIdentifier = target->bundleIdentifier, .role = reader.role(field), .labels = labels(reader, field)
    };
    if (!isInMailApp && !(context.host = WebSearch(reader).host(field)))
        return TranscriptMode::clean;
    return resolve(context);
}

TranscriptMode AutomaticModeDetection::resolve(const Context& context)
{
    const bool canBeBody = context.role == AccessibilityRole::textArea || context.role == AccessibilityRole::textField;
    if (!context.bundleIdentifier || !canBeBody)
        return TranscriptMode::clean;

    std::vector<std::string> labels;
    for (const auto& label : context.labels)
        labels.push_back(Regex::lowercased(Regex::trimmed(label)));
    const auto anyIsIn = [&](const auto& table) {
        return std::any_of(labels.begin(), labels.end(), [&](const auto& label) { return contains(table, label); });
    };
    if (anyIsIn(labelsOfOtherFields) || !anyIsIn(labelsOfBodies))
        return TranscriptMode::clean;

    const bool isOnMailSite
        = isBrowser(*context.bundleIdentifier) && context.host && contains(mailHosts, Regex::lowercased(*context.host));
    return isMailApp(*context.bundleIdentifier) || isOnMailSite ? TranscriptMode::email : TranscriptMode::clean;
}

} // namespace Sorvane

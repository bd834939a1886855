// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/RunningApplication.h>

#include <string>
#include <string_view>

// What Linux calls the programs that detection knows by other names. Programs are identified by the name of their
// desktop file, without its ending; distributions and Flatpak differ in it.
namespace Sorvane {

// The identifier under which detection knows a browser or a mail program; any other stays as it is.
std::string_view detectionIdentifier(std::string_view bundleIdentifier);

// Mail programs that exist on Linux only, or under Linux identifiers only.
bool isLinuxMailApp(std::string_view bundleIdentifier);

// The application's name, or "terminal" for a terminal whose own name does not say that it is one; empty if it has
// none.
std::string nameForHarnessDetection(const DesktopServices::RunningApplication& application);

// The title of a window without the terminal's own name, which some terminals write before what the program in them
// calls itself.
std::string titleForHarnessDetection(
    const DesktopServices::RunningApplication& application, const std::string& windowTitle);

} // namespace Sorvane

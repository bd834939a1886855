// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Composition.h"
#include "LinuxDesktop.h"
#include "ModelServices.h"

#include <DesktopLinux/ApplicationActivation.h>
#include <PlatformSupport/FileUserDefaults.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/UserFolders.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LinkGrammarTagger.h>
#include <Sorvane/QtMainThread.h>
#include <Sorvane/RecordingPanelViewModel.h>
#include <Sorvane/RecordingPanelWindow.h>
#include <Sorvane/StatusItemIcon.h>
#include <Sorvane/StatusItemViewModel.h>

#include <string>

namespace Sorvane {

// The dictation application: the desktop's services, the controller on top of them, and what is seen of it.
//
// Main thread, on which a QApplication is.
class Application {
public:
    // Errors: NoDisplayError
    explicit Application(const Composition& composition);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    // Gets the models ready, and with that, the shortcut to work.
    void start();

private:
    DictationServices services();
    void open();
    void setUp();
    void tellWhatStandsInTheWay();
    void tellPreparation();

    // In the order in which one needs the other.
    QtMainThread mainThread_;
    PlatformSupport::UserFolders folders_ = PlatformSupport::UserFolders::fromEnvironment();
    PlatformSupport::SystemClock clock_;
    PlatformSupport::RandomUUIDs uuids_;
    PlatformSupport::FileUserDefaults defaults_ { folders_.configuration / "Sorvane" / "defaults.json" };
    LinuxDesktop desktop_ { mainThread_.executor(), clock_ };
    ModelServices models_;
    LinkGrammarTagger tagger_;
    DictationController controller_;
    RecordingPanelViewModel panel_ { controller_, clock_ };
    RecordingPanelWindow panelWindow_ { panel_ };
    StatusItemViewModel statusItem_;
    StatusItemIcon statusIcon_ { statusItem_ };
    DesktopLinux::ApplicationActivation activation_ { mainThread_.executor(), [this] { open(); } };
    std::string told_; // of the preparation
    PlatformSupport::Observers::Subscription changes_;
};

// Runs the application until its user or the session ends it; 0, or 1 if it could not begin.
int runApplication(const Composition& composition);

} // namespace Sorvane

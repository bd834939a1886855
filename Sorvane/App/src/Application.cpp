// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Application.h"

#include "DictationModels.h"
#include "Interruption.h"
#include "RunningInstance.h"

#include <QApplication>

#include <atomic>
#include <cstdio>
#include <exception>
#include <utility>

namespace Sorvane {

Application::Application(const Composition& composition)
    : models_(composition, Network::reachable())
    , controller_(services())
    , statusItem_(controller_, { [this] { setUp(); }, [] { QCoreApplication::quit(); } })
{
    desktop_.accessibility.enable();
    controller_.showWindow = [this] { tellWhatStandsInTheWay(); };
    changes_ = controller_.subscribe([this] { tellPreparation(); });
}

Application::~Application()
{
    controller_.shutdown();
}

void Application::start()
{
    controller_.prepareModel();
    tellPreparation();
}

// The user asks for the application, which runs already.
void Application::open()
{
    controller_.refreshPermissions();
    if (!controller_.readiness().isSetUp())
        setUp();
    tellWhatStandsInTheWay();
}

// Does what is still to be done, one step at a time: what is missing first is asked for first.
void Application::setUp()
{
    controller_.refreshPermissions();
    if (!controller_.microphoneAllowed())
        controller_.requestMicrophone();
    else if (!controller_.accessibilityAllowed())
        controller_.requestAccessibility();
    else
        controller_.prepareModel();
}

void Application::tellWhatStandsInTheWay()
{
    const auto blocker = controller_.readiness().blocker();
    statusIcon_.tell(blocker ? std::string(*blocker) : controller_.status());
}

// For whoever started the program in a terminal.
void Application::tellPreparation()
{
    const std::string line = statusLine(controller_.preparation().stage());
    if (std::exchange(told_, line) == line)
        return;
    std::puts(line.c_str());
    std::fflush(stdout);
}

DictationServices Application::services()
{
    return {
        .mainThread = mainThread_.executor(),
        .clock = clock_,
        .uuids = uuids_,
        .defaults = defaults_,
        .desktop = desktop_.services(),
        .microphone = desktop_.sound.microphone(),
        .historyDirectory = folders_.applicationSupport / "Sorvane" / "Transcripts",
        .cleanup = models_.cleanup(tagger_),
        .loadSpeech = speechLoader(models_),
        .prepareCleanup = cleanupPreparation(models_),
    };
}

int runApplication(const Composition& composition)
{
    // Before any other thread is made, so that a request may come before there is anything to quit.
    std::atomic<bool> isAskedToEnd = false;
    const Interruption interruption([&] {
        isAskedToEnd = true;
        QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
    });
    try {
        DesktopLinux::X11Session::requireDisplay(); // without one, Qt would end the process
        const RunningInstance instance;
        int count = 1;
        std::string name = "sorvane";
        char* values[] = { name.data(), nullptr };
        const QApplication qt(count, values);
        QApplication::setQuitOnLastWindowClosed(false);
        Application application(composition);
        application.start();
        return isAskedToEnd ? 0 : QApplication::exec();
    } catch (const AlreadyRunningError& error) {
        std::fprintf(stderr, "sorvane: %s\n", error.what());
        return DesktopLinux::ApplicationActivation::activateRunning() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sorvane: %s\n", error.what());
        return 1;
    }
}

} // namespace Sorvane

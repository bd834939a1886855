// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <sys/types.h>
#include <TemporaryFolder.h>

#include <string>

namespace DesktopLinux {

// A sound server that belongs to one test, and to which this process connects as long as it lives.
class PrivateSoundServer {
public:
    PrivateSoundServer();
    PrivateSoundServer(const PrivateSoundServer&) = delete;
    PrivateSoundServer& operator=(const PrivateSoundServer&) = delete;
    ~PrivateSoundServer();

    void start();
    void kill();
    void freeze() const;

    // Runs pactl with these words; gives what it says.
    std::string control(const std::string& words) const;

    // A microphone that hears what is said into it, and becomes the chosen one. Gives the number of its module.
    std::string addMicrophone(const std::string& name, int sampleRate, int channels) const;

    // A microphone that hears silence, by the minute in a second, and becomes the chosen one.
    void addHastyMicrophone(const std::string& name);

    // Plays a tone into the microphone until this program says otherwise.
    void beginTone(const std::string& microphone, int frequency);
    void endTone();

private:
    TestSupport::TemporaryFolder folder_ { "/tmp" };
    pid_t server_ = 0;
    pid_t player_ = 0;
};

} // namespace DesktopLinux

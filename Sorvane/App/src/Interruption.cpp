// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Interruption.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace Sorvane {

namespace {

sigset_t requests()
{
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : { SIGINT, SIGTERM, SIGHUP })
        ::sigaddset(&set, signal);
    return set;
}

} // namespace

Interruption::Interruption(std::function<void()> onRequest)
    : onRequest_(std::move(onRequest))
{
    const sigset_t set = requests();
    ::pthread_sigmask(SIG_BLOCK, &set, &before_);
    signals_ = PlatformSupport::FileDescriptor(::signalfd(-1, &set, SFD_CLOEXEC));
    end_ = PlatformSupport::FileDescriptor(::eventfd(0, EFD_CLOEXEC));
    if (!signals_.isOpen() || !end_.isOpen())
        throw std::system_error(errno, std::generic_category(), "cannot watch signals");
    thread_ = std::jthread([this] { watch(); });
}

Interruption::~Interruption()
{
    ::eventfd_write(end_.number(), 1);
    thread_.join();
    signalfd_siginfo taken {}; // a request that came too late would end the process once it is let through
    pollfd waiting { signals_.number(), POLLIN, 0 };
    while (::poll(&waiting, 1, 0) > 0 && ::read(signals_.number(), &taken, sizeof taken) > 0) { }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interruption::watch() const
{
    std::array<pollfd, 2> watched { { { signals_.number(), POLLIN, 0 }, { end_.number(), POLLIN, 0 } } };
    while (::poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) { }
    if (watched[0].revents != 0)
        onRequest_();
}

} // namespace Sorvane

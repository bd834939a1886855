// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ProgramLaunch.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <tuple>
#include <utility>

namespace Sorvane {

using PlatformSupport::FileDescriptor;

namespace {

constexpr int firstOwnDescriptor = STDERR_FILENO + 1;

[[noreturn]] void fail(int error, const std::string& what)
{
    throw std::system_error(error, std::generic_category(), what);
}

// The same file, under a number that is not one of the standard streams: the child is going to replace those.
FileDescriptor clearOfStandardStreams(FileDescriptor file)
{
    if (file.number() >= firstOwnDescriptor)
        return file;
    FileDescriptor other(::fcntl(file.number(), F_DUPFD_CLOEXEC, firstOwnDescriptor));
    if (!other.isOpen())
        fail(errno, "cannot open another file");
    return other;
}

struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends {};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            fail(errno, "cannot create a pipe");
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
        reading = clearOfStandardStreams(std::move(reading));
        writing = clearOfStandardStreams(std::move(writing));
    }

    FileDescriptor reading;
    FileDescriptor writing;
};

FileDescriptor nullDevice()
{
    FileDescriptor device(::open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!device.isOpen())
        fail(errno, "cannot open the null device");
    return clearOfStandardStreams(std::move(device));
}

// A null-terminated array of the texts, which outlive it.
std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// While it lives, no signal reaches this thread: this program's handlers must not run in the child.
class BlockedSignals {
public:
    BlockedSignals()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &previous_);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

private:
    sigset_t previous_ {};
};

// What the child needs between fork and exec. There it is a copy of one thread of many, any of which may have held any
// lock: nothing in the functions below allocates, throws, or does what a signal handler may not.
struct ChildSide {
    pid_t parent;
    const char* executable;
    char* const* arguments;
    char* const* environment;
    const char* workingDirectory;
    int null;
    int output;
    int failure; // where the number of an error is written
};

// The signal comes when the launching thread ends; if that has happened before it was asked for, it never comes.
bool diesWithItsParent(pid_t parent) noexcept
{
    return ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::getppid() == parent;
}

// What a crashed tool leaves would hold the user's words. One byte is no room for a core file, and unlike 0 it also
// keeps the system from handing the core to a collector.
bool leavesNoCoreFile() noexcept
{
    constexpr rlimit limit { .rlim_cur = 1, .rlim_max = 1 };
    return ::setrlimit(RLIMIT_CORE, &limit) == 0;
}

// All else stays open until exec, so that a failure can still be reported.
bool hasOnlyItsStreams(const ChildSide& child) noexcept
{
    return ::dup2(child.null, STDIN_FILENO) >= 0 && ::dup2(child.output, STDOUT_FILENO) >= 0
        && ::dup2(child.null, STDERR_FILENO) >= 0 && ::close_range(firstOwnDescriptor, ~0U, CLOSE_RANGE_CLOEXEC) == 0;
}

bool takesSignalsAsUsual() noexcept
{
    for (int number = 1; number < NSIG; ++number)
        std::ignore = ::signal(number, SIG_DFL); // not allowed for some, which need it not
    sigset_t none;
    ::sigemptyset(&none);
    return ::sigprocmask(SIG_SETMASK, &none, nullptr) == 0;
}

[[noreturn]] void becomeProgram(const ChildSide& child) noexcept
{
    constexpr int statusOfFailedLaunch = 127;
    const bool isReady = ::setpgid(0, 0) == 0 && diesWithItsParent(child.parent) && leavesNoCoreFile()
        && hasOnlyItsStreams(child) && ::chdir(child.workingDirectory) == 0 && takesSignalsAsUsual();
    if (isReady)
        ::execve(child.executable, child.arguments, child.environment);
    const int error = errno;
    std::ignore = ::write(child.failure, &error, sizeof error);
    ::_exit(statusOfFailedLaunch);
}

pid_t forked(const ChildSide& child)
{
    const BlockedSignals blocked;
    const pid_t process = ::fork();
    if (process == 0)
        becomeProgram(child);
    if (process < 0)
        fail(errno, "cannot start a process");
    return process;
}

// The error that the child reports; 0 once its program runs, which closes the pipe.
int reportedError(const FileDescriptor& failure)
{
    int error = 0;
    while (::read(failure.number(), &error, sizeof error) < 0 && errno == EINTR) { }
    return error;
}

} // namespace

LaunchedProgram launchProgram(const ChildProcess::Description& description)
{
    std::vector<std::string> arguments = description.arguments;
    arguments.insert(arguments.begin(), description.executable);
    std::vector<std::string> environment = description.environment;
    const FileDescriptor null = nullDevice();
    Pipe output;
    Pipe failure;

    const pid_t process = forked({ .parent = ::getpid(),
        .executable = description.executable.c_str(),
        .arguments = pointersTo(arguments).data(),
        .environment = pointersTo(environment).data(),
        .workingDirectory = description.workingDirectory.c_str(),
        .null = null.number(),
        .output = output.writing.number(),
        .failure = failure.writing.number() });
    failure.writing = FileDescriptor();
    if (const int error = reportedError(failure.reading); error != 0) {
        ::waitpid(process, nullptr, 0);
        fail(error, "cannot start " + description.executable.string());
    }
    return { .process = process, .output = std::move(output.reading) };
}

} // namespace Sorvane

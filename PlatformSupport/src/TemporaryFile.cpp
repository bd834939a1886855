// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/TemporaryFile.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace PlatformSupport {

namespace {

namespace fs = std::filesystem;

// A temporary file is ".XXXXXX.temporary".
constexpr std::string_view suffix = ".temporary";

[[noreturn]] void fail(const char* action, const fs::path& path, int error)
{
    throw fs::filesystem_error(action, path, std::error_code(error, std::generic_category()));
}

bool lock(const FileDescriptor& file)
{
    return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

bool isTemporary(const fs::path& path)
{
    const std::string name = path.filename();
    return name.starts_with('.') && name.ends_with(suffix);
}

// Removes what processes that were killed left behind: nobody has it locked.
void clearAway(const fs::path& folder)
{
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end; entry.increment(ignored)) {
        if (!isTemporary(entry->path()))
            continue;
        const FileDescriptor file(::open(entry->path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.isOpen() && lock(file))
            ::unlink(entry->path().c_str());
    }
}

// A new file, locked. Somebody who clears away may have come between the two: then it is another one's turn.
std::pair<fs::path, FileDescriptor> newLockedFile(const fs::path& folder)
{
    for (;;) {
        std::string path = (folder / (".XXXXXX" + std::string(suffix))).string();
        FileDescriptor file(::mkostemps(path.data(), static_cast<int>(suffix.size()), O_CLOEXEC));
        if (!file.isOpen())
            fail("cannot make a file in", folder, errno);
        if (lock(file) && ::access(path.c_str(), F_OK) == 0)
            return { path, std::move(file) };
        ::unlink(path.c_str());
    }
}

} // namespace

TemporaryFile::TemporaryFile(const fs::path& folder)
{
    fs::create_directories(folder);
    clearAway(folder);
    std::tie(path_, file_) = newLockedFile(folder);
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : path_(std::exchange(other.path_, {}))
    , file_(std::move(other.file_))
{
}

TemporaryFile::~TemporaryFile()
{
    if (!path_.empty())
        ::unlink(path_.c_str());
}

void TemporaryFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file_.number(), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            fail("cannot write file", path_, errno);
    }
}

void TemporaryFile::moveTo(const fs::path& destination)
{
    if (::rename(path_.c_str(), destination.c_str()) == 0) {
        path_.clear();
        return;
    }
    if (errno != EXDEV)
        fail("cannot move file to", destination, errno);
    TemporaryFile nearby(destination.parent_path().empty() ? "." : destination.parent_path());
    fs::copy_file(path_, nearby.path(), fs::copy_options::overwrite_existing);
    nearby.moveTo(destination);
}

} // namespace PlatformSupport

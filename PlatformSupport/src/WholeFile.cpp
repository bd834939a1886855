// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/WholeFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace PlatformSupport {

namespace {

// An unfinished replacement of "NAME" is ".NAME.XXXXXX.unfinished".
constexpr std::string_view unfinishedSuffix = ".unfinished";

[[noreturn]] void fail(const char* action, const std::filesystem::path& path, int error)
{
    throw std::filesystem::filesystem_error(action, path, std::error_code(error, std::generic_category()));
}

// The hidden file that is to take the path's name, and which goes if it does not come to that.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& path)
        : path_(path)
        , unfinished_(path.parent_path() / ("." + path.filename().string() + ".XXXXXX" + std::string(unfinishedSuffix)))
        , file_(::mkostemps(unfinished_.data(), static_cast<int>(unfinishedSuffix.size()), O_CLOEXEC))
    {
        if (!file_.isOpen())
            fail(errno);
    }
    ~Replacement()
    {
        if (!isFinished_)
            ::unlink(unfinished_.c_str());
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    void write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t written = ::write(file_.number(), bytes.data(), bytes.size());
            if (written >= 0)
                bytes.remove_prefix(static_cast<size_t>(written));
            else if (errno != EINTR)
                fail(errno);
        }
    }

    void finish()
    {
        if (::fsync(file_.number()) != 0 || file_.close() != 0 || ::rename(unfinished_.c_str(), path_.c_str()) != 0)
            fail(errno);
        isFinished_ = true;
    }

private:
    [[noreturn]] void fail(int error) const { PlatformSupport::fail("cannot write file", path_, error); }

    const std::filesystem::path& path_;
    std::string unfinished_;
    FileDescriptor file_;
    bool isFinished_ = false;
};

// Not blocking, so that a pipe in the file's place is refused and not waited for.
int openForReading(const std::filesystem::path& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        fail("cannot read file", path, errno);
    return descriptor;
}

size_t sizeOfRegularFile(const FileDescriptor& file, const std::filesystem::path& path)
{
    struct stat status { };
    if (::fstat(file.number(), &status) != 0)
        fail("cannot read file", path, errno);
    if (!S_ISREG(status.st_mode))
        fail("cannot read file", path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    return static_cast<size_t>(status.st_size);
}

} // namespace

std::string readFile(const std::filesystem::path& path, size_t limit)
{
    const FileDescriptor file(openForReading(path));

    // One byte more than there should be, so that the end shows without growing.
    std::string bytes(std::min(sizeOfRegularFile(file, path), limit) + 1, '\0');
    size_t size = 0;
    while (true) {
        const ssize_t read = ::read(file.number(), bytes.data() + size, bytes.size() - size);
        if (read == 0)
            break;
        if (read < 0 && errno == EINTR)
            continue;
        if (read < 0)
            fail("cannot read file", path, errno);
        size += static_cast<size_t>(read);
        if (size > limit)
            fail("cannot read file", path, EFBIG);
        if (size == bytes.size())
            bytes.resize(std::min(2 * size, limit + 1));
    }
    bytes.resize(size);
    return bytes;
}

void replaceFile(const std::filesystem::path& path, std::span<const std::string_view> pieces, Durability durability)
{
    Replacement replacement(path);
    for (const auto piece : pieces)
        replacement.write(piece);
    replacement.finish();
    if (durability == Durability::replacement)
        synchroniseFolder(path.parent_path());
}

void replaceFile(const std::filesystem::path& path, std::string_view bytes, Durability durability)
{
    replaceFile(path, std::span(&bytes, 1), durability);
}

bool isUnfinishedReplacement(std::string_view name)
{
    return name.starts_with('.') && name.ends_with(unfinishedSuffix);
}

void synchroniseFolder(const std::filesystem::path& folder)
{
    const FileDescriptor file(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file.isOpen())
        fail("cannot write folder", folder, errno);
    // Some file systems cannot, and say that the argument is invalid.
    if (::fsync(file.number()) != 0 && errno != EINVAL)
        fail("cannot write folder", folder, errno);
}

} // namespace PlatformSupport

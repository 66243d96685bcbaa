// A file written beside its target under the name target + ".part" and put in place of the
// target only when it is complete, so that a failure leaves the old file as it was and no
// half-written file behind.
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace folio {

class FileBeside {
public:
    explicit FileBeside(std::filesystem::path target) : target_(std::move(target)) {
        temp_ = target_;
        temp_ += ".part";
        removeTemp(); // left over from a run that was killed
    }
    ~FileBeside() {
        if (!placed_)
            removeTemp();
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    // Where to write.
    const std::filesystem::path& path() const { return temp_; }
    // Replaces the target by the written file, once the file's bytes are on the disk, and
    // makes the new name durable too. Throws std::filesystem::filesystem_error.
    void putInPlace() {
        sync(temp_);
        std::filesystem::rename(temp_, target_);
        placed_ = true;
        sync(target_.parent_path().empty() ? "." : target_.parent_path());
    }

private:
    static void sync(const std::filesystem::path& path) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const bool ok = fd >= 0 && ::fsync(fd) == 0;
        const int error = errno;
        if (fd >= 0)
            ::close(fd);
        if (!ok)
            throw std::filesystem::filesystem_error(
                "cannot write to the disk", path, std::error_code(error, std::generic_category()));
    }

    void removeTemp() noexcept {
        std::error_code ec;
        std::filesystem::remove(temp_, ec);
        std::filesystem::path journal = temp_;
        journal += "-journal"; // what a database being written keeps beside it
        std::filesystem::remove(journal, ec);
    }

    std::filesystem::path target_;
    std::filesystem::path temp_;
    bool placed_ = false;
};

} // namespace folio

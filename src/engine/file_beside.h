// A file written beside its target under the name target + ".part" and put in place of the
// target only when it is complete, so that a failure leaves the old file as it was and no
// half-written file behind.
#pragma once

#include "engine/stoerung.h"

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
    // Writes a copy of `source` there. Throws std::filesystem::filesystem_error.
    void copyFrom(const std::filesystem::path& source) {
        if (const int error = stoerung::zaehlen(stoerung::Art::Schreiben))
            throw std::filesystem::filesystem_error(
                "cannot copy", source, temp_, std::error_code(error, std::generic_category()));
        std::filesystem::copy_file(source, temp_,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    // Replaces the target by the written file, once the file's bytes are on the disk, and
    // makes the new name durable where the folder lets it: once renamed, the new file is in
    // place, and a folder that can't be synced takes nothing back. Throws
    // std::filesystem::filesystem_error where the file can't be synced or renamed.
    void putInPlace() {
        if (const int error = sync(temp_))
            throw std::filesystem::filesystem_error(
                "cannot write to the disk", temp_, std::error_code(error, std::generic_category()));
        std::filesystem::rename(temp_, target_);
        placed_ = true;
        sync(target_.parent_path().empty() ? "." : target_.parent_path());
    }

private:
    // 0, or the error number of the failed sync.
    static int sync(const std::filesystem::path& path) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        int error = stoerung::zaehlen(stoerung::Art::Sync);
        const bool ok = fd >= 0 && error == 0 && ::fsync(fd) == 0;
        if (error == 0)
            error = errno;
        if (fd >= 0)
            ::close(fd);
        return ok ? 0 : error;
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

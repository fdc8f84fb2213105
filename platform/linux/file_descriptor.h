// The owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <string>
#include <utility>

namespace NPlatform {

class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&&) = delete;
    ~FileDescriptor() { Close(); }

    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int Get() const { return descriptor_; }
    // Some file systems report only here that they could not write. False: so did this one, or nothing is
    // open. Closed it is in any case.
    bool Close() { return IsOpen() && close(std::exchange(descriptor_, -1)) == 0; }

  private:
    int descriptor_;
};

// Opens a regular file for reading. Anything else (a folder, a pipe, a device) counts as a file that cannot
// be opened: its text may have no end. Fills in the file's size.
FileDescriptor OpenRegularFile(const std::string& path, off_t& size);

}  // namespace NPlatform

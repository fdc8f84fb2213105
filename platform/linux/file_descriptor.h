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
    void Close() {
        if (IsOpen()) close(std::exchange(descriptor_, -1));
    }

  private:
    int descriptor_;
};

// Opens a regular file for reading. Anything else (a folder, a pipe, a device) counts as a file that cannot
// be opened: its text may have no end. Fills in the file's size.
FileDescriptor OpenRegularFile(const std::string& path, off_t& size);

}  // namespace NPlatform

// A file as the text-mode streams write it.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace NPlatform {

// Open for writing and shared with everybody: created, or emptied if it was there. The path is UTF-16.
class OutputFile {
  public:
    explicit OutputFile(std::u16string_view path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    [[nodiscard]] bool IsOpen() const { return system_ != nullptr; }
    // Writes all the bytes after those before. False: the system could not write them all.
    [[nodiscard]] bool Write(const char* bytes, std::size_t count) const;
    // Call it last, at most once. False: the system reported that it could not write what it had taken.
    [[nodiscard]] bool Close();

  private:
    struct System;
    std::unique_ptr<System> system_;
};

}  // namespace NPlatform

// The table to convert.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "api/xls2tki.h"
#include "cli/files.h"

namespace NCli {

// The largest CSV text that the library reads.
inline constexpr std::uint64_t kLargestInput = std::uint64_t{1} << 31;

// The library reads regular files. What comes through standard input or a pipe is first copied into a
// temporary file, which goes with this object.
class Input {
  public:
    // Throws Failure.
    Input(const std::filesystem::path& path, NXls2Tki::VImportType kind);

    [[nodiscard]] const std::filesystem::path& Path() const { return copy_ ? copy_->PathToOpen() : path_; }

  private:
    std::filesystem::path path_;
    std::optional<TemporaryFile> copy_;
};

}  // namespace NCli

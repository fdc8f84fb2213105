// The table to convert.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "api/xls2tki.h"
#include "cli/files.h"

namespace NCli {

// The library reads regular files. What comes through standard input or a pipe is first copied into a
// temporary file, which goes with this object.
class Input {
  public:
    // Throws Failure.
    Input(const std::filesystem::path& path, NXls2Tki::VImportType kind);

    [[nodiscard]] const std::filesystem::path& Path() const { return copy_ ? copy_->Path() : path_; }

    // Throws Failure when a CSV text says by its first bytes that it has to be read another way.
    void RequireEncoding(bool utf8) const;

  private:
    std::filesystem::path path_;
    std::optional<TemporaryFile> copy_;
};

}  // namespace NCli

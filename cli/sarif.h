// The findings of one conversion for review tools and editors: SARIF 2.1.0.
#pragma once

#include <filesystem>
#include <string_view>

#include "cli/options.h"
#include "cli/output.h"

namespace NCli {

// Where the findings go; as with the document, an older file stays until the new one is whole.
class SarifFile {
  public:
    // Makes sure that the file can be written; whether it may replace what is there has been decided before.
    // Throws Failure.
    explicit SarifFile(const std::filesystem::path& path) : output_(path, true) {}

    // Writes the findings of the last conversion, those of a conversion that failed as well. `failure` is the
    // sentence that says why it did, empty if it did not. Throws Failure, and std::bad_alloc when the memory
    // is exhausted.
    void Write(const Options& options, std::string_view failure);

  private:
    Output output_;
};

}  // namespace NCli

// The document's place.
#pragma once

#include <filesystem>
#include <optional>

#include "cli/files.h"

namespace NCli {

// The document is first written into a temporary file. When it is complete, the file takes the place of the
// output; where the output is no regular file but a device or a pipe, the document is copied there.
class Output {
  public:
    // Makes sure that the output can be written. Throws Failure.
    explicit Output(const std::filesystem::path& path);

    // Where the library shall write the document.
    [[nodiscard]] const std::filesystem::path& Path() const { return document_->Path(); }

    // Puts the document in its place. Throws Failure, also when the document is not complete.
    void Publish();

  private:
    void OpenDevice(File device);
    void PrepareReplacement(unsigned attributes);
    void CopyToDevice();
    void MoveIntoPlace();

    std::filesystem::path destination_;  // no symbolic link
    File device_;                        // open where the output is no regular file
    std::optional<TemporaryFile> document_;
    std::optional<unsigned> attributes_;  // of the file that is replaced
};

}  // namespace NCli

// The document's place.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cli/files.h"

namespace NCli {

// Why a document must not replace what is at the path, as a sentence for the user: a file that holds
// something, but no import document. Empty where there is no reason.
std::string ReasonToKeep(const std::filesystem::path& output);

// The same of findings, which replace a SARIF file alone.
std::string ReasonToKeepFromSarif(const std::filesystem::path& output);

// Where the system would create the file if it were asked for one at the path. A link at the end is one that
// this user may not follow, or one of a circle.
std::filesystem::path FollowLinks(std::filesystem::path path);

// The document is first written into a temporary file. When it is complete, the file takes the place of the
// output; where the output is no regular file but a device or a pipe, the document is copied there.
class Output {
  public:
    // Makes sure that the output can be written. A file that is no import document, or appears only later, is
    // replaced where `mayReplaceOthers`. Throws Failure.
    Output(const std::filesystem::path& path, bool mayReplaceOthers);

    // Where the library shall write the document.
    [[nodiscard]] const std::filesystem::path& Path() const { return document_->PathToOpen(); }

    // Puts the document in its place, where the older one stays until the new one is whole and on the disk.
    // `isWritten` is what the library says of it. Throws Failure.
    void Publish(bool isWritten);

  private:
    void OpenDevice(File device);
    void FindReplaced();
    void CopyToDevice();
    void MoveIntoPlace();
    void CheckName() const;
    void TakePlace();
    bool SetRights();
    [[noreturn]] void Refuse(const std::string& reason) const;

    std::filesystem::path path_;         // as the user knows it
    std::filesystem::path destination_;  // behind all symbolic links
    bool mayReplaceOthers_;
    File device_;    // open where the output is no regular file
    File replaced_;  // open where there is a regular file at the beginning
    std::optional<TemporaryFile> document_;
};

}  // namespace NCli

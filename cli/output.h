// The place of the document, and of other files that the command writes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cli/files.h"
#include "cli/replaceable.h"

namespace NCli {

// Why the system could not have a file of this name, as a sentence for the user. Empty where there is no
// reason.
std::string ReasonAgainstName(const std::filesystem::path& output);

// Where the system would create the file if it were asked for one at the path. A link at the end is one that
// this user may not follow, or one of a circle.
std::filesystem::path FollowLinks(std::filesystem::path path);

// What the command writes, such as the document, is first written into a temporary file. When it is complete,
// the file takes the place of the output; where the output is no regular file but a device or a pipe, the
// document is copied there.
class Output {
  public:
    // Makes sure that the output can be written. It replaces what is `replaceable`; where that is null, any
    // file, and one that appears only later, too. Throws Failure.
    Output(const std::filesystem::path& path, const FileKind* replaceable);

    // Where to write.
    [[nodiscard]] const std::filesystem::path& Path() const { return document_->PathToOpen(); }

    // Puts what was written in its place, where the older file stays until the new one is whole and on the
    // disk. `isWritten`: nobody saw a failure to write it. Throws Failure.
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
    std::filesystem::path destination_;  // after following all symbolic links
    const FileKind* replaceable_;
    File device_;    // open where the output is no regular file
    File replaced_;  // open if a regular file exists at the beginning
    std::optional<TemporaryFile> document_;
};

}  // namespace NCli

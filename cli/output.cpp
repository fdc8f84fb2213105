#include "cli/output.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "cli/failure.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

fs::path Folder(const fs::path& path) { return path.has_parent_path() ? path.parent_path() : "."; }

// Asks the system why a file could not be written completely, by writing on and closing it.
std::string FindReason(TemporaryFile& document) {
    const char bytes[4096] = {};
    const bool isWritten = std::fseek(document.Stream(), 0, SEEK_END) == 0 &&
                           std::fwrite(bytes, 1, sizeof bytes, document.Stream()) == sizeof bytes &&
                           FlushToDisk(document.Stream()) && document.Close();
    return isWritten ? "the system gave no reason" : SystemText(errno);
}

}  // namespace

std::string ReasonAgainstName(const fs::path& output) {
    const std::string fault = FaultOfName(output);
    return fault.empty() ? fault : "The output " + NameOf(output) + " cannot be a file: " + fault + ".";
}

fs::path FollowLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code ignored;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, ignored) && MayFollow(path); ++links) {
        path = path.parent_path() / fs::read_symlink(path, ignored);
    }
    return path;
}

Output::Output(const fs::path& path, const FileKind* replaceable)
    : path_(path), destination_(path), replaceable_(replaceable) {
    std::error_code error;
    const fs::file_type type = TypeOf(path, error);
    if (path == kStandardOutput) {
        OpenDevice(File(stdout));
    } else if (type == fs::file_type::regular) {
        FindReplaced();
    } else if (fs::exists(fs::file_status(type))) {
        OpenDevice(OpenFile(path, "wb"));
    } else if (type == fs::file_type::not_found) {
        destination_ = FollowLinks(path);
        if (fs::is_symlink(destination_, error)) Refuse(SystemText(EACCES));
    } else {
        Refuse(error.message());
    }
    if (!device_) document_.emplace(Folder(destination_), ToBytes(destination_.filename()));
}

void Output::Refuse(const std::string& reason) const {
    throw Failure("Could not write " + NameOf(path_) + ": " + reason);
}

void Output::OpenDevice(File device) {
    if (!device) Refuse(SystemText(errno));
    device_ = std::move(device);
    document_.emplace("xls2tki-document");
}

// The system follows the links, as far as it lets this user follow them.
void Output::FindReplaced() {
    replaced_ = OpenToReplace(path_);
    if (!replaced_) Refuse(SystemText(errno));
    destination_ = PathOf(replaced_.get(), path_);
    if (destination_.empty()) Refuse("the target of its link has changed");
}

void Output::Publish(bool isWritten) {
    if (!isWritten) {
        // The document is there, and not yet on the device.
        if (device_) path_ = document_->Path().parent_path();
        CheckName();
        Refuse(FindReason(*document_));
    }
    if (device_) {
        CopyToDevice();
    } else {
        MoveIntoPlace();
    }
}

void Output::CopyToDevice() {
    const bool isCopied = Copy(document_->Stream(), device_.get(), kNoLimit) == CopyResult::Done;
    // The last failure may show only when the device is closed.
    if (!isCopied || std::fclose(device_.release()) != 0) Refuse(SystemText(errno));
}

// Where others may write into the folder, the name could be another file's by now.
void Output::CheckName() const {
    if (HasName(document_->Stream(), document_->Path())) return;
    Refuse(errno == 0 ? "its temporary file was replaced" : SystemText(errno));
}

// What was written may not be on the disk yet, and some file systems find out only now that it does not fit.
void Output::MoveIntoPlace() {
    std::FILE* const document = document_->Stream();
    if (!FlushToDisk(document)) Refuse(SystemText(errno));
    CheckName();
    if (!SetRights() || !document_->Close()) Refuse(SystemText(errno));
    TakePlace();
}

// What is there may not be what was there at the beginning.
void Output::TakePlace() {
    const bool mayReplaceOthers = replaceable_ == nullptr;
    if (replaced_ && !mayReplaceOthers) {
        const std::string reason = ReasonToKeep(destination_, *replaceable_);
        if (!reason.empty()) throw Failure(reason);
    }
    const bool mayReplace = replaced_ || mayReplaceOthers;
    replaced_.reset();
    const std::error_code error = Rename(document_->Path(), destination_, mayReplace);
    if (error == std::errc::file_exists) {
        Refuse("it was created during the conversion; use --force to replace it.");
    }
    if (error) Refuse(error.message());
}

// A new document gets the rights of any new file, as an empty one shows them.
bool Output::SetRights() {
    if (replaced_) return CopyRights(replaced_.get(), document_->Stream());
    const TemporaryFile model(Folder(destination_), ToBytes(destination_.filename()), Readers::AsUsual);
    return CopyRights(model.Stream(), document_->Stream());
}

}  // namespace NCli

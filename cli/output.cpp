#include "cli/output.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/failure.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void RefuseToWrite(const fs::path& path, const std::string& reason) {
    throw Failure("Could not write " + NameOf(path) + ": " + reason);
}

fs::path Folder(const fs::path& path) { return path.has_parent_path() ? path.parent_path() : "."; }

// Follows symbolic links to the file that is there or would be created. Devices and pipes stay as they are:
// what their links say need not be a path.
fs::path FollowLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code ignored;
    const fs::file_type type = StateOf(path, ignored).type;
    if (fs::exists(fs::file_status(type)) && type != fs::file_type::regular) return path;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, ignored); ++links) {
        path = path.parent_path() / fs::read_symlink(path, ignored);
    }
    return path;
}

bool IsComplete(const fs::path& document) {
    constexpr std::string_view kEnd = "</TAMRISKIMPORT>\r\n";
    char bytes[kEnd.size()] = {};
    const File file = OpenFile(document, "rb");
    return file && std::fseek(file.get(), -static_cast<long>(kEnd.size()), SEEK_END) == 0 &&
           std::fread(bytes, 1, sizeof bytes, file.get()) == sizeof bytes &&
           kEnd == std::string_view(bytes, sizeof bytes);
}

// Asks the system why a file could not be written completely, by writing on.
std::string FindReason(const fs::path& document) {
    const char bytes[4096] = {};
    const File file = OpenFile(document, "ab");
    const bool isWritten = file && std::fwrite(bytes, 1, sizeof bytes, file.get()) == sizeof bytes &&
                           std::fflush(file.get()) == 0;
    return isWritten ? "the system gave no reason" : SystemText(errno);
}

}  // namespace

Output::Output(const fs::path& path) : destination_(path == kStandardOutput ? path : FollowLinks(path)) {
    std::error_code error;
    const FileState state = StateOf(destination_, error);
    if (path == kStandardOutput) {
        OpenDevice(File(stdout));
    } else if (state.type == fs::file_type::regular) {
        PrepareReplacement(state.attributes);
    } else if (fs::exists(fs::file_status(state.type))) {
        OpenDevice(OpenFile(destination_, "wb"));
    } else if (state.type == fs::file_type::not_found) {
        document_.emplace(Folder(destination_), ToBytes(destination_.filename()));
    } else {
        RefuseToWrite(path, error.message());
    }
}

void Output::OpenDevice(File device) {
    if (!device) RefuseToWrite(destination_, SystemText(errno));
    device_ = std::move(device);
    document_.emplace("xls2tki-document");
}

void Output::PrepareReplacement(unsigned attributes) {
    if (!OpenFile(destination_, "r+b")) RefuseToWrite(destination_, SystemText(errno));
    document_.emplace(Folder(destination_), ToBytes(destination_.filename()));
    document_->RestrictToOwner();
    attributes_ = attributes;
}

void Output::Publish() {
    if (!IsComplete(Path())) RefuseToWrite(device_ ? Path().parent_path() : destination_, FindReason(Path()));
    if (device_) {
        CopyToDevice();
    } else {
        MoveIntoPlace();
    }
}

void Output::CopyToDevice() {
    const File document = OpenFile(Path(), "rb");
    const bool isCopied = document && Copy(document.get(), device_.get(), kNoLimit) == CopyResult::Done;
    // The last failure may show only when the device is closed.
    if (!isCopied || std::fclose(device_.release()) != 0) RefuseToWrite(destination_, SystemText(errno));
}

void Output::MoveIntoPlace() {
    std::error_code error;
    if (attributes_) SetAttributes(Path(), *attributes_, error);
    if (!error) fs::rename(ToSystemPath(Path()), ToSystemPath(destination_), error);
    if (error) RefuseToWrite(destination_, error.message());
}

}  // namespace NCli

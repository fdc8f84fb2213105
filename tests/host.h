// What a host has: files, and an ear at the logging library.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/logging.h"

namespace NTest {

// UTF-16 without lone surrogates as UTF-8, by the standard library.
inline std::string Utf8(std::u16string_view text) {
    const std::u8string bytes = std::filesystem::path(text).u8string();
    return {bytes.begin(), bytes.end()};
}

inline std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    for (std::size_t at = 0; (at = text.find(from)) != std::string_view::npos;
         text.remove_prefix(at + from.size())) {
        result.append(text.substr(0, at)).append(to);
    }
    return result.append(text);
}

inline std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder for the files of one test; it goes with the test.
class TempFolder {
  public:
    TempFolder()
        : path_(std::filesystem::canonical(std::filesystem::temp_directory_path()) /
                ("xls2tki-test-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(path_);
    }
    TempFolder(const TempFolder&) = delete;
    ~TempFolder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::u16string Path(std::string_view name) const { return (path_ / name).u16string(); }
    [[nodiscard]] std::string Read(std::string_view name) const { return ReadBytes(path_ / name); }

    // Writes the file and returns its path.
    std::u16string Put(std::string_view name, std::string_view bytes) const {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
        return Path(name);
    }

  private:
    std::filesystem::path path_;
};

// While it lives, relative paths begin in this folder.
class WorkingFolder {
  public:
    explicit WorkingFolder(const TempFolder& folder) : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.Path(""));
    }
    WorkingFolder(const WorkingFolder&) = delete;
    ~WorkingFolder() { std::filesystem::current_path(before_); }

  private:
    std::filesystem::path before_;
};

// Collects what reaches the logging library while the object lives; one at a time.
class Progress {
  public:
    explicit Progress(std::uint32_t mask = ~std::uint32_t{0}, int level = 2) {
        messages_.clear();
        Library().SwitchOn(mask, static_cast<Level>(level), Listen);
    }
    Progress(const Progress&) = delete;
    ~Progress() { Library().SwitchOff(); }

    static NTamriskSharedUtil::Logging::VLogging& Library() {
        return NTamriskSharedUtil::Logging::VLogging::GetInstance();
    }
    static const std::vector<std::u16string>& Messages() { return messages_; }

  private:
    using Level = NTamriskSharedUtil::Logging::VLogLevel::VSeverityLevel;

    // Whatever does not come at severity 2 under the library's own group is marked.
    static void Listen(Level severity, std::uint32_t group,
                       const NTamriskSharedUtil::Logging::VLogging::WideChar* text) {
        const std::uint32_t ours = Library().GetOrCreateGroupId("GroupSorbel");
        const bool isOurs = severity == static_cast<Level>(2) && group == ours;
        messages_.push_back(isOurs ? u"" : u"WRONG GROUP OR SEVERITY: ");
        while (*text != 0) messages_.back().push_back(*text++);
    }

    inline static std::vector<std::u16string> messages_;
};

}  // namespace NTest

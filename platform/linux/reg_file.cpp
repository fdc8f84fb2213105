#include "platform/linux/reg_file.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/registry.h"

namespace NPlatform {

namespace {

char16_t LowerCase(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool AreSame(std::u16string_view one, std::u16string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t left, char16_t right) { return LowerCase(left) == LowerCase(right); });
}

bool IsBelow(std::u16string_view path, std::u16string_view above) {
    return path.size() > above.size() && path[above.size()] == u'\\' &&
           AreSame(path.substr(0, above.size()), above);
}

std::u16string_view Trim(std::u16string_view text) {
    constexpr std::u16string_view kBlanks = u" \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// The functions that take something take it off the front of `rest`.

std::u16string_view TakeLine(std::u16string_view& rest) {
    const std::size_t end = std::min(rest.find(u'\n'), rest.size());
    const std::u16string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return Trim(line);
}

bool Take(std::u16string_view& rest, std::u16string_view word) {
    if (!rest.starts_with(word)) return false;
    rest = Trim(rest.substr(word.size()));
    return true;
}

std::optional<std::u16string> TakeQuoted(std::u16string_view& rest) {
    std::u16string text;
    for (std::size_t index = 1; index < rest.size(); ++index) {
        if (rest[index] == u'"') {
            rest = Trim(rest.substr(index + 1));
            return text;
        }
        if (rest[index] == u'\\' && index + 1 < rest.size()) ++index;
        text.push_back(rest[index]);
    }
    return std::nullopt;
}

std::optional<std::uint32_t> TakeHexadecimal(std::u16string_view& rest, std::size_t mostDigits) {
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    std::uint32_t number = 0;
    std::size_t count = 0;
    for (; count < std::min(mostDigits, rest.size()); ++count) {
        const std::size_t digit = kDigits.find(LowerCase(rest[count]));
        if (digit == std::u16string_view::npos) break;
        number = number << 4 | static_cast<std::uint32_t>(digit);
    }
    if (count == 0) return std::nullopt;
    rest = Trim(rest.substr(count));
    return number;
}

struct Data {
    std::uint32_t type;
    std::vector<std::byte> bytes;
};

std::optional<Data> TakeText(std::u16string_view& rest) {
    std::optional<std::u16string> text = TakeQuoted(rest);
    if (!text) return std::nullopt;
    Data data{kRegistryText, {}};
    for (const char16_t unit : text->append(1, u'\0')) {
        data.bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        data.bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return data;
}

std::optional<Data> TakeNumber(std::u16string_view& rest) {
    const std::optional<std::uint32_t> number = TakeHexadecimal(rest, 8);
    if (!number) return std::nullopt;
    Data data{kRegistryNumber, {}};
    for (int shift = 0; shift < 32; shift += 8) {
        data.bytes.push_back(static_cast<std::byte>(*number >> shift & 0xFF));
    }
    return data;
}

class RegFileReader {
  public:
    RegFileReader(std::u16string_view text, std::u16string_view path, std::u16string_view valueName)
        : rest_(text), path_(path), valueName_(valueName) {}

    std::optional<FoundRegistryKey> Read() {
        const std::u16string_view first = TakeLine(rest_);
        if (first != u"Windows Registry Editor Version 5.00" && first != u"REGEDIT4") return std::nullopt;
        while (!rest_.empty()) ReadLine(TakeLine(rest_));
        return std::move(key_);
    }

  private:
    void ReadLine(std::u16string_view line) {
        if (line.starts_with(u'[') && line.ends_with(u']')) {
            ReadKey(line.substr(1, line.size() - 2));
        } else if (isInKey_ && line == u";deny key") {
            key_->isDenied = true;
        } else if (isInKey_ && line == u";deny value") {
            deniesNext_ = true;
        } else if (isInKey_) {
            ReadValue(line);
        }
    }

    void ReadKey(std::u16string_view path) {
        const bool deletes = Take(path, u"-");
        const bool isPath = AreSame(path, path_);
        if (deletes && (isPath || IsBelow(path_, path))) key_.reset();
        if (!deletes && (isPath || IsBelow(path, path_)) && !key_) key_.emplace();
        isInKey_ = isPath && !deletes;
        deniesNext_ = false;
    }

    void ReadValue(std::u16string_view line) {
        std::optional<std::u16string> name;
        if (Take(line, u"@")) {
            name.emplace();
        } else if (line.starts_with(u'"')) {
            name = TakeQuoted(line);
        }
        if (!name || !Take(line, u"=")) return;
        if (line == u"-") {
            Store(*name, std::nullopt);
        } else if (std::optional<Data> data = TakeData(line); data && IsEnd(line)) {
            Store(*name, RegistryValue{data->type, std::move(data->bytes), deniesNext_});
        }
        deniesNext_ = false;
    }

    void Store(std::u16string_view name, std::optional<RegistryValue> value) {
        if (AreSame(name, valueName_)) key_->value = std::move(value);
    }

    std::optional<Data> TakeData(std::u16string_view& rest) {
        if (rest.starts_with(u'"')) return TakeText(rest);
        if (Take(rest, u"dword:")) return TakeNumber(rest);
        if (Take(rest, u"hex:")) return TakeBytes(kRegistryBinary, rest);
        if (!Take(rest, u"hex(")) return std::nullopt;
        const std::optional<std::uint32_t> type = TakeHexadecimal(rest, 8);
        return type && Take(rest, u"):") ? TakeBytes(*type, rest) : std::nullopt;
    }

    std::optional<Data> TakeBytes(std::uint32_t type, std::u16string_view& rest) {
        Data data{type, {}};
        while (!IsEnd(rest)) {
            if (rest == u"\\") {
                rest = TakeLine(rest_);
                continue;
            }
            const std::optional<std::uint32_t> byte = TakeHexadecimal(rest, 2);
            if (!byte || (!Take(rest, u",") && !IsEnd(rest))) return std::nullopt;
            data.bytes.push_back(static_cast<std::byte>(*byte));
        }
        return data;
    }

    static bool IsEnd(std::u16string_view rest) { return rest.empty() || rest.starts_with(u';'); }

    std::u16string_view rest_;
    std::u16string_view path_;
    std::u16string_view valueName_;
    std::optional<FoundRegistryKey> key_;
    bool isInKey_ = false;
    bool deniesNext_ = false;
};

}  // namespace

std::optional<FoundRegistryKey> FindInRegFile(std::u16string_view text, std::u16string_view path,
                                              std::u16string_view valueName) {
    return RegFileReader(text, path, valueName).Read();
}

}  // namespace NPlatform

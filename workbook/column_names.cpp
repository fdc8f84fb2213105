#include "workbook/column_names.h"

#include <unordered_map>

#include "platform/format.h"
#include "workbook/ascii_case.h"

namespace NWorkbook {

static std::u16string Digits(std::size_t number) {
    return NPlatform::Format(16, u"%d", {static_cast<std::int32_t>(number)});
}

std::vector<std::u16string> NameColumns(std::vector<std::u16string> texts) {
    // The names in use, each with the last number that was appended to it.
    std::unordered_map<std::u16string, std::size_t> taken;
    std::vector<std::size_t> unnamed;
    for (std::size_t column = 0; column < texts.size(); ++column) {
        const std::u16string& text = texts[column];
        if (text.empty() || !taken.try_emplace(WithoutAsciiCase(text), 0).second) unnamed.push_back(column);
    }
    for (const std::size_t column : unnamed) {
        std::u16string& name = texts[column];
        if (name.empty()) name = u"F" + Digits(column + 1);
        const auto [place, isFree] = taken.try_emplace(WithoutAsciiCase(name), 0);
        if (isFree) continue;
        std::size_t& number = place->second;
        std::u16string numbered;
        do {
            numbered = name + Digits(++number);
        } while (!taken.try_emplace(WithoutAsciiCase(numbered), 0).second);
        name = std::move(numbered);
    }
    return texts;
}

}  // namespace NWorkbook

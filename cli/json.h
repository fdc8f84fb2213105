// JSON in one line, written member by member: a tree of values cannot be destroyed where the memory has
// ended.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace NCli {

// A text, a number, true, false or null.
using JsonValue = nlohmann::json;

// Bytes of a text that are not UTF-8 become U+FFFD, and what people do not see is escaped.
std::string JsonOf(const JsonValue& value);

class JsonArray {
  public:
    // An element, as JSON.
    void Add(std::string_view json) { text_.append(text_.empty() ? "" : ",").append(json); }
    [[nodiscard]] std::string Text() const { return "[" + text_ + "]"; }

  private:
    std::string text_;
};

class JsonObject {
  public:
    void Add(std::string_view name, const JsonValue& value) { AddJson(name, JsonOf(value)); }
    // A value of several, such as an array.
    void AddJson(std::string_view name, std::string_view json) {
        text_.append(text_.empty() ? "\"" : ",\"").append(name).append("\":").append(json);
    }
    [[nodiscard]] std::string Text() const { return "{" + text_ + "}"; }

  private:
    std::string text_;
};

}  // namespace NCli

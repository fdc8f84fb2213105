// The error of every table source.
#pragma once

#include <string>
#include <utility>

namespace VCSVReader {

// Holds the whole text that the user reads. Thrown by value, caught by reference.
class VParserException {
  public:
    explicit VParserException(std::u16string message) : message_(std::move(message)) {}
    VParserException(const VParserException&) = default;
    VParserException& operator=(const VParserException&) = default;
    virtual ~VParserException() = default;
    [[nodiscard]] virtual std::u16string GetMessage() const { return message_; }

  private:
    std::u16string message_;
};

}  // namespace VCSVReader

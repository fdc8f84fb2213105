// The error of the document layer.
#pragma once

#include <string>
#include <utility>

namespace VSimpleXMLCreation {

// Holds the whole text that the user reads. Thrown by value, caught by reference.
class VSimpleXMLException {
  public:
    explicit VSimpleXMLException(std::u16string message) : message_(std::move(message)) {}
    VSimpleXMLException(const VSimpleXMLException&) = default;
    VSimpleXMLException& operator=(const VSimpleXMLException&) = default;
    virtual ~VSimpleXMLException() = default;
    [[nodiscard]] virtual std::u16string GetMessage() const { return message_; }

  private:
    std::u16string message_;
};

}  // namespace VSimpleXMLCreation

// Printing documents that are too large to be held as a tree.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "document/xml_tag.h"
#include "platform/text_buffer.h"

namespace VSimpleXMLCreation {

// Prints a document of which one element has more children than one wants to hold at a time.
//
// The tree is complete but for the children of that element. They are added as many at a time as one likes,
// and printed and dropped; meanwhile nothing else in the tree may change. The text is that of a tree with all
// of them.
class VXmlPrinter {
  public:
    // `growing` is an element of the root's tree, without children and text. Both outlive the printer.
    VXmlPrinter(const VXmlTagRoot& root, VXmlTag& growing);
    VXmlPrinter(const VXmlPrinter&) = delete;
    VXmlPrinter& operator=(const VXmlPrinter&) = delete;
    ~VXmlPrinter();

    // Prints the children that the growing element has now and drops them, with all that was added to the
    // tree since the printer was made.
    void PrintChildren();
    // How long the text gets with the children that are printed.
    [[nodiscard]] std::size_t PrintedSize() const;
    // The whole text. The printer is of no more use.
    NPlatform::TextBuffer Finish();

  private:
    VXmlTag& growing_;
    std::unique_ptr<VXmlTag::Mark> mark_;  // the tree without the children
    NPlatform::TextBuffer text_;           // from the beginning on
    std::u16string end_;                   // what comes behind the text
    std::size_t emptySize_ = 0;            // of the growing element in it, while that has no children
    bool hasChildren_ = false;
};

}  // namespace VSimpleXMLCreation

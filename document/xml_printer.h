// Printing documents that are too large to be held as a tree.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "document/xml_tag.h"
#include "platform/text_buffer.h"

namespace VSimpleXMLCreation {

// Prints a document in which one element has too many children to keep in memory.
//
// The tree is complete except for the children of that element. Add them in groups of any size,
// and print and drop each group; do not change the rest of the tree. The text is that of a tree with all
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
    // The length of the text with the children printed so far.
    [[nodiscard]] std::size_t PrintedSize() const;
    // The whole text. Do not use the printer afterwards.
    NPlatform::TextBuffer Finish();

  private:
    VXmlTag& growing_;
    std::unique_ptr<VXmlTag::Mark> mark_;  // the tree without the children
    NPlatform::TextBuffer text_;           // from the beginning on
    std::u16string end_;                   // what comes after the text
    std::size_t emptySize_ = 0;            // of the growing element in it, while that has no children
    bool hasChildren_ = false;
};

}  // namespace VSimpleXMLCreation

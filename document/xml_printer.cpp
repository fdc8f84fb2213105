#include "document/xml_printer.h"

#include "document/xml_tree.h"

namespace VSimpleXMLCreation {

namespace {

constexpr std::size_t kFirstCapacity = 4096;

}  // namespace

VXmlPrinter::VXmlPrinter(const VXmlTagRoot& root, VXmlTag& growing)
    : growing_(growing), mark_(std::make_unique<VXmlTag::Mark>(root.OwnTree())) {
    text_.Reserve(kFirstCapacity);
    VXmlTag::Place place{&growing};
    root.PrintTo(text_, &place);
    end_ = text_.View().substr(place.offset);
    text_.Truncate(place.offset);
    emptySize_ = growing.Print().Size();
}

VXmlPrinter::~VXmlPrinter() = default;

void VXmlPrinter::PrintChildren() {
    if (growing_.lastChild_ == nullptr) return;
    if (!hasChildren_) {
        end_.replace(0, emptySize_, growing_.shape_->name->close);
        text_.Append(growing_.shape_->start);
    }
    hasChildren_ = true;
    growing_.PrintChildrenTo(text_);
    growing_.lastChild_ = nullptr;
    VXmlTag::Tree& tree = growing_.OwnTree();
    tree.units.GoBack(mark_->units);
    tree.nodes.GoBack(mark_->nodes);
}

std::size_t VXmlPrinter::PrintedSize() const { return text_.Size() + end_.size(); }

NPlatform::TextBuffer VXmlPrinter::Finish() {
    PrintChildren();
    text_.Append(end_);
    return std::move(text_);
}

}  // namespace VSimpleXMLCreation

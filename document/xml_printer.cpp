#include "document/xml_printer.h"

#include "document/xml_tree.h"

namespace VSimpleXMLCreation {

VXmlPrinter::VXmlPrinter(const VXmlTagRoot& root, VXmlTag& growing)
    : growing_(growing),
      mark_(std::make_unique<VXmlTag::Mark>(root.OwnTree())),
      skeleton_(root.Print()),
      offset_(kDeclaration.size()),
      emptySize_(growing.OwnSize()) {
    root.AddOffsetOf(growing, offset_);
    text_.Append(skeleton_.View().substr(0, offset_));
}

VXmlPrinter::~VXmlPrinter() = default;

void VXmlPrinter::PrintChildren() {
    if (growing_.lastChild_ == nullptr) return;
    if (!hasChildren_) text_.Append(growing_.shape_->start);
    hasChildren_ = true;
    VXmlTag::Tree& tree = growing_.OwnTree();
    growing_.PrintChildrenTo(text_.Extend(tree.printedSize - mark_->printedSize - growing_.ContentCost()));
    growing_.lastChild_ = nullptr;
    tree.printedSize = mark_->printedSize;
    tree.units.GoBack(mark_->units);
    tree.nodes.GoBack(mark_->nodes);
}

std::size_t VXmlPrinter::PrintedSize() const {
    const std::size_t pending = growing_.OwnTree().printedSize - mark_->printedSize;
    if (!hasChildren_) return skeleton_.Size() + pending;
    const std::size_t content = pending == 0 ? 0 : pending - growing_.ContentCost();
    const std::size_t rest = skeleton_.Size() - offset_ - emptySize_;
    return text_.Size() + content + growing_.shape_->name->close.size() + rest;
}

NPlatform::TextBuffer VXmlPrinter::Finish() {
    PrintChildren();
    std::u16string_view rest = skeleton_.View().substr(offset_);
    if (hasChildren_) {
        rest.remove_prefix(emptySize_);
        text_.Append(growing_.shape_->name->close);
    }
    text_.Append(rest);
    return std::move(text_);
}

}  // namespace VSimpleXMLCreation

#include "workbook/xlsx/relationships.h"

#include <algorithm>

#include "workbook/utf16.h"
#include "workbook/xlsx/part_name.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{16} << 20;
// A name in a zip archive has its length in 16 bits.
constexpr std::size_t kMostBytesOfPartName = 65'535;

class RelationshipsReader : public XmlReader {
  public:
    RelationshipsReader(std::string_view part, Relationships& relationships)
        : part_(part), relationships_(relationships) {}

    bool Start(const XmlElement& element) override {
        if (element.depth == 1) {
            CheckRoot(element, "Relationships");
            return true;
        }
        if (element.name == "Relationship") Add(element);
        return false;
    }

  private:
    void Add(const XmlElement& element) {
        const char* const id = element.Find("Id");
        const char* const type = element.Find("Type");
        const char* const target = element.Find("Target");
        if (id == nullptr || type == nullptr || target == nullptr) {
            throw PartFault{Fault::Damaged, u"a relationship has no identifier, type or target"};
        }
        const std::string_view kind(type);
        Relationship relationship{std::string(kind.substr(kind.rfind('/') + 1)),
                                  PartOf(target, element.Find("TargetMode"))};
        if (!relationships_.emplace(id, std::move(relationship)).second) {
            throw PartFault{Fault::Damaged, u"there are two relationships '" + ToUtf16(id) + u"'"};
        }
    }

    std::string PartOf(std::string_view target, const char* mode) {
        const bool isOutside = mode != nullptr && std::string_view(mode) == "External";
        if (isOutside || target.size() > kMostBytesOfPartName) return {};
        std::string name = ResolveTarget(part_, target);
        if (name.size() > kMostBytesOfPartName) return {};
        // Each target begins with the folder of the part.
        if (name.size() > bytesLeft_) throw PartFault{Fault::TooLarge, u"its targets are too long"};
        bytesLeft_ -= name.size();
        return name;
    }

    std::string_view part_;
    Relationships& relationships_;
    std::size_t bytesLeft_ = kMostBytes;  // of names
};

}  // namespace

Relationships ReadRelationships(Package& package, std::string_view part) {
    Relationships relationships;
    const std::string list = RelationshipsOf(part);
    if (!package.Has(list)) return relationships;
    RelationshipsReader reader(part, relationships);
    ReadXmlPart(package, list, XmlNamespace::Package, reader, kMostBytes);
    return relationships;
}

std::string_view FindPart(const Relationships& relationships, std::string_view kind) {
    const auto found = std::find_if(relationships.begin(), relationships.end(),
                                    [kind](const auto& entry) { return entry.second.kind == kind; });
    return found == relationships.end() ? std::string_view() : found->second.part;
}

}  // namespace NWorkbook::NXlsx

#include "workbook/xlsx/xml_part.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <limits>
#include <utility>

#include "workbook/utf16.h"
#include "workbook/xlsx/parser_memory.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr int kPiece = 1 << 16;
constexpr std::size_t kMostBindings = 16;
constexpr std::string_view kDeclaration = "xmlns";

struct KnownNamespace {
    std::string_view uri;
    XmlNamespace meaning;
};

constexpr KnownNamespace kNamespaces[] = {
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/main", XmlNamespace::Spreadsheet},
    {"http://purl.oclc.org/ooxml/spreadsheetml/main", XmlNamespace::Spreadsheet},
    {"http://schemas.openxmlformats.org/officeDocument/2006/relationships", XmlNamespace::References},
    {"http://purl.oclc.org/ooxml/officeDocument/relationships", XmlNamespace::References},
    {"http://schemas.openxmlformats.org/package/2006/relationships", XmlNamespace::Package},
};

XmlNamespace MeaningOf(std::string_view uri) {
    for (const KnownNamespace& known : kNamespaces) {
        if (known.uri == uri) return known.meaning;
    }
    return XmlNamespace::Other;
}

struct QualifiedName {
    std::string_view prefix;
    std::string_view local;
};

QualifiedName Split(const char* name) {
    const char* local = name;
    const char* end = name;
    for (; *end != '\0'; ++end) {
        if (*end == ':' && local == name) local = end + 1;
    }
    const std::size_t prefixSize = local == name ? 0 : static_cast<std::size_t>(local - name - 1);
    return {{name, prefixSize}, {local, static_cast<std::size_t>(end - local)}};
}

// Expat 2.9 has new names for these two and warns about the old ones.
#if XML_MAJOR_VERSION > 2 || XML_MINOR_VERSION >= 9
std::int64_t ByteIndex(XML_Parser parser) { return XML_GetCurrentByteIndex64(parser); }
std::uint64_t LineNumber(XML_Parser parser) { return XML_GetCurrentLineNumber64(parser); }
#else
std::int64_t ByteIndex(XML_Parser parser) { return XML_GetCurrentByteIndex(parser); }
std::uint64_t LineNumber(XML_Parser parser) { return XML_GetCurrentLineNumber(parser); }
#endif

class PartParser {
  public:
    PartParser(Package& package, std::string_view part, XmlNamespace wanted, XmlReader& reader)
        : package_(package), part_(part), wanted_(wanted), reader_(reader), parser_(MakeLimitedParser()) {
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(parser_.get(), OnText);
        XML_SetStartDoctypeDeclHandler(parser_.get(), OnDocumentType);
    }

    void Run(std::uint64_t mostBytes) {
        PartReader bytes(package_, part_);
        std::uint64_t fed = 0;
        for (bool isEnd = false; !isEnd;) {
            void* const buffer = XML_GetBuffer(parser_.get(), kPiece);
            if (buffer == nullptr) throw ParserError();
            const std::size_t count = bytes.Read(static_cast<char*>(buffer), kPiece);
            isEnd = count == 0;
            fed += count;
            const XML_Status status = XML_ParseBuffer(parser_.get(), static_cast<int>(count), isEnd ? 1 : 0);
            if (failure_) ThrowFailure();
            if (status != XML_STATUS_OK) throw ParserError();
            if (!package_.CountPieces(std::exchange(pieces_, 0))) {
                throw Located({Fault::TooLarge, u"the workbook has too many elements"});
            }
            if (fed > mostBytes) throw Located({Fault::TooLarge, u"the part is too long"});
            if (fed - Done() > kMostBytesOfToken)
                throw Located({Fault::TooLarge, u"a tag or comment is too long"});
        }
    }

  private:
    // No exception may pass through the parser, which is C: it is kept, and the parser stopped.
    template <typename Work>
    static void Guard(void* self, Work work) noexcept {
        auto& parser = *static_cast<PartParser*>(self);
        if (parser.failure_) return;
        try {
            work(parser);
        } catch (...) {
            parser.failure_ = std::current_exception();
            XML_StopParser(parser.parser_.get(), XML_FALSE);
        }
    }

    static void XMLCALL OnStart(void* self, const char* name, const char** attributes) {
        Guard(self, [=](PartParser& parser) { parser.Start(name, attributes); });
    }
    static void XMLCALL OnEnd(void* self, const char* /*name*/) {
        Guard(self, [](PartParser& parser) { parser.End(); });
    }
    static void XMLCALL OnText(void* self, const char* text, int size) {
        Guard(self, [=](PartParser& parser) { parser.Text({text, static_cast<std::size_t>(size)}); });
    }
    static void XMLCALL OnDocumentType(void* self, const char* /*name*/, const char* /*systemId*/,
                                       const char* /*publicId*/, int /*hasInternalSubset*/) {
        Guard(self, [](PartParser&) {
            throw PartFault{Fault::Damaged, u"it has a document type declaration, which no workbook has"};
        });
    }

    void Start(const char* name, const char** attributes) {
        ++pieces_;
        if (++depth_ > kMostDepth) throw PartFault{Fault::TooLarge, u"its elements are nested too deeply"};
        bytesOfText_ = 0;
        if (leftOut_ != 0) return;
        const auto depth = static_cast<std::size_t>(depth_);
        keepsBlanks_[depth] = keepsBlanks_[depth - 1];
        for (const char* const* next = attributes; *next != nullptr; next += 2) {
            if (**next == 'x') TakeXmlAttribute(next[0], next[1]);
        }
        const QualifiedName qualified = Split(name);
        const bool isWanted = prefixes_.Of(qualified.prefix) == wanted_;
        if (!isWanted && depth_ == 1)
            throw PartFault{Fault::Damaged, u"its root element is of another namespace"};
        if (!isWanted) reader_.LeaveOutForeign();
        if (!isWanted ||
            !reader_.Start({depth_, qualified.local, attributes, &prefixes_, keepsBlanks_[depth]}))
            leftOut_ = depth_;
    }

    void TakeXmlAttribute(std::string_view name, std::string_view value) {
        if (name == "xml:space") keepsBlanks_[static_cast<std::size_t>(depth_)] = value == "preserve";
        if (!prefixes_.Declare(depth_, name, value)) {
            throw PartFault{Fault::TooLarge, u"it declares too many namespaces"};
        }
    }

    void End() {
        bytesOfText_ = 0;
        if (leftOut_ == 0) {
            reader_.End(depth_);
        } else if (leftOut_ == depth_) {
            leftOut_ = 0;
        }
        prefixes_.Forget(depth_);
        --depth_;
    }

    void Text(std::string_view text) {
        ++pieces_;
        bytesOfText_ += text.size();
        if (bytesOfText_ > kMostBytesOfText) throw PartFault{Fault::TooLarge, u"a text is too long"};
        if (leftOut_ == 0) reader_.Text(text);
    }

    // How many bytes the parser is done with.
    [[nodiscard]] std::uint64_t Done() const {
        return static_cast<std::uint64_t>(std::max<std::int64_t>(0, ByteIndex(parser_.get())));
    }

    [[nodiscard]] WorkbookError Located(const PartFault& fault) const {
        const auto line = static_cast<std::int32_t>(
            std::min<std::uint64_t>(LineNumber(parser_.get()), std::numeric_limits<std::int32_t>::max()));
        return package_.LineError(part_, line, fault);
    }

    [[nodiscard]] WorkbookError ParserError() const {
        const XML_Error error = XML_GetErrorCode(parser_.get());
        if (error == XML_ERROR_NO_MEMORY)
            return Located({Fault::TooLarge, u"it has too many different names"});
        return Located({Fault::Damaged, ToUtf16(XML_ErrorString(error))});
    }

    [[noreturn]] void ThrowFailure() const {
        try {
            std::rethrow_exception(failure_);
        } catch (const PartFault& fault) {
            throw Located(fault);
        }
    }

    Package& package_;
    std::string_view part_;
    XmlNamespace wanted_;
    XmlReader& reader_;
    LimitedParser parser_;
    XmlPrefixes prefixes_;
    std::array<bool, kMostDepth + 1> keepsBlanks_{};  // of the open elements, by their depth
    int depth_ = 0;
    int leftOut_ = 0;              // the depth of the element that is left out; 0: none
    std::size_t bytesOfText_ = 0;  // since the last tag
    std::uint64_t pieces_ = 0;     // elements and pieces of text of this piece of input
    std::exception_ptr failure_;
};

}  // namespace

bool XmlPrefixes::Declare(int depth, std::string_view attribute, std::string_view value) {
    if (!attribute.starts_with(kDeclaration)) return true;
    std::string_view prefix = attribute.substr(kDeclaration.size());
    if (!prefix.empty() && prefix[0] != ':') return true;
    if (!prefix.empty()) prefix.remove_prefix(1);
    return Bind(prefix, MeaningOf(value), depth);
}

bool XmlPrefixes::Bind(std::string_view prefix, XmlNamespace meaning, int depth) {
    if (Of(prefix) == meaning) return true;
    if (bindings_.size() == kMostBindings) return false;
    bindings_.push_back({std::string(prefix), meaning, depth});
    withoutPrefix_ = Find({});
    return true;
}

void XmlPrefixes::Unbind(int depth) {
    while (!bindings_.empty() && bindings_.back().depth == depth) bindings_.pop_back();
    withoutPrefix_ = Find({});
}

XmlNamespace XmlPrefixes::Find(std::string_view prefix) const {
    const auto found = std::find_if(bindings_.rbegin(), bindings_.rend(),
                                    [prefix](const Binding& binding) { return binding.prefix == prefix; });
    return found == bindings_.rend() ? XmlNamespace::Other : found->meaning;
}

const char* XmlElement::Find(std::string_view attribute) const {
    for (const char* const* next = attributes; *next != nullptr; next += 2) {
        if (*next == attribute) return next[1];
    }
    return nullptr;
}

bool XmlElement::IsTrue(std::string_view attribute) const {
    const char* const value = Find(attribute);
    return value != nullptr && (std::string_view(value) == "1" || std::string_view(value) == "true");
}

const char* XmlElement::FindReference() const {
    for (const char* const* next = attributes; *next != nullptr; next += 2) {
        const QualifiedName qualified = Split(*next);
        if (qualified.prefix.empty() || qualified.local != "id") continue;
        if (prefixes->Of(qualified.prefix) == XmlNamespace::References) return next[1];
    }
    return nullptr;
}

void ReadXmlPart(Package& package, std::string_view part, XmlNamespace wanted, XmlReader& reader,
                 std::uint64_t mostBytes) {
    PartParser(package, part, wanted, reader).Run(mostBytes);
}

void CheckRoot(const XmlElement& element, std::string_view name) {
    if (element.name == name) return;
    throw PartFault{Fault::Damaged, u"its root element is not '" + ToUtf16(name) + u"'"};
}

}  // namespace NWorkbook::NXlsx

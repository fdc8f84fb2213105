#include "checks/header_meaning.h"

#include <algorithm>
#include <initializer_list>
#include <string>

#include "checks/characters.h"
#include "document/cell_text.h"

namespace NChecks {

namespace {

using Names = std::initializer_list<std::u16string_view>;

std::u16string Essence(std::u16string_view header) {
    std::u16string essence;
    for (const char16_t unit : header) {
        const char16_t upper = VSimpleXMLCreation::UpperCase(unit);
        if (IsDigit(upper) || (upper >= u'A' && upper <= u'Z')) essence.push_back(upper);
    }
    return essence;
}

bool IsOneOf(std::u16string_view essence, Names names) { return std::ranges::count(names, essence) > 0; }

bool BeginsWithOneOf(std::u16string_view essence, Names names) {
    return std::ranges::any_of(names, [&](std::u16string_view name) { return essence.starts_with(name); });
}

bool HasOneOf(std::u16string_view essence, Names names) {
    return std::ranges::any_of(
        names, [&](std::u16string_view name) { return essence.find(name) != std::u16string_view::npos; });
}

SecondClaim ClaimOfFmi(std::u16string_view essence) {
    if (essence == u"FMI") return SecondClaim::Exact;
    if (BeginsWithOneOf(essence, {u"FMI", u"FAILUREMODE"}) || essence == u"J1939FMI") {
        return SecondClaim::Clear;
    }
    return IsOneOf(essence, {u"FAULTMODE", u"FEHLERART", u"SYMPTOM", u"SUBTYPE"}) ? SecondClaim::Loose
                                                                                  : SecondClaim::None;
}

SecondClaim ClaimOfFailureType(std::u16string_view essence) {
    if (essence == u"FTB") return SecondClaim::Exact;
    if (BeginsWithOneOf(essence, {u"FTB", u"FAILURETYPE", u"FAULTTYPE", u"DTCFTB", u"SAEFTB"})) {
        return SecondClaim::Clear;
    }
    const bool isLoose = IsOneOf(essence, {u"FT", u"FTYPE", u"FAILUREBYTE", u"FEHLERART", u"FEHLERTYP",
                                           u"SUBTYPE", u"DTCSUBTYPE", u"LOWBYTE", u"DTCLOWBYTE"}) ||
                         BeginsWithOneOf(essence, {u"SYMPTOM", u"FAULTSYMPTOM", u"DTCSYMPTOM"});
    return isLoose ? SecondClaim::Loose : SecondClaim::None;
}

}  // namespace

DtcClaim ClaimOf(std::u16string_view header) {
    const std::u16string essence = Essence(header);
    if (IsOneOf(essence, {u"DTC", u"DTCS", u"SPN", u"BASEDTC", u"DTCBASE", u"BASISDTC", u"SAEDTC", u"DTCSAE",
                          u"SAECODE", u"SAEDTCCODE", u"DTCCODE", u"PCODE", u"OBDCODE", u"TROUBLECODE",
                          u"DIAGNOSTICTROUBLECODE"})) {
        return DtcClaim::Exact;
    }
    if (SaysSpn(header) ||
        IsOneOf(essence,
                {u"DTCNUMBER",   u"DTCNUMMER",    u"DTCNUM",    u"DTCNO",       u"DTCNR",      u"DTCID",
                 u"DTCHEX",      u"DTCDEC",       u"DTCVALUE",  u"CODE",        u"CODENUMBER", u"CODENO",
                 u"CODENR",      u"FAULTCODE",    u"ERRORCODE", u"FAILURECODE", u"FEHLERCODE", u"FAULTNUMBER",
                 u"ERRORNUMBER", u"FEHLERNUMMER", u"FEHLERNR",  u"FEHLERORT",   u"BASE"})) {
        return DtcClaim::Near;
    }
    return HasOneOf(essence, {u"DTC", u"CODE", u"SPN", u"TROUBLE"}) ? DtcClaim::Mention : DtcClaim::None;
}

bool SaysSpn(std::u16string_view header) {
    return IsOneOf(Essence(header), {u"SPN", u"SPNNUMBER", u"SPNNO", u"SPNNR", u"SPNNUMMER", u"SPNID",
                                     u"SPNDEC", u"SPNHEX", u"J1939SPN", u"SUSPECTPARAMETERNUMBER"});
}

bool SaysDescription(std::u16string_view header) {
    const std::u16string essence = Essence(header);
    const bool isReference = essence.ends_with(u"ID") || essence.ends_with(u"NR") || essence.ends_with(u"NO");
    return (HasOneOf(essence, {u"TEXT", u"DESCRIPTION", u"BESCHREIBUNG", u"BEZEICHNUNG"}) && !isReference) ||
           IsOneOf(essence, {u"DESC", u"TITLE", u"NAME", u"MEANING"});
}

bool SaysHexadecimal(std::u16string_view header) { return HasOneOf(Essence(header), {u"HEX", u"0X"}); }

SecondClaim SecondClaimOf(std::u16string_view header, SecondNumber number) {
    const std::u16string essence = Essence(header);
    return number == SecondNumber::Fmi ? ClaimOfFmi(essence) : ClaimOfFailureType(essence);
}

}  // namespace NChecks

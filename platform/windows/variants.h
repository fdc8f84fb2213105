// Values between the library's form and the system's.
#pragma once

#include "platform/automation.h"
#include "platform/windows/com.h"

namespace NPlatform {

// Fills an empty VARIANT. Throws OleException, with kTypeMismatch, for an array or an object.
void ToSystem(const Variant& value, VARIANT& result);

// Takes an array or an object out of the VARIANT. NULL, an object that is none and a text that is none become
// empty ones; numbers of types that the library does not know become doubles. Throws OleException, with
// kTypeMismatch, for other types and for arrays that have not two dimensions of variants.
Variant FromSystem(VARIANT& value);

}  // namespace NPlatform

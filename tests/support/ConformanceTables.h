#pragma once

#include "tests/support/Members.h"

// What the conformance test expects of a member beyond the rule for its type. A member is named
// "IInterface.Member".

/// How a new object answers a getter. By rule: 0, false, the zero date, the empty text, no object.
struct Default {
    enum Kind { Exactly, BeginsWith, LocalTime, UniversalTime, Refused };
    Kind kind;
    std::string value; ///< as Show gives it, or the text's beginning
};
Default DefaultOf(const std::string& member, VARTYPE type);

/// What a typed property of the log target answers while the target is of another type.
constexpr HRESULT wrongLogTargetType = static_cast<HRESULT>(0x800710DD);

/// Values across the range of a type.
std::vector<Variant> RangeOf(VARTYPE type);

/// What is stored when a value is put, as Show gives it.
std::string Stored(const std::string& member, const VARIANT& put);

/// Whether a value is one that the putter accepts.
bool IsAccepted(const std::string& member, const VARIANT& put);

/// Whether a child must not be null.
bool IsRequiredChild(const std::string& member);

/// What a method called on a new object with zeros and empty texts returns.
HRESULT MethodResult(const std::string& member);

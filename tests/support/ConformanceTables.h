#pragma once

#include "tests/support/Members.h"

// Expected behaviour of members that deviates from the rule for their type. Member names are
// "IInterface.Member".

/// A getter's value for a new object. The rule: 0, false, the zero date, the empty text, no object.
struct Default {
    enum Kind { Exactly, BeginsWith, LocalTime, UniversalTime, Refused };
    Kind kind;
    std::string value; ///< as from Show, or the beginning of the text
};
Default DefaultOf(const std::string& member, VARTYPE type);

/// The result of a log target's typed getter while the target has another type.
constexpr HRESULT WrongLogTargetType = static_cast<HRESULT>(0x800710DD);

/// Values across the range of a type.
std::vector<Variant> RangeOf(VARTYPE type);

/// The stored value after a put, as from Show.
std::string Stored(const std::string& member, const VARIANT& put);

/// Whether the putter accepts a value.
bool IsAccepted(const std::string& member, const VARIANT& put);

/// Whether a child must not be null.
bool IsRequiredChild(const std::string& member);

/// The result of a method on a new object, called with zeros and empty texts.
HRESULT MethodResult(const std::string& member);

#pragma once

#include "tests/support/Members.h"
#include "tests/support/Soak.h"

#include <memory>
#include <vector>

/// Source of the objects and texts in random arguments.
struct ArgumentSource {
    Random& random;
    /// Must outlive the arguments; may contain nulls.
    const std::vector<ComPtr<IDispatch>>& objects;
    /// A text for an XML property.
    std::wstring document;
};

/// The arguments of one late-bound call: any valid VARIANTs, matching the member or not. Owns what they point
/// to and frees it after the call, including values that the call stored.
class RandomArguments {
public:
    RandomArguments() = default;
    RandomArguments(const RandomArguments&) = delete;
    RandomArguments& operator=(const RandomArguments&) = delete;
    ~RandomArguments();

    /// Adds a value of any type.
    void AddAny(ArgumentSource& source);
    /// Adds a value of the parameter's type.
    void AddFitting(ArgumentSource& source, const Parameter& parameter);

    /// In the order of IDispatch::Invoke: the last argument first.
    std::vector<VARIANT>& Values();

private:
    void AddByReference(const VARIANT& value);

    /// The target of a reference. A callee may overwrite the text or object without freeing the original, so
    /// both are kept.
    struct Place {
        VARIANT original;
        VARIANT current;
    };
    std::vector<VARIANT> m_values;
    std::vector<std::unique_ptr<Place>> m_places;
};

#pragma once

#include "tests/support/Members.h"
#include "tests/support/Soak.h"

#include <memory>
#include <vector>

/// Where random arguments take their objects and texts from.
struct ArgumentSource {
    Random& random;
    /// Lives as long as the arguments; may hold nulls.
    const std::vector<ComPtr<IDispatch>>& objects;
    /// A text for an XML property.
    std::wstring document;
};

/// The arguments of one late-bound call: anything that a client may pass, whether it fits or not. All that
/// they point to is valid memory of the type that they say, and is theirs: it is freed after the call, with
/// what the call has put there.
class RandomArguments {
public:
    RandomArguments() = default;
    RandomArguments(const RandomArguments&) = delete;
    RandomArguments& operator=(const RandomArguments&) = delete;
    ~RandomArguments();

    /// A value of any type.
    void AddAny(ArgumentSource& source);
    /// A value that fits the parameter.
    void AddFitting(ArgumentSource& source, const Parameter& parameter);

    /// In the order of IDispatch::Invoke, the last one first.
    std::vector<VARIANT>& Values();

private:
    void AddByReference(const VARIANT& value);

    /// What a reference points to. A callee may put another text or object in place of the one that is there,
    /// which it does not free.
    struct Place {
        VARIANT original;
        VARIANT current;
    };
    std::vector<VARIANT> m_values;
    std::vector<std::unique_ptr<Place>> m_places;
};

#pragma once

#include "tests/support/Soak.h"

#include <string>
#include <vector>

/// Makes damaged documents out of the golden ones. A document depends on the seed and its number alone, so
/// that one that failed can be made again.
class DocumentMutator {
public:
    explicit DocumentMutator(std::uint32_t seed);

    std::wstring Document(int number) const;

private:
    std::uint32_t m_seed;
    std::vector<std::wstring> m_originals;
};

/// The document with another root element, so that more than one class reads on behind it.
std::wstring WithRoot(const std::wstring& document, const wchar_t* root);

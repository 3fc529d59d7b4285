#pragma once

#include "tests/support/Soak.h"

#include <string>
#include <vector>

/// Damages the golden documents. A document depends only on seed and number, so failures can be reproduced.
class DocumentMutator {
public:
    explicit DocumentMutator(std::uint32_t seed);

    std::wstring Document(int number) const;

private:
    std::uint32_t m_seed;
    std::vector<std::wstring> m_originals;
};

/// The document with another root element, so that more than one class reads past the root.
std::wstring WithRoot(const std::wstring& document, const wchar_t* root);

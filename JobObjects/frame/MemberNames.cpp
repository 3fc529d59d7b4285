#include "MemberNames.h"

#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"

#include <algorithm>

namespace {

constexpr unsigned CaseBit = 0x20;

bool IsLetter(wchar_t c) noexcept {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

/// Lower-cases a letter; meaningless for other characters.
std::size_t Folded(wchar_t c) noexcept {
    return static_cast<std::size_t>(c) | CaseBit;
}

/// Uses the length and three letters; hashing every letter would slow long names down. With these factors, 6
/// of the library's 189 names collide.
std::size_t Hash(std::wstring_view name) noexcept {
    return 31 * name.size() + 3 * Folded(name.front()) + 17 * Folded(name[name.size() / 2]) +
           41 * Folded(name.back());
}

/// Ignores case: known consists of letters, whose cases differ in one bit.
bool IsSameName(std::wstring_view known, std::wstring_view name) noexcept {
    if (known.size() != name.size())
        return false;
    unsigned difference = 0; // no early exit, so that the compiler vectorises the loop
    for (std::size_t i = 0; i < known.size(); ++i)
        difference |= static_cast<unsigned>(known[i] ^ name[i]);
    return (difference & ~CaseBit) == 0;
}

UniqueBstr MemberName(ITypeInfo& info, UINT index) {
    FUNCDESC* function = nullptr;
    ThrowIfFailed(info.GetFuncDesc(index, &function));
    const MEMBERID id = function->memid;
    info.ReleaseFuncDesc(function);
    UniqueBstr name;
    UINT count = 0;
    ThrowIfFailed(info.GetNames(id, name.Put(), 1, &count));
    return name;
}

UINT MemberCount(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    ThrowIfFailed(info.GetTypeAttr(&attributes));
    const UINT count = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    return count;
}

} // namespace

MemberNames::MemberNames(ITypeInfo& info) {
    const UINT count = MemberCount(info);
    std::size_t size = 4;
    while (size < 4 * std::size_t{count})
        size *= 2;
    m_slots.resize(size);
    for (UINT index = 0; index < count; ++index) {
        const UniqueBstr name = MemberName(info, index);
        LPOLESTR text = name.Get();
        DISPID id = DISPID_UNKNOWN;
        ThrowIfFailed(info.GetIDsOfNames(&text, 1, &id));
        Add(name.View(), id);
    }
}

void MemberNames::Add(std::wstring_view name, DISPID id) {
    if (name.empty() || !std::all_of(name.begin(), name.end(), IsLetter))
        return;
    Slot& slot = m_slots[SlotOf(name)];
    if (slot.name.empty())
        slot = {name, id};
}

std::size_t MemberNames::SlotOf(std::wstring_view name) const noexcept {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = Hash(name) & mask;
    while (!m_slots[slot].name.empty() && !IsSameName(m_slots[slot].name, name))
        slot = (slot + 1) & mask;
    return slot;
}

const DISPID* MemberNames::Find(const wchar_t* name) const noexcept {
    std::size_t length = 0;
    while (name[length]) // faster than wcslen for short names
        ++length;
    if (length == 0)
        return nullptr;
    const Slot& slot = m_slots[SlotOf({name, length})];
    return slot.name.empty() ? nullptr : &slot.id;
}

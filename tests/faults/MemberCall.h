#pragma once

#include "FaultLoop.h"

#include "tests/support/Library.h"
#include "tests/support/Members.h"

#include <memory>
#include <optional>

// Objects in a known state, calls of their members with valid arguments, and the members' special results.

struct XmlResult {
    HRESULT result = S_OK;
    std::wstring text;
};

/// Creates objects of one class.
class RecordMaker {
public:
    enum State { New, Filled };

    RecordMaker(const Library& library, const LibraryClass& of, const std::vector<Member>& members,
                State state);

    const LibraryClass& Class() const { return m_class; }
    ComPtr<IDispatch> Make() const;
    XmlResult XmlOf(IDispatch* object) const;

private:
    const Library& m_library;
    const LibraryClass& m_class;
    const State m_state;
    const Member* m_getXml = nullptr;
    const Member* m_putXml = nullptr;
};

/// One call of a member through the vtable. Owns the arguments and out-values.
class MemberCall {
public:
    MemberCall(const Member& member, const std::string& name);
    ~MemberCall();
    MemberCall(const MemberCall&) = delete;
    MemberCall& operator=(const MemberCall&) = delete;

    HRESULT Make(IDispatch* object);
    /// The out-values of a successful call as text. Dates and XML, which contain the current time, appear as
    /// their type only.
    std::vector<std::string> Values() const;
    /// Checks the out-values of a failed call: null, zero or unchanged.
    void CheckOutValuesAreCleared() const;

private:
    void FreeOutValues();

    const Member& m_member;
    std::vector<Variant> m_values;
    std::vector<VARIANT> m_places;
    HRESULT m_result = E_FAIL;
};

/// Whether a failure may leave the object partly changed: reading and generating are not transactional.
bool MayStopHalfway(const std::string& name, const Member& member);

/// Whether the member succeeds despite the failure.
bool IsAbsorbed(const std::string& name, const FaultRun& run);

/// The HRESULT that the member returns instead of the failure's own.
std::optional<HRESULT> OwnResult(const std::string& name, const FaultRun& run);

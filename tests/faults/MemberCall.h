#pragma once

#include "FaultLoop.h"

#include "tests/support/Library.h"
#include "tests/support/Members.h"

#include <memory>
#include <optional>

// Objects in a known state, calls of their members with sensible arguments, and what the records say about a
// failure in them.

struct XmlResult {
    HRESULT result = S_OK;
    std::wstring text;
};

/// Makes objects of one class.
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

/// One call of a member through its slot, with its arguments and the places of its out-values.
class MemberCall {
public:
    MemberCall(const Member& member, const std::string& name);
    ~MemberCall();
    MemberCall(const MemberCall&) = delete;
    MemberCall& operator=(const MemberCall&) = delete;

    HRESULT Make(IDispatch* object);
    /// The out-values as text, after a success. A time that a record took is shown as a date alone.
    std::vector<std::string> Values() const;
    /// After a failure: null, zero, or what the caller had put there.
    void CheckOutValuesAreCleared() const;

private:
    void FreeOutValues();

    const Member& m_member;
    std::vector<Variant> m_values;
    std::vector<VARIANT> m_places;
    HRESULT m_result = E_FAIL;
};

/// Whether a failure may leave the object between its old and its new state: reading is not transactional.
bool MayStopHalfway(const std::string& name, const Member& member);

/// Whether the member does without what failed.
bool IsAbsorbed(const std::string& name, const FaultRun& run);

/// The HRESULT that a member gives for a failure in place of the failure's own.
std::optional<HRESULT> OwnResult(const std::string& name, const FaultRun& run);

#include "FaultLoop.h"
#include "MemberCall.h"

#include "tests/support/ConformanceTables.h"
#include "tests/support/Library.h"
#include "tests/support/ProcessCounters.h"
#include "tests/support/TypeLibraryWalk.h"

#include <cstdio>

// Every member of every interface, on a new and on a filled object: each call it makes fails once.

namespace {

/// Calls one member repeatedly on objects in the same state.
class MemberFaults {
public:
    MemberFaults(const RecordMaker& maker, const Member& member)
        : m_maker(maker),
          m_member(member),
          m_name("I" + maker.Class().name + "." + member.name),
          m_mayStopHalfway(MayStopHalfway(m_name, member)) {}

    std::size_t Run(FaultMode mode) {
        INFO(m_name << (m_member.kind == INVOKE_PROPERTYPUT ? " put" : ""));
        LearnExpected();
        RunAll(mode); // COM and the library allocate on the first failure
        const ProcessCounters before = ProcessCounters::Now();
        const std::size_t runs = RunAll(mode);
        const ProcessCounters after = ProcessCounters::Now();
        INFO(Growth(before, after));
        constexpr int cached = 8; // blocks that Wine 10's heap keeps
        CHECK_NO_GROWTH(before, after, static_cast<int>(runs) + cached);
        return runs;
    }

private:
    void LearnExpected() {
        m_object = m_maker.Make();
        m_call = std::make_unique<MemberCall>(m_member, m_name);
        m_expected = m_call->Make(m_object.Get());
        m_expectedValues = m_call->Values();
        CleanUp();
    }

    std::size_t RunAll(FaultMode mode) {
        return FailEachCall(mode, {[this] { Prepare(); }, [this] { return m_call->Make(m_object.Get()); },
                                   [this](const FaultRun& run) { Check(run); }, [this] { CleanUp(); }});
    }

    void Prepare() {
        m_object = m_maker.Make();
        m_before = m_maker.XmlOf(m_object.Get());
        m_call = std::make_unique<MemberCall>(m_member, m_name);
    }

    void Check(const FaultRun& run) {
        if (!run.struck || !IsAbsorbed(m_name, run))
            CheckMemberResult(run);
        if (SUCCEEDED(run.result))
            CHECK(m_call->Values() == m_expectedValues);
        else
            m_call->CheckOutValuesAreCleared();
        const XmlResult after = m_maker.XmlOf(m_object.Get());
        if (!m_mayStopHalfway)
            CHECK_HR(after.result, S_OK);
        MemberCall retry(m_member, m_name);
        CHECK_HR(retry.Make(m_object.Get()), m_expected);
        CHECK(retry.Values() == m_expectedValues);
        const XmlResult last = m_maker.XmlOf(m_object.Get());
        CHECK_HR(last.result, S_OK);
        if (!m_mayStopHalfway && after.text != m_before.text)
            CHECK(after.text == last.text); // entirely the new state or entirely the old
    }

    void CheckMemberResult(const FaultRun& run) {
        if (run.struck && run.result == OwnResult(m_name, run))
            return;
        CheckResult(run, m_expected);
    }

    void CleanUp() {
        m_call.reset();
        m_object = {};
        SetErrorInfo(0, nullptr);
    }

    const RecordMaker& m_maker;
    const Member& m_member;
    const std::string m_name;
    const bool m_mayStopHalfway;
    HRESULT m_expected = S_OK;
    std::vector<std::string> m_expectedValues;
    ComPtr<IDispatch> m_object;
    XmlResult m_before;
    std::unique_ptr<MemberCall> m_call;
};

/// Triggers the library's permanent allocations: the first failure and the first catalogue lookup.
void WarmUp() {
    const auto contents = CreateJobContents();
    CHECK_HR(Put(contents, &IJobContents::put_Xml, L"<wrong/>"), E_FAIL);
    CHECK(Value(contents, &IJobContents::get_DBPdl) == 1);
}

std::size_t FailInEveryMember(const Library& library, RecordMaker::State state, FaultMode mode) {
    constexpr std::size_t published = 329; // the same count as in the type library's test
    ComPtr<ITypeLib> types;
    REQUIRE_HR(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, types.Put()), S_OK);
    std::size_t runs = 0, covered = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        const ComPtr<ITypeInfo> dispatchView = typeNamed(*types.Get(), "I" + each.name);
        const std::vector<Member> members = MembersOf(*vtableView(*dispatchView.Get()).Get());
        const RecordMaker maker(library, each, members, state);
        for (const Member& member : members) {
            runs += MemberFaults(maker, member).Run(mode);
            ++covered;
            CHECK_HR(library.CanUnloadNow(), S_OK);
        }
    }
    CHECK(covered == published);
    return runs;
}

} // namespace

TEST_CASE("Faults_in_every_member_are_survived") {
    FaultInjector::Watch();
    SwitchTextCacheOff();
    const Library library;
    WarmUp();
    PrintInjected("members, filled object, one call",
                  FailInEveryMember(library, RecordMaker::Filled, FaultMode::One));
    if (!RunsEverything())
        return;
    PrintInjected("members, filled object, all later calls too",
                  FailInEveryMember(library, RecordMaker::Filled, FaultMode::AllFrom));
    PrintInjected("members, new object, one call",
                  FailInEveryMember(library, RecordMaker::New, FaultMode::One));
    PrintInjected("members, new object, all later calls too",
                  FailInEveryMember(library, RecordMaker::New, FaultMode::AllFrom));
}

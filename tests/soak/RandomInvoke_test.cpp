#include "DocumentMutator.h"
#include "RandomArguments.h"
#include "RecordClasses.h"
#include "Watchdog.h"

#include "tests/support/ProcessCounters.h"
#include "tests/support/TypeLibraryWalk.h"

#include <algorithm>
#include <cstdio>
#include <map>

// Random late-bound calls, valid or not. SOAK_INVOKES and SOAK_SEED change the run.

namespace {

/// Permitted results of a late-bound call, from the library or from the type information.
const HRESULT ProperResults[] = {S_OK,
                                 E_POINTER,
                                 E_INVALIDARG,
                                 E_NOINTERFACE,
                                 E_NOTIMPL,
                                 DISP_E_BADCALLEE,
                                 DISP_E_BADPARAMCOUNT,
                                 DISP_E_BADVARTYPE,
                                 DISP_E_EXCEPTION,
                                 DISP_E_MEMBERNOTFOUND,
                                 DISP_E_NONAMEDARGS,
                                 DISP_E_NOTACOLLECTION,
                                 DISP_E_OVERFLOW,
                                 DISP_E_PARAMNOTFOUND,
                                 DISP_E_PARAMNOTOPTIONAL,
                                 DISP_E_TYPEMISMATCH,
                                 DISP_E_UNKNOWNINTERFACE,
                                 DISP_E_UNKNOWNNAME};
/// Permitted failures of the members.
const HRESULT ProperFailures[] = {E_FAIL, E_POINTER, E_INVALIDARG, E_NOINTERFACE,
                                  HRESULT_FROM_WIN32(ERROR_INVALID_OPERATION)};

template<class Range>
bool Contains(const Range& range, HRESULT result) {
    return std::find(std::begin(range), std::end(range), result) != std::end(range);
}

struct Subject {
    const RecordClass& recordClass;
    std::vector<Member> members;
};

std::vector<Subject> MakeSubjects() {
    std::vector<Subject> subjects;
    for (const RecordClass& each : RecordClasses()) {
        ComPtr<ITypeInfo> dispatchView;
        REQUIRE_HR(CreateRecord(each)->GetTypeInfo(0, LOCALE_USER_DEFAULT, dispatchView.Put()), S_OK);
        subjects.push_back({each, MembersOf(*vtableView(*dispatchView.Get()).Get())});
    }
    return subjects;
}

/// A get with arguments that returns an object continues with the object's default member. Wine's type
/// information crashes there if the object is null, so such calls are excluded.
bool GivesObject(const Subject& subject, DISPID id) {
    return std::any_of(subject.members.begin(), subject.members.end(), [id](const Member& member) {
        return member.id == id && member.kind == INVOKE_PROPERTYGET &&
               member.parameters[0].type == VT_DISPATCH;
    });
}

class Caller {
public:
    enum Kind {
        Fitting, ///< existing members with the right number of arguments
        Any      ///< also every kind of wrong call
    };

    explicit Caller(std::uint32_t seed) : m_random(seed), m_documents(seed), m_subjects(MakeSubjects()) {
        // One object per class, and a null.
        m_objects.resize(m_subjects.size() + 1);
        // Allocates all entries now, because the heap is compared later.
        for (const HRESULT result : ProperResults)
            m_results[result] = 0;
    }

    void MakeCalls(int count, Kind kind, Watchdog& watchdog);
    const std::map<HRESULT, int>& Results() const { return m_results; }

private:
    void CallMember(IDispatch* object, const Subject& subject, Kind kind);
    void CallAnything(IDispatch* object, const Subject& subject);
    void AskForNames(IDispatch* object, const Subject& subject);
    void Invoke(IDispatch* object, DISPID id, WORD flags, RandomArguments& arguments, UINT named);
    void Note(HRESULT result);
    ArgumentSource Source() { return {m_random, m_objects, m_documents.Document(m_callNumber)}; }

    Random m_random;
    DocumentMutator m_documents;
    std::vector<Subject> m_subjects;
    std::vector<ComPtr<IDispatch>> m_objects;
    std::map<HRESULT, int> m_results;
    int m_callNumber = 0;
};

void Caller::Note(HRESULT result) {
    ++m_results[result];
    if (!Contains(ProperResults, result))
        FAIL_CHECK("the call returns " << Hex(result));
}

void Caller::Invoke(IDispatch* object, DISPID id, WORD flags, RandomArguments& arguments, UINT named) {
    std::vector<VARIANT>& values = arguments.Values();
    std::vector<DISPID> names{DISPID_PROPERTYPUT};
    while (names.size() < named)
        names.push_back(static_cast<DISPID>(m_random.Below(12)));
    DISPPARAMS parameters{values.data(), names.data(), static_cast<UINT>(values.size()), named};
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    UINT badArgument = 0;
    const bool wantsResult = !m_random.OneIn(8), wantsException = !m_random.OneIn(8);
    const HRESULT invoked = object->Invoke(
        id, m_random.OneIn(64) ? IID_IDispatch : IID_NULL, m_random.OneIn(8) ? m_random.Next() : 0x0409,
        flags, &parameters, wantsResult ? &result : nullptr, wantsException ? &exception : nullptr,
        m_random.OneIn(8) ? nullptr : &badArgument);
    Note(invoked);
    if (wantsException && invoked == DISP_E_EXCEPTION && !Contains(ProperFailures, exception.scode))
        FAIL_CHECK("the exception has the code " << Hex(exception.scode));
    if (VariantClear(&result) != S_OK)
        FAIL_CHECK("the result is not a valid VARIANT");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

/// Calls an existing member with matching or nearly matching arguments.
void Caller::CallMember(IDispatch* object, const Subject& subject, Kind kind) {
    const Member& member = m_random.Of(subject.members);
    const bool isWrong = kind == Any && m_random.OneIn(8) && !GivesObject(subject, member.id);
    ArgumentSource source = Source();
    RandomArguments arguments;
    for (const Parameter& parameter : member.parameters) {
        if (parameter.isResult || (isWrong && m_random.OneIn(4)))
            continue;
        // A property's new value may be of any type, because it is converted if possible.
        if (m_random.OneIn(8) && (isWrong || member.parameters.size() == 1))
            arguments.AddAny(source);
        else
            arguments.AddFitting(source, parameter);
    }
    if (isWrong && m_random.OneIn(4))
        arguments.AddAny(source);
    WORD flags = static_cast<WORD>(member.kind);
    if (isWrong && m_random.OneIn(4))
        flags = static_cast<WORD>(flags | m_random.Below(16));
    Invoke(object, member.id, flags, arguments, member.kind == INVOKE_PROPERTYPUT && !isWrong ? 1 : 0);
}

/// Calls any DISPID with any number of any arguments.
void Caller::CallAnything(IDispatch* object, const Subject& subject) {
    const DISPID oddIds[] = {0, -1, -3, -4, -5, -500, 99999, static_cast<DISPID>(0x80000000), 0x7FFFFFFF};
    const DISPID id = m_random.OneIn(4) ? m_random.Of(oddIds) : static_cast<DISPID>(m_random.Below(80));
    const WORD flags =
        m_random.OneIn(16) ? static_cast<WORD>(m_random.Next()) : static_cast<WORD>(m_random.Below(16));
    const bool hasArguments = (flags & DISPATCH_PROPERTYGET) == 0 || !GivesObject(subject, id);
    const UINT count = hasArguments ? m_random.Below(m_random.OneIn(8) ? 40 : 10) : 0;
    ArgumentSource source = Source();
    RandomArguments arguments;
    for (UINT i = 0; i < count; ++i)
        arguments.AddAny(source);
    Invoke(object, id, flags, arguments, m_random.OneIn(2) ? 0 : m_random.Below(count + 1));
}

void Caller::AskForNames(IDispatch* object, const Subject& subject) {
    std::vector<std::wstring> texts;
    for (UINT i = m_random.Below(3) + 1; i > 0; --i) {
        const std::string& name = m_random.Of(subject.members).name;
        texts.emplace_back(name.begin(), name.end());
        if (m_random.OneIn(2))
            texts.back()[m_random.Below(texts.back().size())] ^=
                static_cast<wchar_t>(1u << m_random.Below(16));
    }
    std::vector<LPOLESTR> names;
    names.reserve(texts.size());
    for (std::wstring& text : texts)
        names.push_back(text.data());
    std::vector<DISPID> ids(names.size(), 4711);
    Note(object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0x0409, ids.data()));
}

void Caller::MakeCalls(int count, Kind kind, Watchdog& watchdog) {
    for (int i = 0; i < count; ++i, ++m_callNumber) {
        const std::size_t chosen = m_random.Below(m_subjects.size());
        const Subject& subject = m_subjects[chosen];
        watchdog.Step(m_callNumber, subject.recordClass.name);
        INFO("call " << m_callNumber << " of " << Narrow(subject.recordClass.name));
        if (!m_objects[chosen] || m_random.OneIn(200))
            m_objects[chosen] = CreateRecord(subject.recordClass);
        const ComPtr<IDispatch> object = m_objects[chosen];
        const std::uint32_t way = m_random.Below(16);
        if (way == 0)
            AskForNames(object.Get(), subject);
        else if (way < 6 && kind == Any)
            CallAnything(object.Get(), subject);
        else
            CallMember(object.Get(), subject, kind);
    }
    std::fill(m_objects.begin(), m_objects.end(), ComPtr<IDispatch>());
    SetErrorInfo(0, nullptr);
}

void ShowResults(const std::map<HRESULT, int>& results) {
    for (const auto& [result, times] : results)
        if (times > 0)
            std::printf("%s %d times\n", Hex(result).c_str(), times);
}

} // namespace

TEST_CASE("Invoke_of_every_class_survives_any_arguments") {
    const int count = SoakCount("SOAK_INVOKES", 10000);
    const auto seed = static_cast<std::uint32_t>(SoakCount("SOAK_SEED", 20260));
    Watchdog watchdog("random calls", seed);
    Caller caller(seed);
    // COM and the system allocate on first use.
    caller.MakeCalls(2000, Caller::Any, watchdog);
    REQUIRE_HR(AskLibraryToUnload(), S_OK);
    const ProcessCounters before = ProcessCounters::Now();
    caller.MakeCalls(count / 2, Caller::Fitting, watchdog);
    const ProcessCounters between = ProcessCounters::Now();
    CHECK_HR(AskLibraryToUnload(), S_OK);
    caller.MakeCalls(count - count / 2, Caller::Any, watchdog);
    const ProcessCounters after = ProcessCounters::Now();
    CHECK_HR(AskLibraryToUnload(), S_OK);

    std::printf("%d calls of seed %lu\n", count, static_cast<unsigned long>(seed));
    ShowResults(caller.Results());
    std::printf("fitting calls: %s\nany calls: %s\n", Growth(before, between).c_str(),
                Growth(between, after).c_str());
    CHECK_NO_GROWTH(before, between, count / 2);
    // The process's heap is not compared: Wine's type information leaks converted arguments of refused calls.
    CHECK(after.library.blocks <= between.library.blocks);
    CHECK(after.handles <= between.handles);
    CHECK(after.tlsSlots <= between.tlsSlots);
    for (const HRESULT expected : {S_OK, DISP_E_EXCEPTION, DISP_E_TYPEMISMATCH, DISP_E_MEMBERNOTFOUND})
        CHECK(caller.Results().at(expected) > 0);
}

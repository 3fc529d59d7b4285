#include "RecordClasses.h"

#include "tests/support/ProcessCounters.h"
#include "tests/support/Soak.h"
#include "tests/support/Wine.h"

#include <cstdio>
#include <functional>

// Documents larger than any client's: they are read, or fail with out of memory, and the object remains
// usable. SOAK_MEGABYTES and SOAK_DEPTH change the sizes.

namespace {

constexpr std::size_t PaperDigits = 8;

/// Each copy line has its own paper size, because equal ones would be merged.
std::wstring CopyLine(std::size_t number) {
    std::wstring paper = std::to_wstring(number);
    paper.insert(0, PaperDigits - paper.size(), L'0');
    return L"<CopyLine><PaperSize>P" + paper +
           L"</PaperSize><PaperDimensions>2100,2970</PaperDimensions><Attributes>Duplex,B&amp;W</Attributes>"
           L"<Sheets>12</Sheets><PagesBW>24</PagesBW><PagesColor>0</PagesColor><PagesBlank>0</PagesBlank></"
           L"CopyLine>";
}

struct Form {
    const wchar_t* className;
    std::wstring begin;
    std::wstring end;
};
const Form CopyLinesForm{L"CopyLines", L"<JobCopyLines>", L"</JobCopyLines>"};
const Form JobContentsForm{L"JobContents", L"<JobContents Version=\"4.0\"><JobCopyLines>",
                           L"</JobCopyLines><JobOriginals>3</JobOriginals></JobContents>"};

const RecordClass& ClassNamed(std::wstring_view name) {
    for (const RecordClass& each : RecordClasses())
        if (each.name == name)
            return each;
    throw std::out_of_range("no such class");
}

/// A document of about this many bytes, full of copy lines.
UniqueBstr DocumentOf(const Form& form, std::size_t bytes) {
    const std::size_t lines = bytes / sizeof(wchar_t) / CopyLine(0).size();
    const std::size_t size = form.begin.size() + lines * CopyLine(0).size() + form.end.size();
    UniqueBstr document;
    *document.Put() = SysAllocStringLen(nullptr, static_cast<UINT>(size));
    REQUIRE(document.Get() != nullptr);
    wchar_t* at = document.Get();
    const auto append = [&](const std::wstring& piece) { at = std::copy(piece.begin(), piece.end(), at); };
    append(form.begin);
    for (std::size_t i = 0; i < lines; ++i)
        append(CopyLine(i));
    append(form.end);
    return document;
}

/// During its lifetime, reserves the free address space in blocks of 1 MiB, except `left` of them. For 64-bit
/// programs, Linux limits the number of blocks; on Windows they have memory left.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t left) {
        m_blocks.reserve(MostBlocks); // growing would need memory
        while (m_blocks.size() < MostBlocks) {
            void* const block = VirtualAlloc(nullptr, BlockSize, MEM_RESERVE, PAGE_NOACCESS);
            if (!block)
                break;
            m_blocks.push_back(block);
        }
        for (; left > 0 && !m_blocks.empty(); --left)
            GiveOneBack();
    }
    ~ScarceMemory() {
        while (!m_blocks.empty())
            GiveOneBack();
    }
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

private:
    static constexpr std::size_t BlockSize = 1 << 20;
    static constexpr std::size_t MostBlocks = 1 << 17;

    void GiveOneBack() {
        VirtualFree(m_blocks.back(), 0, MEM_RELEASE);
        m_blocks.pop_back();
    }

    std::vector<void*> m_blocks;
};

/// Checks that the object reads a small document and writes it.
void CheckUsable(const RecordClass& of, const Form& form, IUnknown* record) {
    const UniqueBstr text(form.begin + CopyLine(1) + form.end);
    UniqueBstr own;
    CHECK_HR(of.putXml(record, text.Get()), S_OK);
    CHECK_HR(of.getXml(record, own.Put()), S_OK);
    CHECK(own.View().find(L"<Sheets>12</Sheets>") != std::wstring_view::npos);
}

/// Puts the document and gets it back. Either may run out of memory.
void PutAndGet(const RecordClass& of, IUnknown* record, const UniqueBstr& document) {
    const DWORD start = GetTickCount();
    const HRESULT put = of.putXml(record, document.Get());
    const DWORD middle = GetTickCount();
    UniqueBstr own;
    const HRESULT got = of.getXml(record, own.Put());
    std::printf("%ls of %u bytes: put %s in %lu ms, get %s in %lu ms, %zu characters\n", of.name,
                SysStringByteLen(document.Get()), Hex(put).c_str(),
                static_cast<unsigned long>(middle - start), Hex(got).c_str(),
                static_cast<unsigned long>(GetTickCount() - middle), own.View().size());
    CHECK((put == S_OK || put == E_OUTOFMEMORY));
    CHECK((got == S_OK || got == E_OUTOFMEMORY));
    CHECK((own.Get() != nullptr) == (got == S_OK));
    // No line is lost.
    if (put == S_OK && got == S_OK)
        CHECK(own.View().size() >= SysStringLen(document.Get()));
}

void CheckLargeDocument(const Form& form, std::size_t bytes) {
    const RecordClass& of = ClassNamed(form.className);
    const auto record = CreateRecord(of);
    PutAndGet(of, record.Get(), DocumentOf(form, bytes));
    CheckUsable(of, form, record.Get());
}

struct SmallThread {
    const std::function<void()>& work;
    bool done = false;
};

DWORD WINAPI RunSmallThread(void* argument) {
    SmallThread& thread = *static_cast<SmallThread*>(argument);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 1;
    thread.work();
    thread.done = true;
    SetErrorInfo(0, nullptr);
    CoUninitialize();
    return 0;
}

/// Runs the work in a new apartment on a thread with this stack. It may assert, because the caller waits.
void RunOnSmallStack(SIZE_T stack, const std::function<void()>& work) {
    SmallThread thread{work};
    const HANDLE handle =
        CreateThread(nullptr, stack, RunSmallThread, &thread, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    REQUIRE(handle != nullptr);
    REQUIRE(WaitForSingleObject(handle, 300000) == WAIT_OBJECT_0);
    CloseHandle(handle);
    REQUIRE(thread.done);
}

/// The record's XML with this many nested elements after its start tag.
UniqueBstr DeepDocument(const RecordClass& of, IUnknown* record, std::size_t depth) {
    UniqueBstr own;
    REQUIRE_HR(of.getXml(record, own.Put()), S_OK);
    const std::size_t start = own.View().find(L'>') + 1;
    std::wstring text(own.View().substr(0, start));
    text.reserve(own.View().size() + depth * 7);
    for (std::size_t i = 0; i < depth; ++i)
        text += L"<a>";
    for (std::size_t i = 0; i < depth; ++i)
        text += L"</a>";
    text += own.View().substr(start);
    return UniqueBstr(text);
}

} // namespace

TEST_CASE("Xml_of_a_hundred_megabytes_is_read_or_fails_with_out_of_memory") {
    const auto bytes = static_cast<std::size_t>(SoakCount("SOAK_MEGABYTES", 4)) * 1000000;
    for (const Form* form : {&CopyLinesForm, &JobContentsForm}) {
        CheckLargeDocument(*form, 1000000); // COM and the system keep what they load on first use
        const ProcessCounters before = ProcessCounters::Now();
        CheckLargeDocument(*form, bytes);
        const ProcessCounters after = ProcessCounters::Now();
        CHECK_NO_GROWTH(before, after, static_cast<int>(bytes / 1000)); // fewer than the lines;
    }
}

TEST_CASE("Xml_beyond_the_free_memory_fails_with_out_of_memory_and_leaves_the_object_usable") {
    const RecordClass& of = ClassNamed(CopyLinesForm.className);
    const auto record = CreateRecord(of);
    CheckUsable(of, CopyLinesForm, record.Get());
    const UniqueBstr document = DocumentOf(CopyLinesForm, 32000000);
    int refused = 0, taken = 0;
    for (const std::size_t left : {8u, 40u, 80u, 400u}) {
        INFO("with " << left << " MiB");
        HRESULT put = E_UNEXPECTED;
        {
            const ScarceMemory scarce(left);
            put = of.putXml(record.Get(), document.Get());
        }
        ++(put == E_OUTOFMEMORY ? refused : taken);
        if (put != S_OK)
            CHECK_HR(put, E_OUTOFMEMORY);
        CheckUsable(of, CopyLinesForm, record.Get());
    }
    SetErrorInfo(0, nullptr);
    if (sizeof(void*) == 4 || RunsUnderWine())
        CHECK(refused > 0);
    CHECK(taken > 0);
}

TEST_CASE("Xml_of_any_depth_is_read_by_every_class_on_a_stack_of_256_KB") {
    const auto depth = static_cast<std::size_t>(SoakCount("SOAK_DEPTH", 100000));
    RunOnSmallStack(256 * 1024, [depth] {
        for (const RecordClass& each : RecordClasses()) {
            INFO(Narrow(each.name));
            const auto record = CreateRecord(each);
            const UniqueBstr text = DeepDocument(each, record.Get(), depth);
            const DWORD start = GetTickCount();
            CHECK_HR(each.putXml(record.Get(), text.Get()), S_OK);
            UniqueBstr own;
            CHECK_HR(each.getXml(record.Get(), own.Put()), S_OK);
            std::printf("%ls with %zu nested elements: %lu ms\n", each.name, depth,
                        static_cast<unsigned long>(GetTickCount() - start));
        }
    });
}

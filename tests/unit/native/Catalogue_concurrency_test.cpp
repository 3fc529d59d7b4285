#include "../CatalogueStub.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <catch2/catch.hpp>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

void RunInThreads(int count, const std::function<void(int)>& body) {
    std::atomic<int> waiting = count;
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        threads.emplace_back([&, i] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            body(i);
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

TEST_CASE("EnsureLoaded_first_use_by_several_threads_reads_once") {
    for (int round = 0; round < 50; ++round) {
        CatalogueStub file(CatalogueStub::DefaultText());
        JobAttributeCatalogue catalogue;
        std::atomic<int> right = 0;
        RunInThreads(4, [&](int) {
            if (catalogue.PaperDbIdFromName(L"Letter") == 2 &&
                catalogue.AttributeNamesFromMask(2) == L"Duplex" && catalogue.PdlNameFromDbId(1) == L"PCL")
                ++right;
        });
        CHECK(right == 4);
        CHECK(file.Reads() == 1);
    }
}

TEST_CASE("EnsureLoaded_repeated_failing_loads_never_expose_a_partial_table") {
    const std::wstring whole = CatalogueStub::DefaultText();
    // Without the last section every call loads again.
    CatalogueStub file(whole.substr(0, whole.find(L"<Pdls>")) + L"</JobAttributes>");
    JobAttributeCatalogue catalogue;
    std::atomic<int> wrong = 0;
    RunInThreads(4, [&](int thread) {
        for (int i = 0; i < 50; ++i) {
            AttributeText::Words words{L"Foo", L"A3", L"Duplex", L"Staple"};
            const bool right = thread % 2
                                   ? catalogue.PaperFromAttributeWords(words).dimensions == L"2970,4200"
                                   : catalogue.NormalizePageAttributes(words, true) == L"Duplex,B&W";
            wrong += right && catalogue.FinishingMaskFromNames(L"Fold") == 4 ? 0 : 1;
        }
    });
    CHECK(wrong == 0);
    CHECK(file.Reads() == 4 * 50 * 2);
}

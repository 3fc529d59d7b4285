#include "Allocations.h"

#include "common/text/QxStringPool.h"

#include <catch2/catch.hpp>

#include <new>
#include <string>
#include <vector>

namespace {

QxString NumberedText(int number) {
    return QxString(L"text " + std::to_wstring(number));
}

} // namespace

TEST_CASE("StringPool_texts_are_unchanged_and_nul_terminated") {
    QxStringPool pool;
    pool.Begin(4000);
    std::vector<QxString> texts;
    texts.reserve(1000);
    for (int i = 0; i < 1000; ++i)
        texts.push_back(pool.Make(NumberedText(i)));
    for (int i = 0; i < 1000; ++i) {
        CHECK(texts[static_cast<std::size_t>(i)] == NumberedText(i));
        CHECK(texts[static_cast<std::size_t>(i)].c_str()[NumberedText(i).size()] == L'\0');
    }
}

TEST_CASE("StringPool_texts_outlive_the_pool_and_each_other") {
    std::vector<QxString> kept;
    {
        QxStringPool pool;
        pool.Begin(2000);
        for (int i = 0; i < 200; ++i) {
            QxString text = pool.Make(NumberedText(i));
            if (i % 17 == 0)
                kept.push_back(text);
        }
        pool.Begin(100);
        kept.push_back(pool.Make(L"of another document"));
    }
    for (std::size_t i = 0; i + 1 < kept.size(); ++i)
        CHECK(kept[i] == NumberedText(static_cast<int>(i) * 17));
    CHECK(kept.back() == L"of another document");
}

TEST_CASE("StringPool_makes_texts_of_any_length") {
    for (const std::size_t documentLength :
         {std::size_t{0}, std::size_t{1}, std::size_t{500}, std::size_t{100000}}) {
        QxStringPool pool;
        pool.Begin(documentLength);
        for (std::size_t length = 0; length < 2000; length += length / 8 + 1) {
            CAPTURE(documentLength, length);
            const QxString text(std::wstring(length, L'x'));
            CHECK(pool.Make(text) == text);
        }
    }
}

TEST_CASE("StringPool_without_a_document_makes_texts") {
    QxStringPool pool;
    CHECK(pool.Make(L"text") == L"text");
    CHECK(pool.Make(L"").empty());
}

TEST_CASE("StringPool_out_of_memory_throws_and_keeps_earlier_texts") {
    QxStringPool pool;
    pool.Begin(0);
    const QxString first = pool.Make(L"first");
    std::vector<QxString> texts;
    texts.reserve(100);
    bool failed = false;
    {
        const Allocations::FailOnce failure(0);
        try {
            for (int i = 0; i < 100; ++i)
                texts.push_back(pool.Make(L"more"));
        } catch (const std::bad_alloc&) {
            failed = true;
        }
    }
    CHECK(failed);
    CHECK(first == L"first");
    CHECK(pool.Make(L"last") == L"last");
}

// The times of a print job: text forms, milliseconds, and the stamping of unset times.

#include "tests/support/RecordTest.h"

#include <limits>

namespace {

std::wstring LocalElement(std::wstring_view text) {
    return L"<JobTimeLocal>" + std::wstring(text) + L"</JobTimeLocal>";
}

std::wstring UtcElement(std::wstring_view text) {
    return L"<JobTimeUtc>" + std::wstring(text) + L"</JobTimeUtc>";
}

DATE Local(const ComPtr<IPrintJob>& job) {
    return Value(job, &IPrintJob::get_JobTimeLocal);
}

DATE Utc(const ComPtr<IPrintJob>& job) {
    return Value(job, &IPrintJob::get_JobTimeUtc);
}

} // namespace

TEST_CASE("PrintJob_times_are_stored_as_they_are_given") {
    const auto job = CreatePrintJob();
    for (const DATE date : {40000.25, 0.0, -1.5, 1e300, std::numeric_limits<double>::infinity()}) {
        CHECK_HR(job->put_JobTimeLocal(date), S_OK);
        CHECK_HR(job->put_JobTimeUtc(date - 1), S_OK);
        CHECK(Local(job) == date);
        CHECK(Utc(job) == date - 1);
    }
}

TEST_CASE("PrintJob_times_are_read_from_their_text_forms") {
    const struct {
        const wchar_t* text;
        const wchar_t* time;
        LONG milliseconds;
    } cases[] = {{L"2010-03-04T05:06:07.089", L"2010-03-04T05:06:07", 89},
                 {L"2010-03-04T05:06:07.08", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04T05:06:07", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04T05:06:07.", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04T05:06:07.000", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04T05:06:07.1239", L"2010-03-04T05:06:07", 123},
                 {L"2010-03-04T05:06:07.1.999", L"2010-03-04T05:06:07", 1}, // the first point counts
                 {L"2010-03-04T05:06:07.xyz", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04T05:06:07.999Z", L"2010-03-04T05:06:07", 999},
                 {L"2010-3-4T5:6:7", L"2010-03-04T05:06:07", 0},
                 {L"2010-03-04", L"2010-03-04T00:00:00", 0},
                 {L"05:06:07", L"1899-12-30T05:06:07", 0}};
    for (const auto& test : cases) {
        INFO(Narrow(test.text));
        const auto job = PrintJobOfVersion(L"7.26", LocalElement(test.text) + UtcElement(test.text));
        CHECK_TEXT(DateText(Local(job)), test.time);
        CHECK(Value(job, &IPrintJob::get_JobTimeLocalMsec) == test.milliseconds);
        CHECK_TEXT(DateText(Utc(job)), test.time);
    }
}

TEST_CASE("PrintJob_times_that_cannot_be_read_become_the_current_ones") {
    for (const wchar_t* text : {L"", L"x", L"2010-13-01", L"2010-02-30", L"2010-03-04T25:00:00", L"2010-03",
                                L"2010-03-04T05:06", L"1899-12-30", L"00:00:00", L"2010/03/04"}) {
        INFO(Narrow(text));
        const auto job = PrintJobOfVersion(L"7.26", LocalElement(text) + UtcElement(text));
        CHECK(IsLocalNow(Local(job)));
        CHECK(IsUtcNow(Utc(job)));
    }
}

TEST_CASE("PrintJob_milliseconds_are_read_also_where_the_time_is_not") {
    const auto job = PrintJobOfVersion(L"7.26", LocalElement(L"x.123"));
    CHECK(IsLocalNow(Local(job)));
    CHECK(Value(job, &IPrintJob::get_JobTimeLocalMsec) == 123);
}

TEST_CASE("PrintJob_local_time_that_is_missing_becomes_the_current_one") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobTimeLocal(40000), S_OK);
    REQUIRE_HR(job->put_JobTimeLocalMsec(500), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    CHECK(IsLocalNow(Local(job)));
    CHECK(Value(job, &IPrintJob::get_JobTimeLocalMsec) == 0);
}

TEST_CASE("PrintJob_utc_time_that_is_missing_keeps_its_value") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobTimeUtc(40000.5), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    CHECK(Utc(job) == 40000.5);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", L"<JobTimeUtc/>")), S_OK);
    CHECK(IsUtcNow(Utc(job)));
    REQUIRE_HR(job->put_JobTimeUtc(0), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    CHECK(IsUtcNow(Utc(job))); // its old value was never set
}

TEST_CASE("PrintJob_writing_stamps_times_within_half_a_second_of_zero") {
    constexpr double second = 1.0 / 86400;
    for (const double unset : {0.0, 0.49 * second, -0.49 * second}) {
        const auto job = CreatePrintJob();
        REQUIRE_HR(job->put_JobTimeLocal(unset), S_OK);
        REQUIRE_HR(job->put_JobTimeLocalMsec(7), S_OK);
        REQUIRE_HR(job->put_JobTimeUtc(unset), S_OK);
        CHECK(Local(job) == unset); // only writing stamps
        const std::wstring xml = Text(job, &IPrintJob::get_Xml);
        CHECK(IsLocalNow(Local(job)));
        CHECK(IsUtcNow(Utc(job)));
        CHECK_HAS(xml, LocalElement(DateText(Local(job)) + L".007"));
        CHECK_HAS(xml, UtcElement(DateText(Utc(job))));
        CHECK(Value(job, &IPrintJob::get_JobTimeLocalMsec) == 7);
    }
    for (const double set : {0.51 * second, -0.51 * second, 0.25}) {
        const auto job = CreatePrintJob();
        REQUIRE_HR(job->put_JobTimeLocal(set), S_OK);
        REQUIRE_HR(job->put_JobTimeUtc(set), S_OK);
        Text(job, &IPrintJob::get_Xml);
        CHECK(Local(job) == set);
        CHECK(Utc(job) == set);
    }
}

TEST_CASE("PrintJob_times_are_stamped_independently") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobTimeLocal(0), S_OK);
    REQUIRE_HR(job->put_JobTimeUtc(40000), S_OK);
    Text(job, &IPrintJob::get_Xml);
    CHECK(IsLocalNow(Local(job)));
    CHECK(Utc(job) == 40000);
    REQUIRE_HR(job->put_JobTimeLocal(40000), S_OK);
    REQUIRE_HR(job->put_JobTimeUtc(0), S_OK);
    Text(job, &IPrintJob::get_Xml);
    CHECK(Local(job) == 40000);
    CHECK(IsUtcNow(Utc(job)));
}

TEST_CASE("PrintJob_times_are_written_in_their_text_forms") {
    const auto job = CreatePrintJob();
    const auto write = [&](DATE date, LONG milliseconds) {
        REQUIRE_HR(job->put_JobTimeLocal(date), S_OK);
        REQUIRE_HR(job->put_JobTimeLocalMsec(milliseconds), S_OK);
        REQUIRE_HR(job->put_JobTimeUtc(date), S_OK);
        return Text(job, &IPrintJob::get_Xml);
    };
    const DATE date = MakeDate(2010, 3, 4, 5, 6, 7);
    CHECK_HAS(write(date, 89), LocalElement(L"2010-03-04T05:06:07.089") + UtcElement(L"2010-03-04T05:06:07"));
    CHECK_HAS(write(date, 0), LocalElement(L"2010-03-04T05:06:07"));
    CHECK_HAS(write(date, -1), LocalElement(L"2010-03-04T05:06:07"));
    CHECK_HAS(write(date, 1234), LocalElement(L"2010-03-04T05:06:07.1234"));
    CHECK_HAS(write(0.25, 5), LocalElement(L"06:00:00.005") + UtcElement(L"06:00:00"));
    CHECK_HAS(write(1e300, 0), LocalElement(L"Invalid DateTime") + UtcElement(L"Invalid DateTime"));
    CHECK_HAS(write(-1e300, 0), LocalElement(L"Invalid DateTime"));
    CHECK_HAS(write(std::numeric_limits<double>::quiet_NaN(), 0), LocalElement(L"Invalid DateTime"));
}

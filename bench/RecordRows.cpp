#include "Peers.h"
#include "RecordText.h"
#include "Rows.h"

#include "common/xml/QxXmlParser.h"

namespace {

/// Does the work with each of the 64 records in turn.
template<class Work>
Contender ForAll(const std::string& name, Work work) {
    const std::vector<JobText>& jobs = JobTexts();
    return {name,
            [&jobs, work]() mutable {
                for (const JobText& job : jobs)
                    work(job);
            },
            static_cast<double>(jobs.size())};
}

void CheckRecords() {
    for (const JobText& job : JobTexts()) {
        Require(RecordText::Read(job.text) == job.values, "a value that the parser read");
        Require(PugiPeer::Read(job.text) == job.values, "a value that pugixml read");
        Require(RapidPeer::Read(job.text) == job.values, "a value that RapidXML read");
        Require(RecordText::Write(job.values).Text() == job.text, "a text that the writer wrote");
        Require(PugiPeer::Write(job.values) == job.text, "a text that pugixml wrote");
        QxXmlParser parser;
        Require(parser.SetDocument(job.text) &&
                    parser.PositionCount() - 1 == PugiPeer::CountElements(job.text),
                "the number of elements");
    }
}

} // namespace

void AddRecordRows(Table& table) {
    CheckRecords();
    QxXmlParser kept;
    table.Time(
        "parse a record",
        {ForAll("new parser",
                [](const JobText& job) {
                    QxXmlParser parser;
                    Use(parser.SetDocument(job.text));
                }),
         ForAll("parser used again", [&kept](const JobText& job) { Use(kept.SetDocument(job.text)); }),
         ForAll("pugixml", [](const JobText& job) { Use(PugiPeer::Parse(job.text)); }),
         ForAll("RapidXML", [](const JobText& job) { Use(RapidPeer::Parse(job.text)); }),
         ForAll("plain copy of the text", [](const JobText& job) { Use(std::wstring(job.text).size()); })},
        {{"pugixml", 0.58}, {"pugixml", 0.53, "parser used again"}});
    table.Time(
        "parse a record and read every value",
        {ForAll("parser", [](const JobText& job) { Use(RecordText::Read(job.text).guid.size()); }),
         ForAll("pugixml", [](const JobText& job) { Use(PugiPeer::Read(job.text).guid.size()); }),
         ForAll("RapidXML", [](const JobText& job) { Use(RapidPeer::Read(job.text).guid.size()); }),
         ForAll("plain copy of the text", [](const JobText& job) { Use(std::wstring(job.text).size()); })},
        {{"pugixml", 0.55}, {"RapidXML", 0.75}});
    table.Time(
        "write a record",
        {ForAll("writer", [](const JobText& job) { Use(RecordText::Write(job.values).Text().size()); }),
         ForAll("pugixml", [](const JobText& job) { Use(PugiPeer::Write(job.values).size()); }),
         ForAll("plain copy of the text", [](const JobText& job) { Use(std::wstring(job.text).size()); })},
        {{"pugixml", 0.18}});
}

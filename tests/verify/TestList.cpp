#include "TestList.h"

#include <fstream>
#include <stdexcept>

namespace {

std::vector<std::string> Split(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (std::size_t end; (end = line.find(separator, start)) != std::string::npos; start = end + 1)
        fields.push_back(line.substr(start, end - start));
    fields.push_back(line.substr(start));
    return fields;
}

DWORD Number(const std::string& text) {
    return static_cast<DWORD>(std::stoul(text));
}

Expect ExpectNamed(const std::string& name) {
    if (name == "cases")
        return Expect::Cases;
    if (name == "line")
        return Expect::Line;
    if (name == "file")
        return Expect::File;
    throw std::runtime_error("unknown expectation " + name);
}

void Read(const std::string& line, TestList& list) {
    const std::vector<std::string> fields = Split(line, '\t');
    const std::string& kind = fields[0];
    if (kind == "closing line of cases" && fields.size() == 2)
        list.caseClosingLine = fields[1];
    else if (kind == "part" && fields.size() == 5)
        list.parts.push_back({fields[1], fields[2] == "administrator", fields[3], fields[4], {}});
    else if (kind == "test" && fields.size() == 9 && !list.parts.empty())
        list.parts.back().tests.push_back({fields[1], ExpectNamed(fields[2]), fields[3], Number(fields[4]),
                                           Number(fields[5]), fields[6], fields[7], fields[8]});
    else if ((kind == "left out" || kind == "case left out" || kind == "case left out under Wine") &&
             fields.size() == 3)
        list.leftOut.push_back(
            {fields[1], kind == "left out", kind == "case left out under Wine", fields[2]});
    else
        throw std::runtime_error("malformed line in the list of tests: " + line);
}

} // namespace

const LeftOut* TestList::FindLeftOut(const std::string& testCase, bool underWine) const {
    for (const LeftOut& each : leftOut)
        if (!each.isTest && each.name == testCase && (underWine || !each.underWineOnly))
            return &each;
    return nullptr;
}

TestList ReadTestList(const std::filesystem::path& file) {
    TestList list;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);)
        Read(line, list);
    if (list.parts.empty())
        throw std::runtime_error("no list of tests in " + file.string());
    return list;
}

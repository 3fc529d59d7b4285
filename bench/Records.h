#pragma once

#include "common/text/QxString.h"
#include "common/xml/XmlName.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// The values of print jobs, common to all contenders.

struct CopyLineValues {
    QxString paperSize, paperDimensions, attributes;
    std::int32_t sheets = 0, pagesBW = 0, pagesColor = 0, pagesBlank = 0;
    bool operator==(const CopyLineValues&) const = default;
};

struct ContentsValues {
    QxString version;
    std::vector<CopyLineValues> lines;
    std::int32_t originals = 0, copies = 0;
    QxString pdl, finishing;
    bool operator==(const ContentsValues&) const = default;
};

struct PrintInfoValues {
    std::int32_t pages = 0, originals = 0, fields = 0, orientation = 0, paperSize = 0, paperLength = 0,
                 paperWidth = 0, scale = 0, copies = 0, defaultSource = 0, printQuality = 0, color = 0,
                 duplex = 0, tumble = 0, xResolution = 0, yResolution = 0, ttOption = 0, collate = 0;
    QxString formName;
    std::int32_t mediaType = 0, pagesPerSide = 0, pageOrderFlags = 0;
    bool operator==(const PrintInfoValues&) const = default;
};

struct PolicyValues {
    QxString version;
    std::int32_t id = 0;
    QxString name;
    bool cancelled = false;
    std::vector<std::pair<std::int32_t, QxString>> violations;
    bool operator==(const PolicyValues&) const = default;
};

struct JobValues {
    QxString version;
    QxString guid, customerCode, userName, userDomain;
    bool fromSystemUser = false;
    QxString desktopUser, desktopDomain;
    double timeLocal = 0;
    std::int32_t timeLocalMsec = 0;
    double timeUtc = 0;
    std::int32_t size = 0;
    QxString name, fileName, dataType, logTargetType, logTarget, machineName, applicationName,
        applicationDescription;
    bool vpnConnected = false;
    std::int32_t tonerCoverage = 0, tonerSaving = 0, dataSource = 0, contentsSource = 0, discardCount = 0;
    ContentsValues contents, pageCounterContents;
    QxString pageCounterError, pageCounterResult;
    PrintInfoValues printInfo;
    PolicyValues policy;
    bool operator==(const JobValues&) const = default;
};

/// A record's document and its values.
struct JobText {
    std::wstring text;
    JobValues values;
};

/// 64 different print jobs of three to four thousand characters, with one to four copy lines and all
/// children; the same in every run.
const std::vector<JobText>& JobTexts();

/// A "JobCopyLines" document, and the number of its elements.
struct CopyLinesText {
    std::wstring text;
    std::size_t elements = 0;
};
/// Makes a document of about this many bytes.
CopyLinesText MakeCopyLines(std::size_t bytes);

/// The children of a "CopyLine", in document order.
inline constexpr SoughtName LineElements[] = {L"PaperSize", L"PaperDimensions", L"Attributes", L"Sheets",
                                              L"PagesBW",   L"PagesColor",      L"PagesBlank"};

/// Four values of each copy line as attributes of empty elements.
inline constexpr XmlName LineAttributes[] = {L"PaperSize", L"Attributes", L"Sheets", L"PagesColor"};
CopyLinesText MakeAttributes(std::size_t bytes);

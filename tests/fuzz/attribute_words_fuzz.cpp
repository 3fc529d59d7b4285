// Input: two codes, then words. Words and codes convert to each other, and matching the unmatched words of a
// page counter again leaves no new words.

#include "Fuzzing.h"

#include "JobObjects/contents/CJobContents.h"
#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <algorithm>
#include <initializer_list>

using Fuzzing::Require;

namespace {

bool IsSubset(std::uint32_t part, std::uint32_t whole) {
    return (part & ~whole) == 0;
}

/// Codes to words to codes adds no bits, and converting again changes nothing.
void CheckCodes(std::uint32_t code) {
    JobAttributeCatalogue& catalogue = TheCatalogue();
    const QxString attributes = catalogue.AttributeNamesFromMask(code);
    const std::uint32_t mask = catalogue.AttributeMaskFromNames(attributes);
    Require(IsSubset(mask, code), "attribute words add bits");
    Require(catalogue.AttributeNamesFromMask(mask) == attributes, "attribute words change");
    const QxString finishing = catalogue.FinishingNamesFromMask(code);
    const std::uint32_t options = catalogue.FinishingMaskFromNames(finishing);
    Require(IsSubset(options, code) && catalogue.FinishingNamesFromMask(options) == finishing,
            "finishing words change");
    const QxString pdl = catalogue.PdlNameFromDbId(code);
    Require(catalogue.PdlNameFromDbId(catalogue.PdlDbIdFromName(pdl)) == pdl, "the PDL changes");
    JobAttributeCatalogue::Paper paper;
    if (catalogue.PaperFromDbId(code, paper))
        Require(catalogue.PaperDbIdFromName(paper.name) == code, "the paper's code changes");
}

void CheckWords(std::wstring_view text) {
    JobAttributeCatalogue& catalogue = TheCatalogue();
    for (const std::uint32_t code :
         {catalogue.AttributeMaskFromNames(text), catalogue.FinishingMaskFromNames(text),
          catalogue.PdlDbIdFromName(text), catalogue.PaperDbIdFromName(text)})
        CheckCodes(code);
    const std::wstring joined = AttributeText::Join(AttributeText::Split(text));
    Require(AttributeText::Join(AttributeText::Split(joined)) == joined,
            "splitting joined words changes them");
    const std::wstring without = AttributeText::Without(text, {L"Color"});
    Require(without.find(L",,,") == std::wstring::npos || text.find(L",,") != std::wstring_view::npos,
            "added commas");
}

void CheckMatch(std::wstring_view text, bool addDefaults) {
    CJobContents contents;
    contents.SetGenerateDefaultPageAttributes(addDefaults);
    const CJobContents::MatchedAttributes matched = contents.MatchAttributes(text);
    Require(matched.isColor == (text.find(L"Color") != std::wstring_view::npos), "color");
    Require(TheCatalogue().PaperDbIdFromName(matched.paperSize) != 0, "no paper");
    Require(TheCatalogue().FinishingMaskFromNames(matched.jobFinishing) != 0 || matched.jobFinishing.empty(),
            "unknown finishing");
    const CJobContents::MatchedAttributes again = contents.MatchAttributes(matched.unmatchedAttributes);
    // A second paper or PDL matches only the second time.
    Require(again.unmatchedAttributes.size() <= matched.unmatchedAttributes.size(), "added words");
    Require(!addDefaults || !again.pageAttributes.empty(), "no default page attributes");
}

} // namespace

void RunInput(std::string_view bytes) {
    for (int code = 0; code < 2; ++code)
        CheckCodes(Fuzzing::TakeNumber(bytes));
    const std::wstring text = Fuzzing::Widen(bytes);
    CheckWords(text);
    CheckMatch(text, false);
    CheckMatch(text, true);
}

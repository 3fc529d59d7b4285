// Two codes, then words: words and codes lead to each other, and a page counter's words are sorted so that
// what was left over is left over again.

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

/// The words of a code have no code but a part of it, and stay the same from then on.
void CheckCodes(std::uint32_t code) {
    JobAttributeCatalogue& catalogue = TheCatalogue();
    const QxString attributes = catalogue.AttributeNamesFromMask(code);
    const std::uint32_t mask = catalogue.AttributeMaskFromNames(attributes);
    Require(IsSubset(mask, code), "attribute words with bits of their own");
    Require(catalogue.AttributeNamesFromMask(mask) == attributes, "other attribute words");
    const QxString finishing = catalogue.FinishingNamesFromMask(code);
    const std::uint32_t options = catalogue.FinishingMaskFromNames(finishing);
    Require(IsSubset(options, code) && catalogue.FinishingNamesFromMask(options) == finishing,
            "other finishing words");
    const QxString pdl = catalogue.PdlNameFromDbId(code);
    Require(catalogue.PdlNameFromDbId(catalogue.PdlDbIdFromName(pdl)) == pdl, "another PDL");
    JobAttributeCatalogue::Paper paper;
    if (catalogue.PaperFromDbId(code, paper))
        Require(catalogue.PaperDbIdFromName(paper.name) == code, "another paper");
}

void CheckWords(std::wstring_view text) {
    JobAttributeCatalogue& catalogue = TheCatalogue();
    for (const std::uint32_t code :
         {catalogue.AttributeMaskFromNames(text), catalogue.FinishingMaskFromNames(text),
          catalogue.PdlDbIdFromName(text), catalogue.PaperDbIdFromName(text)})
        CheckCodes(code);
    const std::wstring joined = AttributeText::Join(AttributeText::Split(text));
    Require(AttributeText::Join(AttributeText::Split(joined)) == joined, "words split otherwise");
    const std::wstring without = AttributeText::Without(text, {L"Color"});
    Require(without.find(L",,,") == std::wstring::npos || text.find(L",,") != std::wstring_view::npos,
            "commas from nowhere");
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
    // A second paper or PDL is left over the first time.
    Require(again.unmatchedAttributes.size() <= matched.unmatchedAttributes.size(), "words from nowhere");
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

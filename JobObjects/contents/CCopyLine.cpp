#include "CCopyLine.h"

#include "AttributeText.h"
#include "JobAttributeCatalogue.h"
#include "WrappingSum.h"

#include "common/text/Text.h"
#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"
#include "common/log/QxLogger.h"

std::int32_t CCopyLine::PagesTotal() const noexcept {
    return WrappingSum(WrappingSum(m_pagesColor, m_pagesBW), m_pagesBlank);
}

bool CCopyLine::IsDuplex() const noexcept {
    return QxMisc::Contains(m_attributes, AttributeText::Duplex);
}

std::int32_t CCopyLine::DBPaperSize() const {
    return static_cast<std::int32_t>(TheCatalogue().PaperDbIdFromName(m_paperSize));
}

std::int32_t CCopyLine::DBAttributes() const {
    return static_cast<std::int32_t>(TheCatalogue().AttributeMaskFromNames(m_attributes));
}

void CCopyLine::AddCounts(const CCopyLine& other) noexcept {
    SetPagesBW(WrappingSum(m_pagesBW, other.m_pagesBW));
    SetPagesColor(WrappingSum(m_pagesColor, other.m_pagesColor));
    SetPagesBlank(WrappingSum(m_pagesBlank, other.m_pagesBlank));
    SetSheets(WrappingSum(m_sheets, other.m_sheets));
}

bool CCopyLine::put_Xml(std::wstring_view xml) {
    QxXmlParser parser;
    parser.SetDocument(xml);
    if (!parser.FindElement(L"CopyLine")) {
        LogError(L"[CCopyLine::put_Xml] Invalid Xml fragment");
        return false;
    }
    ReadXml(parser);
    return true;
}

void CCopyLine::ReadXml(QxXmlParser& parser) {
    ChildReader children(parser);
    SetPaperSize(children.Text(L"PaperSize"));
    SetPaperDimensions(children.Text(L"PaperDimensions"));
    const QxString attributes = children.Text(L"Attributes");
    SetSheets(children.Number(L"Sheets"));
    if (children.Find(L"Pages")) {
        const std::int32_t pages = parser.GetChildNumber();
        ReadOlderForm(pages, children.Text(L"PageAttributes"));
        return;
    }
    SetAttributes(attributes);
    SetPagesBW(children.Number(L"PagesBW"));
    SetPagesColor(children.Number(L"PagesColor"));
    SetPagesBlank(children.Number(L"PagesBlank"));
}

// The older form has one page count; the attribute "Color" makes it a count of color pages.
void CCopyLine::ReadOlderForm(std::int32_t pages, const QxString& attributes) {
    const bool isColor = QxMisc::Contains(attributes, AttributeText::Color);
    SetPagesColor(isColor ? pages : 0);
    SetPagesBW(isColor ? 0 : pages);
    SetPagesBlank(0);
    SetAttributes(AttributeText::Without(attributes, {AttributeText::BlackAndWhite, AttributeText::Color}));
}

void CCopyLine::WriteXml(QxXmlWriter& writer) const {
    writer.OpenStartTag(L"CopyLine");
    writer.CloseStartTag();
    writer.Element(L"PaperSize", m_paperSize.view());
    writer.Element(L"PaperDimensions", m_paperDimensions.view());
    writer.Element(L"Attributes", m_attributes.view());
    writer.Element(L"Sheets", m_sheets);
    writer.Element(L"PagesBW", m_pagesBW);
    writer.Element(L"PagesColor", m_pagesColor);
    writer.Element(L"PagesBlank", m_pagesBlank);
    writer.EndTag(L"CopyLine");
}

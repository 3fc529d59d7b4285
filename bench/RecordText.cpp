#include "RecordText.h"

#include "RecordForm.h"

#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"

namespace {

/// The parser's current element. Reads children like the product's records do.
class ParserNode {
public:
    explicit ParserNode(QxXmlParser& parser) : m_parser(parser), m_children(parser) {}

    QxString Text(XmlName name) { return m_children.Text(name); }
    std::int32_t Number(XmlName name) { return m_children.Number(name); }
    bool Flag(XmlName name) { return m_children.Flag(name); }
    QxString Data() { return m_parser.GetData(); }
    QxString Attribute(std::wstring_view name) { return m_parser.GetAttribute(name); }

    template<class UseNode>
    void Within(XmlName name, UseNode use) {
        if (m_children.Find(name))
            Enter(use);
    }
    template<class UseNode>
    void ForEach(std::wstring_view name, UseNode use) {
        while (m_parser.FindChildElement(name))
            Enter(use);
    }

private:
    template<class UseNode>
    void Enter(UseNode& use) {
        m_parser.IntoElement();
        ParserNode inner(m_parser);
        use(inner);
        m_parser.OutOfElement();
    }

    QxXmlParser& m_parser;
    ChildReader m_children;
};

class WriterSink {
public:
    void Open(XmlName name) {
        EndStartTag();
        m_writer.OpenStartTag(name);
        m_inStartTag = true;
    }
    void Attribute(std::wstring_view name, std::wstring_view value) { m_writer.Attribute(name, value); }
    void Data(std::wstring_view data) {
        m_data = data;
        m_hasData = true;
    }
    void Close(XmlName name) {
        if (m_hasData) {
            m_writer.CloseWithData(name, m_data);
            m_hasData = m_inStartTag = false;
            return;
        }
        EndStartTag();
        m_writer.EndTag(name);
    }
    void CloseEmpty() {
        m_writer.CloseEmptyTag();
        m_inStartTag = false;
    }
    template<class Value>
    void Element(XmlName name, const Value& value) {
        EndStartTag();
        m_writer.Element(name, value);
    }
    void Element(XmlName name, const QxDateTime& time, std::int32_t milliseconds) {
        EndStartTag();
        m_writer.Element(name, time, milliseconds);
    }
    QxXmlWriter Take() { return std::move(m_writer); }

private:
    void EndStartTag() {
        if (m_inStartTag)
            m_writer.CloseStartTag();
        m_inStartTag = false;
    }

    QxXmlWriter m_writer;
    std::wstring_view m_data;
    bool m_inStartTag = false;
    bool m_hasData = false;
};

} // namespace

JobValues RecordText::Read(std::wstring_view text) {
    QxXmlParser parser;
    RecordReading::OpenRoot(parser, text, L"PrintJob");
    ParserNode node(parser);
    return RecordForm::ReadJob(node);
}

QxXmlWriter RecordText::Write(const JobValues& values) {
    WriterSink sink;
    RecordForm::WriteJob(sink, values);
    return sink.Take();
}

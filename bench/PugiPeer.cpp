#include "Peers.h"
#include "RecordForm.h"

#include <pugixml.hpp>

#include <cwchar>
#include <iterator>
#include <memory>

namespace {

bool Load(pugi::xml_document& document, std::wstring_view text) {
    return bool(document.load_buffer(text.data(), text.size() * sizeof(wchar_t), pugi::parse_default,
                                     pugi::encoding_wchar));
}

class PugiNode {
public:
    explicit PugiNode(pugi::xml_node node) : m_node(node) {}

    QxString Text(const wchar_t* name) const { return m_node.child(name).text().get(); }
    std::int32_t Number(const wchar_t* name) const { return m_node.child(name).text().as_int(); }
    bool Flag(const wchar_t* name) const { return m_node.child(name).text().as_bool(); }
    QxString Data() const { return m_node.text().get(); }
    QxString Attribute(const wchar_t* name) const { return m_node.attribute(name).value(); }

    template<class UseNode>
    void Within(const wchar_t* name, UseNode use) const {
        if (const pugi::xml_node child = m_node.child(name)) {
            PugiNode node(child);
            use(node);
        }
    }
    template<class UseNode>
    void ForEach(const wchar_t* name, UseNode use) const {
        for (const pugi::xml_node child : m_node.children(name)) {
            PugiNode node(child);
            use(node);
        }
    }

private:
    pugi::xml_node m_node;
};

class PugiSink {
public:
    explicit PugiSink(pugi::xml_node parent) : m_node(parent) {}

    void Open(const wchar_t* name) { m_node = m_node.append_child(name); }
    void Attribute(const wchar_t* name, const QxString& value) {
        m_node.append_attribute(name).set_value(value.c_str());
    }
    void Data(const QxString& data) { m_node.text().set(data.c_str()); }
    void Close(const wchar_t*) { m_node = m_node.parent(); }
    void CloseEmpty() { m_node = m_node.parent(); }
    void Element(const wchar_t* name, const QxString& data) {
        pugi::xml_node child = m_node.append_child(name);
        if (!data.empty())
            child.text().set(data.c_str());
    }
    void Element(const wchar_t* name, std::int32_t value) { m_node.append_child(name).text().set(value); }
    void Element(const wchar_t* name, bool value) { m_node.append_child(name).text().set(value); }
    void Element(const wchar_t* name, const QxDateTime& time, std::int32_t milliseconds) {
        Element(name, time.Format(milliseconds));
    }

private:
    pugi::xml_node m_node;
};

struct TextWriter : pugi::xml_writer {
    std::wstring text;
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const wchar_t*>(data), size / sizeof(wchar_t));
    }
};

} // namespace

JobValues PugiPeer::Read(std::wstring_view text) {
    pugi::xml_document document;
    if (!Load(document, text))
        return {};
    PugiNode node(document.document_element());
    return RecordForm::ReadJob(node);
}

std::wstring PugiPeer::Write(const JobValues& values) {
    pugi::xml_document document;
    PugiSink sink(document);
    RecordForm::WriteJob(sink, values);
    TextWriter writer;
    writer.text.reserve(4096);
    document.save(writer, L"", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_wchar);
    return std::move(writer.text);
}

bool PugiPeer::Parse(std::wstring_view text) {
    pugi::xml_document document;
    return Load(document, text);
}

std::size_t PugiPeer::CountElements(std::wstring_view text) {
    struct Counter : pugi::xml_tree_walker {
        std::size_t count = 0;
        bool for_each(pugi::xml_node& node) override {
            count += node.type() == pugi::node_element;
            return true;
        }
    };
    pugi::xml_document document;
    Counter counter;
    if (Load(document, text))
        document.traverse(counter);
    return counter.count;
}

std::size_t PugiPeer::ReadAttributes(std::wstring_view text) {
    pugi::xml_document document;
    std::size_t length = 0;
    if (!Load(document, text))
        return 0;
    for (const pugi::xml_node line : document.document_element()) {
        for (const XmlName name : LineAttributes)
            length += std::wcslen(line.attribute(name.data()).value());
    }
    return length;
}

std::function<std::size_t()> PugiPeer::Walker(std::wstring_view text) {
    const auto document = std::make_shared<pugi::xml_document>();
    Load(*document, text);
    return [document] {
        std::size_t count = 0;
        for (const pugi::xml_node line : document->document_element().children(L"CopyLine")) {
            ++count;
            pugi::xml_node child = line.child(LineElements[0].data());
            for (std::size_t i = 1; child; child = child.next_sibling(LineElements[i++].data())) {
                ++count;
                if (i == std::size(LineElements))
                    break;
            }
        }
        return count;
    };
}

#include "MsxmlPeer.h"

#include "RecordForm.h"
#include "Table.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

namespace {

QxString NodeText(IXMLDOMNode* node) {
    UniqueBstr text;
    Require(node->get_text(text.Put()) == S_OK, "MSXML: a node's text");
    return text.View();
}

bool HasName(IXMLDOMNode* node, std::wstring_view name) {
    UniqueBstr found;
    Require(node->get_nodeName(found.Put()) == S_OK, "MSXML: a node's name");
    return found.View() == name;
}

/// Searches for a child from the last one found, and from the start only if that fails: each step costs a
/// call and two strings.
class MsxmlNode {
public:
    explicit MsxmlNode(ComPtr<IXMLDOMNode> node) : m_node(std::move(node)) {}

    QxString Text(std::wstring_view name) { return Find(name) ? NodeText(m_child.Get()) : QxString(); }
    std::int32_t Number(std::wstring_view name) { return QxMisc::ParseInt32(Text(name)); }
    bool Flag(std::wstring_view name) { return QxMisc::ParseBool(Text(name)); }
    QxString Data() const { return NodeText(m_node.Get()); }
    QxString Attribute(const wchar_t* name) const {
        ComPtr<IXMLDOMNamedNodeMap> attributes;
        ComPtr<IXMLDOMNode> attribute;
        Require(m_node->get_attributes(attributes.Put()) == S_OK, "MSXML: attributes");
        const UniqueBstr text{std::wstring_view(name)};
        return attributes->getNamedItem(text.Get(), attribute.Put()) == S_OK ? NodeText(attribute.Get())
                                                                             : QxString();
    }

    template<class UseNode>
    void Within(std::wstring_view name, UseNode use) {
        if (!Find(name))
            return;
        MsxmlNode node(m_child);
        use(node);
    }
    template<class UseNode>
    void ForEach(std::wstring_view name, UseNode use) {
        for (ComPtr<IXMLDOMNode> child = FirstChild(); child; child = NextSibling(child)) {
            if (HasName(child.Get(), name)) {
                MsxmlNode node(child);
                use(node);
            }
        }
    }

private:
    ComPtr<IXMLDOMNode> FirstChild() const {
        ComPtr<IXMLDOMNode> child;
        m_node->get_firstChild(child.Put());
        return child;
    }
    static ComPtr<IXMLDOMNode> NextSibling(const ComPtr<IXMLDOMNode>& node) {
        ComPtr<IXMLDOMNode> next;
        node->get_nextSibling(next.Put());
        return next;
    }
    bool FindFrom(ComPtr<IXMLDOMNode> child, std::wstring_view name) {
        for (; child; child = NextSibling(child)) {
            if (HasName(child.Get(), name)) {
                m_child = std::move(child);
                return true;
            }
        }
        return false;
    }
    bool Find(std::wstring_view name) {
        return (m_child && FindFrom(NextSibling(m_child), name)) || FindFrom(FirstChild(), name);
    }

    ComPtr<IXMLDOMNode> m_node;
    ComPtr<IXMLDOMNode> m_child;
};

/// Creates an element when its start tag is complete: only then is its namespace known.
class MsxmlSink {
public:
    explicit MsxmlSink(IXMLDOMDocument* document) : m_document(document) {
        m_open.push_back({ComPtr<IXMLDOMNode>(document), {}});
    }

    void Open(const wchar_t* name) {
        MakePending();
        m_pending = name;
        m_namespace = m_open.back().space;
    }
    void Attribute(std::wstring_view name, std::wstring_view value) {
        if (name == L"xmlns") {
            m_namespace = value;
            return;
        }
        MakePending();
        ComPtr<IXMLDOMElement> element;
        VARIANT text;
        text.vt = VT_BSTR;
        const UniqueBstr held(value);
        text.bstrVal = held.Get();
        Require(m_open.back().node->QueryInterface(IID_IXMLDOMElement, element.PutVoid()) == S_OK &&
                    element->setAttribute(UniqueBstr(name).Get(), text) == S_OK,
                "MSXML: an attribute");
    }
    void Data(std::wstring_view data) {
        MakePending();
        Require(m_open.back().node->put_text(UniqueBstr(data).Get()) == S_OK, "MSXML: an element's text");
    }
    void Close(std::wstring_view) { CloseEmpty(); }
    void CloseEmpty() {
        MakePending();
        m_open.pop_back();
    }
    void Element(const wchar_t* name, std::wstring_view data) {
        Open(name);
        if (!data.empty())
            Data(data);
        CloseEmpty();
    }
    void Element(const wchar_t* name, const QxString& data) { Element(name, data.view()); }
    void Element(const wchar_t* name, std::int32_t value) {
        Element(name, std::wstring_view(QxMisc::FormatInt32(value)));
    }
    void Element(const wchar_t* name, bool value) { Element(name, QxMisc::FormatBool(value)); }
    void Element(const wchar_t* name, const QxDateTime& time, std::int32_t milliseconds) {
        Element(name, time.Format(milliseconds));
    }

private:
    struct OpenElement {
        ComPtr<IXMLDOMNode> node;
        std::wstring space;
    };

    void MakePending() {
        if (!m_pending)
            return;
        VARIANT type;
        type.vt = VT_I4;
        type.lVal = NODE_ELEMENT;
        ComPtr<IXMLDOMNode> node;
        const UniqueBstr name{std::wstring_view(m_pending)};
        Require(m_document->createNode(type, name.Get(), UniqueBstr(m_namespace).Get(), node.Put()) == S_OK &&
                    m_open.back().node->appendChild(node.Get(), nullptr) == S_OK,
                "MSXML: an element");
        m_open.push_back({std::move(node), m_namespace});
        m_pending = nullptr;
    }

    IXMLDOMDocument* m_document;
    std::vector<OpenElement> m_open;
    const wchar_t* m_pending = nullptr;
    std::wstring m_namespace;
};

} // namespace

ComPtr<IXMLDOMDocument> MsxmlPeer::NewDocument() {
    CLSID classId;
    ComPtr<IXMLDOMDocument> document;
    Require(CLSIDFromProgID(L"Msxml2.DOMDocument.6.0", &classId) == S_OK, "MSXML 6 is not registered");
    Require(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                             document.PutVoid()) == S_OK,
            "an MSXML 6 document");
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    return document;
}

void MsxmlPeer::Load(IXMLDOMDocument* document, BSTR text) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Require(document->loadXML(text, &loaded) == S_OK && loaded, "MSXML refuses the record");
}

JobValues MsxmlPeer::Read(IXMLDOMDocument* document, BSTR text) {
    Load(document, text);
    ComPtr<IXMLDOMElement> root;
    Require(document->get_documentElement(root.Put()) == S_OK, "MSXML: the root");
    MsxmlNode node{ComPtr<IXMLDOMNode>(root.Get())};
    return RecordForm::ReadJob(node);
}

UniqueBstr MsxmlPeer::Write(IXMLDOMDocument* document) {
    UniqueBstr text;
    Require(document->get_xml(text.Put()) == S_OK, "MSXML: the document's text");
    return text;
}

UniqueBstr MsxmlPeer::Write(IXMLDOMDocument* document, const JobValues& values) {
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMNode> removed;
    if (document->get_documentElement(root.Put()) == S_OK && root)
        document->removeChild(root.Get(), removed.Put());
    MsxmlSink sink(document);
    RecordForm::WriteJob(sink, values);
    return Write(document);
}

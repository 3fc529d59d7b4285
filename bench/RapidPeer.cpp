#include "Peers.h"
#include "RecordForm.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

#include <rapidxml.hpp>

#include <iterator>
#include <memory>
#include <vector>

namespace {

using Document = rapidxml::xml_document<wchar_t>;

/// RapidXML parses in place, so it gets its own NUL-terminated copy.
class Loaded {
public:
    explicit Loaded(std::wstring_view text) {
        m_text.reserve(text.size() + 1);
        m_text.assign(text.begin(), text.end());
        m_text.push_back(L'\0');
        m_document.parse<0>(m_text.data());
    }
    rapidxml::xml_node<wchar_t>* Root() const { return m_document.first_node(); }

private:
    std::vector<wchar_t> m_text;
    Document m_document;
};

class RapidNode {
public:
    explicit RapidNode(const rapidxml::xml_node<wchar_t>* node) : m_node(node) {}

    QxString Text(std::wstring_view name) const { return Value(name); }
    std::int32_t Number(std::wstring_view name) const { return QxMisc::ParseInt32(Value(name)); }
    bool Flag(std::wstring_view name) const { return QxMisc::ParseBool(Value(name)); }
    QxString Data() const { return std::wstring_view(m_node->value(), m_node->value_size()); }
    QxString Attribute(std::wstring_view name) const {
        const auto* const attribute = m_node->first_attribute(name.data(), name.size());
        return attribute ? std::wstring_view(attribute->value(), attribute->value_size())
                         : std::wstring_view();
    }

    template<class UseNode>
    void Within(std::wstring_view name, UseNode use) const {
        if (const auto* const child = Child(name)) {
            RapidNode node(child);
            use(node);
        }
    }
    template<class UseNode>
    void ForEach(std::wstring_view name, UseNode use) const {
        for (const auto* child = Child(name); child; child = child->next_sibling(name.data(), name.size())) {
            RapidNode node(child);
            use(node);
        }
    }

private:
    const rapidxml::xml_node<wchar_t>* Child(std::wstring_view name) const {
        return m_node->first_node(name.data(), name.size());
    }
    std::wstring_view Value(std::wstring_view name) const {
        const auto* const child = Child(name);
        return child ? std::wstring_view(child->value(), child->value_size()) : std::wstring_view();
    }

    const rapidxml::xml_node<wchar_t>* m_node;
};

} // namespace

JobValues RapidPeer::Read(std::wstring_view text) {
    const Loaded loaded(text);
    RapidNode node(loaded.Root());
    return RecordForm::ReadJob(node);
}

bool RapidPeer::Parse(std::wstring_view text) {
    const Loaded loaded(text);
    return loaded.Root() != nullptr;
}

std::size_t RapidPeer::ReadAttributes(std::wstring_view text) {
    const Loaded loaded(text);
    std::size_t length = 0;
    for (const auto* line = loaded.Root()->first_node(); line; line = line->next_sibling()) {
        for (const XmlName name : LineAttributes)
            length += line->first_attribute(name.data(), name.size())->value_size();
    }
    return length;
}

std::function<std::size_t()> RapidPeer::Walker(std::wstring_view text) {
    const auto loaded = std::make_shared<const Loaded>(text);
    return [loaded] {
        std::size_t count = 0;
        constexpr std::wstring_view lineName = L"CopyLine";
        for (const auto* line = loaded->Root()->first_node(lineName.data(), lineName.size()); line;
             line = line->next_sibling(lineName.data(), lineName.size())) {
            ++count;
            const auto* child = line->first_node(LineElements[0].data(), LineElements[0].size());
            for (std::size_t i = 1; child; ++i) {
                ++count;
                if (i == std::size(LineElements))
                    break;
                child = child->next_sibling(LineElements[i].data(), LineElements[i].size());
            }
        }
        return count;
    };
}

#include "JobAttributeCatalogue.h"

#include "CatalogueFile.h"
#include "JobAttributeCatalogueReader.h"

#include "common/text/NeverDestroyed.h"
#include "common/text/Numbers.h"
#include "common/text/Text.h"
#include "common/log/QxLogger.h"

#include <algorithm>
#include <mutex> // std::lock_guard

using AttributeText::Words;

namespace {

constinit NeverDestroyed<JobAttributeCatalogue> instance;

const CatalogueEntry* Find(const CatalogueMap& map, std::wstring_view name) noexcept {
    const auto found = map.find(name);
    return found == map.end() ? nullptr : &found->second;
}

Words::iterator FindWord(Words& words, const QxString& name) noexcept {
    return std::find_if(words.begin(), words.end(),
                        [&](std::wstring_view word) { return QxMisc::EqualsIgnoreCase(word, name); });
}

/// The code of the first side with this name in any pair; 0 if none.
std::uint32_t PairMask(const std::vector<PageAttributePair>& pairs, std::wstring_view name) noexcept {
    for (const PageAttributePair& pair : pairs) {
        if (QxMisc::EqualsIgnoreCase(pair.first.name, name))
            return pair.first.dbId;
        if (QxMisc::EqualsIgnoreCase(pair.second.name, name))
            return pair.second.dbId;
    }
    return 0;
}

void AppendNames(std::wstring& text, const CatalogueMap& map, std::uint32_t mask) {
    for (const auto& item : map)
        if (item.second.dbId & mask)
            AttributeText::Append(text, item.second.name);
}

/// The pair's side that is among the words; null if neither is. Removes the words.
const CatalogueEntry* TakePairSide(const PageAttributePair& pair, Words& words) {
    const auto first = FindWord(words, pair.first.name);
    const auto second = FindWord(words, pair.second.name);
    const bool hasFirst = first != words.end();
    const bool hasSecond = second != words.end();
    if (hasFirst && hasSecond)
        LogError(L"Both attributes of a pair were present ('%ls','%ls'), using Default.",
                 pair.first.name.c_str(), pair.second.name.c_str());
    const auto [earlier, later] = std::minmax(first, second);
    if (later != words.end() && later != earlier)
        words.erase(later);
    if (hasFirst || hasSecond)
        words.erase(earlier);
    if (hasFirst && hasSecond)
        return &pair.DefaultSide();
    return hasFirst ? &pair.first : hasSecond ? &pair.second : nullptr;
}

} // namespace

JobAttributeCatalogue& TheCatalogue() noexcept {
    return instance.Get();
}

bool LowerCaseLess::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](wchar_t x, wchar_t y) {
        return QxMisc::LowerLetter(x) < QxMisc::LowerLetter(y);
    });
}

QxString PaperSizeEntry::DefaultName() const noexcept {
    const auto found =
        std::find_if(names.begin(), names.end(), [](const auto& name) { return name.isDefault; });
    return found == names.end() ? QxString() : found->name;
}

QxString PaperSizeEntry::Dimensions() const {
    return QxMisc::FormatInt32(x).append(L",").append(QxMisc::FormatInt32(y));
}

/// Read access to the tables for one operation. Holds the lock until a load has succeeded, because the tables
/// may still change; afterwards it costs one atomic read.
class JobAttributeCatalogue::Access {
public:
    explicit Access(JobAttributeCatalogue& catalogue) : m_catalogue(catalogue) {
        catalogue.EnsureLoaded();
        m_locked = !catalogue.m_loaded.load(std::memory_order_acquire);
        if (m_locked)
            catalogue.m_lock.lock();
    }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;
    ~Access() {
        if (m_locked)
            m_catalogue.m_lock.unlock();
    }

    const CatalogueTables* operator->() const noexcept { return m_catalogue.m_tables.get(); }
    const CatalogueTables& operator*() const noexcept { return *m_catalogue.m_tables; }

private:
    JobAttributeCatalogue& m_catalogue;
    bool m_locked;
};

void JobAttributeCatalogue::EnsureLoaded() {
    if (m_loaded.load(std::memory_order_acquire))
        return;
    const std::lock_guard guard(m_lock);
    if (m_loaded.load(std::memory_order_relaxed))
        return;
    if (!m_tables)
        m_tables = std::make_unique<CatalogueTables>();
    std::wstring text;
    if (ReadCatalogueFile(text) && ReadCatalogue(text, *m_tables))
        m_loaded.store(true, std::memory_order_release);
}

void JobAttributeCatalogue::Unload() noexcept {
    m_loaded.store(false, std::memory_order_relaxed);
    m_tables.reset();
}

std::uint32_t JobAttributeCatalogue::PaperDbIdFromName(std::wstring_view name) {
    const Access tables(*this);
    if (const auto found = tables->paperNames.find(name); found != tables->paperNames.end())
        return tables->paperSizes[found->second].dbId;
    LogError(L"Could not resolve PaperSize entry for '%ls'.", std::wstring(name).c_str());
    return 0;
}

JobAttributeCatalogue::Paper JobAttributeCatalogue::PaperFromAttributeWords(Words& words) {
    const Access tables(*this);
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (const auto found = tables->paperNames.find(*word); found != tables->paperNames.end()) {
            Paper paper{*word, tables->paperSizes[found->second].Dimensions()};
            words.erase(word);
            return paper;
        }
    }
    for (const PaperSizeEntry& size : tables->paperSizes)
        if (size.isDefault)
            return {size.DefaultName(), size.Dimensions()};
    return {};
}

bool JobAttributeCatalogue::PaperFromDbId(std::uint32_t dbId, Paper& paper) {
    const Access tables(*this);
    const auto& sizes = tables->paperSizes;
    if (dbId == 0 || dbId > sizes.size())
        return false;
    const PaperSizeEntry* size = &sizes[dbId - 1];
    if (size->dbId != dbId) {
        const auto found = std::find_if(sizes.begin(), sizes.end(),
                                        [dbId](const PaperSizeEntry& other) { return other.dbId == dbId; });
        if (found != sizes.end())
            size = &*found;
    }
    paper = {size->DefaultName(), size->Dimensions()};
    return true;
}

std::uint32_t JobAttributeCatalogue::AttributeMaskFromNames(std::wstring_view names) {
    const Access tables(*this);
    std::uint32_t mask = 0;
    AttributeText::ForEachPiece(names, L',', [&](std::wstring_view name) {
        const CatalogueEntry* entry = Find(tables->pageAttributes, name);
        mask |= entry ? entry->dbId : PairMask(tables->pageAttributePairs, name);
    });
    if (!names.empty() && mask == 0)
        LogError(L"Supplied PageAttributes '%ls' did not match any attributes.", std::wstring(names).c_str());
    return mask;
}

QxString JobAttributeCatalogue::AttributeNamesFromMask(std::uint32_t mask) {
    if (mask == 0)
        return {};
    const Access tables(*this);
    std::wstring text;
    for (const PageAttributePair& pair : tables->pageAttributePairs) {
        if (pair.first.dbId & mask)
            AttributeText::Append(text, pair.first.name);
        else if (pair.second.dbId & mask)
            AttributeText::Append(text, pair.second.name);
    }
    AppendNames(text, tables->pageAttributes, mask);
    AttributeText::RemoveTrailingComma(text);
    if (text.empty())
        LogError(L"Supplied DB PageAttributes id '0x%x' did not match any attributes.", mask);
    return text;
}

std::wstring JobAttributeCatalogue::NormalizePageAttributes(Words& words, bool addDefaults) {
    const Access tables(*this);
    std::wstring text;
    for (const PageAttributePair& pair : tables->pageAttributePairs) {
        const CatalogueEntry* side = TakePairSide(pair, words);
        if (!side && addDefaults)
            side = &pair.DefaultSide();
        if (side)
            AttributeText::Append(text, side->name);
    }
    std::erase_if(words, [&](std::wstring_view word) {
        const CatalogueEntry* entry = Find(tables->pageAttributes, word);
        if (entry)
            AttributeText::Append(text, entry->name);
        return entry != nullptr;
    });
    AttributeText::RemoveTrailingComma(text);
    return text;
}

std::uint32_t JobAttributeCatalogue::FinishingMaskFromNames(std::wstring_view names) {
    const Access tables(*this);
    std::uint32_t mask = 0;
    AttributeText::ForEachPiece(names, L',', [&](std::wstring_view name) {
        if (const CatalogueEntry* entry = Find(tables->finishingAttributes, name))
            mask |= entry->dbId;
    });
    if (!names.empty() && mask == 0)
        LogError(L"Supplied JobFinishing '%ls' did not match any finishing options.",
                 std::wstring(names).c_str());
    return mask;
}

QxString JobAttributeCatalogue::FinishingNamesFromMask(std::uint32_t mask) {
    if (mask == 0)
        return {};
    const Access tables(*this);
    std::wstring text;
    AppendNames(text, tables->finishingAttributes, mask);
    AttributeText::RemoveTrailingComma(text);
    if (text.empty())
        LogError(L"Supplied JobFinishing DB id '0x%x' was invalid.", mask);
    return text;
}

std::uint32_t JobAttributeCatalogue::PdlDbIdFromName(std::wstring_view name) {
    std::uint32_t dbId = 0;
    // Once, not recursively: the default may not resolve either.
    if (!FindPdl(name, dbId))
        FindPdl(DefaultEntryName(&CatalogueTables::pdls), dbId);
    return dbId;
}

bool JobAttributeCatalogue::FindPdl(std::wstring_view name, std::uint32_t& dbId) {
    const Access tables(*this);
    if (const CatalogueEntry* entry = Find(tables->pdls, name)) {
        dbId = entry->dbId;
        return true;
    }
    LogError(L"Supplied JobPdl '%ls' was not found.", std::wstring(name).c_str());
    return false;
}

QxString JobAttributeCatalogue::PdlNameFromDbId(std::uint32_t dbId) {
    {
        const Access tables(*this);
        for (const auto& item : tables->pdls)
            if (item.second.dbId == dbId)
                return item.second.name;
    }
    LogError(L"Supplied JobPdl DB id '0x%x' was invalid. Using Default.", dbId);
    return DefaultEntryName(&CatalogueTables::pdls);
}

JobAttributeCatalogue::JobOptions JobAttributeCatalogue::JobOptionsFromAttributeWords(Words& words) {
    std::wstring finishing;
    std::wstring pdl;
    bool hasPdl = false;
    {
        const Access tables(*this);
        std::erase_if(words, [&](std::wstring_view word) {
            if (const CatalogueEntry* option = Find(tables->finishingAttributes, word)) {
                AttributeText::Append(finishing, option->name);
                return true;
            }
            const CatalogueEntry* entry = hasPdl ? nullptr : Find(tables->pdls, word);
            if (!entry)
                return false;
            pdl = entry->name.view();
            return hasPdl = true;
        });
    }
    if (!hasPdl)
        pdl = DefaultEntryName(&CatalogueTables::pdls).view();
    AttributeText::RemoveTrailingComma(pdl);
    AttributeText::RemoveTrailingComma(finishing);
    return {pdl, finishing};
}

QxString JobAttributeCatalogue::DefaultEntryName(CatalogueMap CatalogueTables::* map) {
    const Access tables(*this);
    for (const auto& item : (*tables).*map)
        if (item.second.isDefault)
            return item.second.name;
    return {};
}

JobAttributeCatalogue::~JobAttributeCatalogue() = default;

// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/Xml.h"

#include <expat.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <unordered_set>

namespace telvo::table {

namespace {

constexpr std::size_t BlockBytes = 65536;

std::string_view localName(std::string_view name) {
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const {
        return std::hash<std::string_view>()(name);
    }
};

struct Reading {
    XmlHandler& handler;
    XmlBudget& budget;
    XML_Parser parser;
    int depth = 0;
    // The parser keeps every name that it meets for good.
    std::unordered_set<std::string, NameHash, std::equal_to<>> elements;
    std::unordered_set<const char*> attributes; // one pointer for each name
};

/// Calls the handler; nothing may be thrown through the parser.
template <typename Call>
void guarded(void* data, Call&& call) {
    auto& reading = *static_cast<Reading*>(data);
    XmlHandler& handler = reading.handler;
    if (handler.stopped()) return;
    try {
        call(reading);
    } catch (const std::bad_alloc&) {
        handler.fail("there is not enough memory to read it");
    } catch (const std::exception& error) {
        handler.fail(error.what());
    }
    if (handler.stopped()) XML_StopParser(reading.parser, XML_FALSE);
}

void pay(Reading& reading, XmlBudget::Event event) {
    if (!reading.budget.pay(event))
        reading.handler.fail("has more cells and other elements than a table of cases can have");
}

void payForElement(Reading& reading, std::string_view name, const char** attributes) {
    const bool cell = name == "c" || name == "v" || name == "row" || name == "f";
    pay(reading, cell ? XmlBudget::CellElement : XmlBudget::OtherElement);
    if (++reading.depth > MaxXmlDepth)
        reading.handler.fail("has elements nested deeper than " + std::to_string(MaxXmlDepth));
    if (!cell && !reading.elements.contains(name)) reading.elements.emplace(name);
    for (const char** pair = attributes; *pair; pair += 2)
        reading.attributes.insert(*pair);
    if (reading.elements.size() > MaxXmlNames || reading.attributes.size() > MaxXmlNames)
        reading.handler.fail("has more kinds of elements than any workbook");
}

void XMLCALL onStart(void* data, const char* name, const char** attributes) {
    guarded(data, [&](Reading& reading) {
        payForElement(reading, localName(name), attributes);
        if (!reading.handler.stopped())
            reading.handler.start(localName(name), XmlAttributes(attributes));
    });
}

void XMLCALL onEnd(void* data, const char* name) {
    guarded(data, [&](Reading& reading) {
        --reading.depth;
        reading.handler.end(localName(name));
    });
}

void XMLCALL onCharacters(void* data, const char* text, int length) {
    guarded(data, [&](Reading& reading) {
        pay(reading, XmlBudget::Characters);
        reading.handler.characters({text, static_cast<std::size_t>(length)});
    });
}

void XMLCALL onDoctype(void* data, const char*, const char*, const char*, int) {
    guarded(data, [](Reading& reading) { reading.handler.fail("has a document type"); });
}

/// Fills a block; less than the size only at the end of the part. Returned: bytes.
Result<std::size_t> fill(const PartReader& part, char* block, std::size_t size) {
    std::size_t had = 0;
    while (had < size) {
        const auto got = part(block + had, size - had);
        if (!got) return got.fault();
        if (*got == 0) break;
        had += *got;
    }
    return had;
}

} // namespace

std::string_view XmlAttributes::value(std::string_view name) const {
    for (const char** pair = m_pairs; *pair; pair += 2)
        if (localName(*pair) == name) return pair[1];
    return {};
}

std::optional<std::string> XmlBudget::ended() const {
    if (m_watch.stopped()) return ReadingStopped;
    if (std::chrono::steady_clock::now() - m_begin > MostTime)
        return "reading it takes longer than " + std::to_string(MostTime.count()) +
               " s; save the table as CSV";
    return std::nullopt;
}

Status readXml(const PartReader& part, XmlHandler& handler, const std::string& where,
               XmlBudget& budget) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    const Fault noMemory{"there is not enough memory to read it", where};
    if (!parser) return noMemory;
    Reading reading{handler, budget, parser.get(), 0, {}, {}};
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser.get(), onCharacters);
    XML_SetStartDoctypeDeclHandler(parser.get(), onDoctype);
    std::uint64_t fed = 0;
    std::size_t size = BlockBytes;
    while (!handler.stopped()) {
        if (const auto why = budget.ended()) return Fault{*why, where};
        void* block = XML_GetBuffer(parser.get(), static_cast<int>(size));
        if (!block) return noMemory;
        const auto got = fill(part, static_cast<char*>(block), size);
        if (!got) return Fault{got.fault().message, where};
        const bool last = *got < size;
        if (XML_ParseBuffer(parser.get(), static_cast<int>(*got), last) != XML_STATUS_OK &&
            !handler.stopped()) {
            if (XML_GetErrorCode(parser.get()) == XML_ERROR_NO_MEMORY) return noMemory;
            return Fault{
                "is damaged: " + std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) +
                    ", line " + std::to_string(XML_GetCurrentLineNumber(parser.get())),
                where};
        }
        if (last) break;
        fed += *got;
        // The parser reads a token that is not whole again from its start, so that a long one would
        // take time by the square of its length: blocks grow with what waits.
        const auto read = XML_GetCurrentByteIndex(parser.get());
        const std::uint64_t waiting =
            fed - std::min(fed, static_cast<std::uint64_t>(std::max<XML_Index>(read, 0)));
        if (waiting > MaxXmlToken)
            return Fault{"has a tag or a comment of more than " +
                             std::to_string(MaxXmlToken >> 20) + " MB",
                         where};
        size = std::max(BlockBytes, static_cast<std::size_t>(waiting));
    }
    if (handler.fault()) return Fault{*handler.fault(), where};
    return success();
}

} // namespace telvo::table

// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/Xml.h"

#include <expat.h>

#include <exception>
#include <memory>

namespace telvo::table {

namespace {

constexpr int BlockBytes = 65536;

std::string_view localName(std::string_view name) {
    const auto colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

struct Reading {
    XmlHandler& handler;
    XML_Parser parser;
};

/// Calls the handler; nothing may be thrown through the parser.
template <typename Call>
void guarded(void* data, Call&& call) {
    auto& reading = *static_cast<Reading*>(data);
    if (reading.handler.stopped()) return;
    try {
        call(reading.handler);
    } catch (const std::exception& error) {
        reading.handler.fail(error.what());
    }
    if (reading.handler.stopped()) XML_StopParser(reading.parser, XML_FALSE);
}

void XMLCALL onStart(void* data, const char* name, const char** attributes) {
    guarded(data, [&](XmlHandler& handler) {
        handler.start(localName(name), XmlAttributes(attributes));
    });
}

void XMLCALL onEnd(void* data, const char* name) {
    guarded(data, [&](XmlHandler& handler) { handler.end(localName(name)); });
}

void XMLCALL onCharacters(void* data, const char* text, int length) {
    guarded(data, [&](XmlHandler& handler) {
        handler.characters({text, static_cast<std::size_t>(length)});
    });
}

void XMLCALL onDoctype(void* data, const char*, const char*, const char*, int) {
    guarded(data, [](XmlHandler& handler) { handler.fail("has a document type"); });
}

} // namespace

std::string_view XmlAttributes::value(std::string_view name) const {
    for (const char** pair = m_pairs; *pair; pair += 2)
        if (localName(*pair) == name) return pair[1];
    return {};
}

Status readXml(const PartReader& part, XmlHandler& handler, const std::string& where) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    if (!parser) return Fault{"not enough memory", where};
    Reading reading{handler, parser.get()};
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser.get(), onCharacters);
    XML_SetStartDoctypeDeclHandler(parser.get(), onDoctype);
    while (!handler.stopped()) {
        void* block = XML_GetBuffer(parser.get(), BlockBytes);
        if (!block) return Fault{"not enough memory", where};
        const auto got = part(static_cast<char*>(block), BlockBytes);
        if (!got) return Fault{got.fault().message, where};
        const bool last = *got == 0;
        if (XML_ParseBuffer(parser.get(), static_cast<int>(*got), last) != XML_STATUS_OK &&
            !handler.stopped())
            return Fault{
                "is damaged: " + std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) +
                    ", line " + std::to_string(XML_GetCurrentLineNumber(parser.get())),
                where};
        if (last) break;
    }
    if (handler.fault()) return Fault{*handler.fault(), where};
    return success();
}

} // namespace telvo::table

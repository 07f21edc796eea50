// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "table/ReadWatch.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace telvo::table {

/// Gives the next bytes of a part of a workbook; 0 at its end.
using PartReader = std::function<Result<std::size_t>(char* into, std::size_t size)>;

/// Attributes of an element.
class XmlAttributes {
  public:
    explicit XmlAttributes(const char** pairs) : m_pairs(pairs) {}
    /// The value of an attribute, whatever its name space; empty where there is none.
    std::string_view value(std::string_view name) const;

  private:
    const char** m_pairs;
};

/// Takes the elements of an XML text as they come. Names are without their name space.
class XmlHandler {
  public:
    virtual ~XmlHandler() = default;
    virtual void start(std::string_view name, const XmlAttributes& attributes) = 0;
    virtual void end(std::string_view name) = 0;
    virtual void characters(std::string_view) {}

    /// Ends the reading before the end of the text.
    void stop() { m_stopped = true; }
    void fail(std::string why) {
        if (!m_fault) m_fault = std::move(why);
        stop();
    }
    bool stopped() const { return m_stopped; }
    const std::optional<std::string>& fault() const { return m_fault; }

  private:
    bool m_stopped = false;
    std::optional<std::string> m_fault;
};

/// What the parts of one workbook may cost together, whatever they hold. A small packed file can
/// ask for any amount of memory and time; bytes alone do not bound either.
class XmlBudget {
  public:
    explicit XmlBudget(const ReadWatch& watch) : m_watch(watch) {}

    /// What a parser finds. Rows, cells and their values are nearly all of a workbook.
    enum Event { CellElement, OtherElement, Characters };
    /// Pays for an event. False when nothing is left.
    bool pay(Event event) { return m_left[event] > 0 && --m_left[event] > 0; }
    /// Why the reading has to end: it was stopped, or has taken too long.
    std::optional<std::string> ended() const;
    const ReadWatch& watch() const { return m_watch; }

  private:
    static constexpr std::chrono::seconds MostTime{120};

    const ReadWatch& m_watch;
    // A table of the most rows with every column has 21 million cells and values.
    std::uint64_t m_left[3] = {40'000'000, 5'000'000, 40'000'000};
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

/// Deepest nesting of elements; a workbook has some 10.
inline constexpr int MaxXmlDepth = 64;
/// Most bytes of a tag with its attributes, or of a comment.
inline constexpr std::size_t MaxXmlToken = std::size_t{1} << 20;
/// Most different names of elements, and of attributes; a part has some 100.
inline constexpr std::size_t MaxXmlNames = 2000;

/// Reads XML block by block, never as a whole. A document type is refused: workbooks have none, and
/// entities can blow a small text up.
/// Faults: what the handler refuses, a text that is no XML, one beyond the limits, bytes that
/// cannot be read, too little memory.
Status readXml(const PartReader& part, XmlHandler& handler, const std::string& where,
               XmlBudget& budget);

} // namespace telvo::table

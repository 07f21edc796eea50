// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
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

/// Reads XML block by block, never as a whole. A document type is refused: workbooks have none, and
/// entities can blow a small text up.
/// Faults: what the handler refuses, a text that is no XML, bytes that cannot be read.
Status readXml(const PartReader& part, XmlHandler& handler, const std::string& where);

} // namespace telvo::table

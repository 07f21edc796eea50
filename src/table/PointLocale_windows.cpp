// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/PointLocale.h"

#include <locale.h>
#include <string>

namespace telvo::table {

struct PointLocale::Before {
    int mode = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
    std::string locale = setlocale(LC_NUMERIC, nullptr);
};

PointLocale::PointLocale() : m_before(std::make_unique<Before>()) {
    setlocale(LC_NUMERIC, "C");
}

PointLocale::~PointLocale() {
    setlocale(LC_NUMERIC, m_before->locale.c_str());
    _configthreadlocale(m_before->mode);
}

} // namespace telvo::table

// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/PointLocale.h"

#include <locale.h>

namespace telvo::table {

struct PointLocale::Before {
    locale_t point = newlocale(LC_ALL_MASK, "C", nullptr);
    locale_t locale = uselocale(point);
};

PointLocale::PointLocale() : m_before(std::make_unique<Before>()) {}

PointLocale::~PointLocale() {
    uselocale(m_before->locale);
    freelocale(m_before->point);
}

} // namespace telvo::table

// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/units.h"

#include <gtest/gtest.h>

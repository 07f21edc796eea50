// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>

namespace telvo {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Decimal digits d1 d2 d3 ... of |value| with value = d1.d2d3... x 10^exponent.
struct Decimal {
    std::array<char, 32> digits; // the first `count` are set
    int count = 0;
    int exponent = 0;
    bool negative = false;

    bool isZero() const {
        return std::all_of(digits.begin(), digits.begin() + count, [](char c) { return c == '0'; });
    }
};

/// Takes apart what to_chars wrote in scientific form: [-]d[.ddd]e(+|-)dd.
Decimal takeApart(const char* first, const char* last) {
    Decimal decimal;
    if (*first == '-') {
        decimal.negative = true;
        ++first;
    }
    const char* const exponent = std::find(first, last, 'e');
    assert(exponent != last);
    decimal.digits[0] = *first;
    decimal.count = 1;
    if (first + 1 != exponent) { // ".ddd"
        std::copy(first + 2, exponent, decimal.digits.begin() + 1);
        decimal.count = static_cast<int>(exponent - first) - 1;
    }
    first = exponent + 1;
    if (*first == '+') ++first;
    std::from_chars(first, last, decimal.exponent);
    return decimal;
}

template <typename Number>
Decimal shortestDigits(Number value) {
    std::array<char, 48> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::scientific);
    return takeApart(buffer.data(), end.ptr);
}

Decimal roundedDigits(double value, int significant) {
    std::array<char, 48> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::scientific, significant - 1);
    return takeApart(buffer.data(), end.ptr);
}

/// Keeps the first `keep` digits, rounding half away from zero. `keep` may be 0 or negative.
void roundDigits(Decimal& decimal, int keep) {
    if (keep >= decimal.count) return;
    const bool up = keep >= 0 && decimal.digits[static_cast<std::size_t>(keep)] >= '5';
    decimal.count = std::max(keep, 0);
    if (!up) return;
    int i = decimal.count - 1;
    for (; i >= 0; --i) {
        char& digit = decimal.digits[static_cast<std::size_t>(i)];
        if (digit != '9') {
            ++digit;
            return;
        }
        digit = '0';
    }
    // A carry out of the first digit: 999 becomes 1000, one digit more in front.
    std::copy_backward(decimal.digits.begin(), decimal.digits.begin() + decimal.count,
                       decimal.digits.begin() + decimal.count + 1);
    decimal.digits[0] = '1';
    ++decimal.count;
    ++decimal.exponent;
}

void appendExponent(std::string& out, int exponent) {
    out += exponent < 0 ? "E-" : "E+";
    const int size = std::abs(exponent);
    if (size < 10) out += '0';
    std::array<char, 12> buffer;
    out.append(buffer.data(), std::to_chars(buffer.data(), buffer.data() + 12, size).ptr);
}

/// Lays the digits out in general number format: plain between 1E-5 and 1E15, else with exponent.
void appendGeneral(std::string& out, const Decimal& decimal) {
    int count = decimal.count;
    while (count > 0 && decimal.digits[static_cast<std::size_t>(count - 1)] == '0')
        --count;
    if (count == 0) {
        out += '0';
        return;
    }
    const char* digits = decimal.digits.data();
    const auto size = static_cast<std::size_t>(count);
    if (decimal.negative) out += '-';
    if (decimal.exponent < -5 || decimal.exponent >= 15) {
        out += digits[0];
        if (count > 1) {
            out += '.';
            out.append(digits + 1, size - 1);
        }
        appendExponent(out, decimal.exponent);
    } else if (decimal.exponent < 0) {
        out += "0.";
        out.append(static_cast<std::size_t>(-decimal.exponent - 1), '0');
        out.append(digits, size);
    } else {
        const auto whole = static_cast<std::size_t>(decimal.exponent + 1);
        if (size <= whole) {
            out.append(digits, size);
            out.append(whole - size, '0');
        } else {
            out.append(digits, whole);
            out += '.';
            out.append(digits + whole, size - whole);
        }
    }
}

std::string nonFinite(double value) {
    return std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
}

/// What a number pattern asks for.
struct Pattern {
    int requiredWhole = 0; ///< "0" before the "."
    int decimals = 0;
    bool exponent = false;
};

Pattern readPattern(std::string_view text) {
    Pattern pattern;
    bool afterPoint = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == 'E') {
            pattern.exponent = true;
            break;
        }
        if (text[i] == '.')
            afterPoint = true;
        else if (afterPoint)
            ++pattern.decimals;
        else if (text[i] == '0')
            ++pattern.requiredWhole;
    }
    return pattern;
}

std::string formatExponent(Decimal decimal, const Pattern& pattern) {
    std::string out;
    if (decimal.isZero()) {
        out.append(static_cast<std::size_t>(pattern.requiredWhole), '0');
        out += '.';
        out.append(static_cast<std::size_t>(pattern.decimals), '0');
        out += "E+00";
        return out;
    }
    roundDigits(decimal, 1 + pattern.decimals);
    if (decimal.negative) out += '-';
    out += decimal.digits[0];
    out += '.';
    out.append(decimal.digits.data() + 1, static_cast<std::size_t>(pattern.decimals));
    appendExponent(out, decimal.exponent);
    return out;
}

} // namespace

std::optional<LeadingNumber> leadingNumber(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && isBlank(text[at]))
        ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;

    const std::size_t mantissa = at;
    bool anyDigit = false;
    bool point = false;
    // Power of ten of the first digit that is not zero; it tells an overflow from an underflow.
    long long magnitude = 0;
    bool significant = false;
    long long wholeDigits = 0;
    long long leadingZeros = 0;
    for (; at < text.size(); ++at) {
        if (isDigit(text[at])) {
            anyDigit = true;
            significant = significant || text[at] != '0';
            if (!point && significant) ++wholeDigits;
            if (point && !significant) ++leadingZeros;
        } else if (text[at] == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (!anyDigit) return std::nullopt;
    magnitude = wholeDigits > 0 ? wholeDigits : -leadingZeros;
    const std::size_t mantissaEnd = at;

    long long exponent = 0;
    if (at < text.size() &&
        (text[at] == 'E' || text[at] == 'e' || text[at] == 'D' || text[at] == 'd')) {
        std::size_t digit = at + 1;
        const bool negativeExponent = digit < text.size() && text[digit] == '-';
        if (digit < text.size() && (text[digit] == '-' || text[digit] == '+')) ++digit;
        if (digit < text.size() && isDigit(text[digit])) {
            constexpr long long limit = 1'000'000'000'000LL;
            for (; digit < text.size() && isDigit(text[digit]); ++digit)
                exponent = std::min(limit, exponent * 10 + (text[digit] - '0'));
            if (negativeExponent) exponent = -exponent;
            at = digit;
        }
    }

    if (!significant) return LeadingNumber{0.0, at};
    magnitude += exponent;
    if (magnitude > 320) return std::nullopt;
    if (magnitude < -400) return LeadingNumber{0.0, at};

    std::string canonical(text.substr(mantissa, mantissaEnd - mantissa));
    canonical += 'e';
    std::array<char, 24> buffer;
    canonical.append(buffer.data(),
                     std::to_chars(buffer.data(), buffer.data() + buffer.size(), exponent).ptr);
    double value = 0;
    const auto read = std::from_chars(canonical.data(), canonical.data() + canonical.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        if (magnitude > 0) return std::nullopt;
        value = 0;
    }
    return LeadingNumber{negative ? -value : value, at};
}

std::optional<double> numberOf(std::string_view text) {
    text = trimmed(text);
    const auto number = leadingNumber(text);
    if (!number || number->length != text.size() || !std::isfinite(number->value))
        return std::nullopt;
    return number->value;
}

double leadingValue(std::string_view text) {
    const auto number = leadingNumber(text);
    return number ? number->value : 0.0;
}

std::int16_t leadingInteger(std::string_view text) {
    constexpr double low = std::numeric_limits<std::int16_t>::min();
    constexpr double high = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::clamp(std::nearbyint(leadingValue(text)), low, high));
}

void appendGeneralNumber(std::string& out, double value) {
    if (!std::isfinite(value))
        out += nonFinite(value);
    else
        appendGeneral(out, shortestDigits(value));
}

std::string generalNumber(double value) {
    std::string out;
    appendGeneralNumber(out, value);
    return out;
}

std::string generalNumber(float value) {
    if (!std::isfinite(value)) return nonFinite(value);
    std::string out;
    appendGeneral(out, shortestDigits(value));
    return out;
}

std::string generalNumber(int value) {
    return std::to_string(value);
}

std::string generalNumber(double value, int digits) {
    assert(digits >= 1 && digits <= 17);
    if (!std::isfinite(value)) return nonFinite(value);
    const Decimal shortest = shortestDigits(value);
    std::string out;
    appendGeneral(out, shortest.count <= digits ? shortest : roundedDigits(value, digits));
    return out;
}

std::string groupedCount(std::size_t count) {
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, 1, ',');
    return text;
}

std::string formatPattern(double value, std::string_view text) {
    if (!std::isfinite(value)) return nonFinite(value);
    const Pattern pattern = readPattern(text);
    Decimal decimal = roundedDigits(value, 15);
    if (pattern.exponent) return formatExponent(decimal, pattern);

    roundDigits(decimal, decimal.exponent + 1 + pattern.decimals);
    // Position -1 is the tenths digit, 0 the units digit, and so on.
    const auto digitAt = [&](int power) {
        const int index = decimal.exponent - power;
        return index >= 0 && index < decimal.count ? decimal.digits[static_cast<std::size_t>(index)]
                                                   : '0';
    };
    std::string out;
    if (decimal.negative && !decimal.isZero()) out += '-';
    const bool zero = decimal.isZero();
    const int wholeDigits = zero ? 0 : std::max(decimal.exponent + 1, 0);
    for (int power = std::max(wholeDigits, pattern.requiredWhole) - 1; power >= 0; --power)
        out += digitAt(power);
    if (pattern.decimals > 0) {
        out += '.';
        for (int power = -1; power >= -pattern.decimals; --power)
            out += digitAt(power);
    }
    return out;
}

double roundHalfEven2(double value) {
    const double hundredths = value * 100;
    // Beyond this size every double is a whole number of hundredths, and x * 100 may overflow.
    if (!std::isfinite(hundredths)) return value;
    return std::nearbyint(hundredths) / 100;
}

} // namespace telvo

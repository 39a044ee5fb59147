#include "QZENumberScanner.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <string>

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

} // namespace

std::string_view QZENumberScanner::firstLine(const char* data, size_t size)
{
    const void* lineBreak = size ? std::memchr(data, '\n', size) : nullptr;
    return std::string_view(data, lineBreak ? size_t(static_cast<const char*>(lineBreak) - data) : size);
}

const char* QZENumberScanner::skipSpace()
{
    while (_pos < _end && isSpace(*_pos))
        ++_pos;
    return _pos;
}

// from_chars takes a '-' but not the '+' that C literals and streams accept.
const char* QZENumberScanner::skipPlus(const char* p) const
{
    return (p < _end && *p == '+' && p + 1 < _end && *(p + 1) != '-' && *(p + 1) != '+') ? p + 1 : p;
}

bool QZENumberScanner::fail()
{
    _failed = true;
    return false;
}

std::string_view QZENumberScanner::nextWord()
{
    const char* begin = skipSpace();
    while (_pos < _end && !isSpace(*_pos))
        ++_pos;
    return std::string_view(begin, size_t(_pos - begin));
}

template <typename Number>
bool QZENumberScanner::nextNumber(Number& value)
{
    value = Number(0);
    _lastError = std::errc();
    if (_failed || skipSpace() == _end)
        return fail();
    Number parsed = Number(0);
    const std::from_chars_result result = std::from_chars(skipPlus(_pos), _end, parsed);
    _lastError = result.ec;
    _lastEnd = result.ptr;
    if (result.ec != std::errc())
        return fail();
    _pos = result.ptr;
    value = parsed;
    return true;
}

bool QZENumberScanner::next(float& value)
{
    const char* start = _pos;
    if (nextNumber(value))
        return true;
    // from_chars calls a literal too small for a float out of range; a stream
    // reads it as 0 (or a denormal) and goes on, and so do we. Only a value too
    // large for a float stays a failure.
    if (_lastError != std::errc::result_out_of_range)
        return false;
    const float tiny = parseOutOfRange(start, _lastEnd);
    if (std::isinf(tiny))
        return false;
    _failed = false;
    _pos = _lastEnd;
    value = tiny;
    return true;
}

// strtof in the C locale (whatever the process's locale) on an out-of-range literal.
float QZENumberScanner::parseOutOfRange(const char* begin, const char* end)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    const std::string literal(begin, end);
    return strtof_l(literal.c_str(), nullptr, cLocale);
}

bool QZENumberScanner::nextInt(int& value)
{
    return nextNumber(value);
}

bool QZENumberScanner::canHold(size_t count) const
{
    const size_t available = size_t(_end - _pos);
    return count == 0 || (available + 1) / 2 >= count;
}

size_t QZENumberScanner::nextWordOffset()
{
    return size_t(skipSpace() - _begin);
}

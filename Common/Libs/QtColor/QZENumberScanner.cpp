#include "QZENumberScanner.h"

#include <charconv>
#include <cstring>

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
    if (_failed || skipSpace() == _end)
        return fail();
    Number parsed = Number(0);
    const std::from_chars_result result = std::from_chars(skipPlus(_pos), _end, parsed);
    if (result.ec != std::errc())
        return fail();
    _pos = result.ptr;
    value = parsed;
    return true;
}

bool QZENumberScanner::next(float& value)
{
    return nextNumber(value);
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

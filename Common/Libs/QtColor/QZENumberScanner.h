#ifndef QZENUMBERSCANNER_H
#define QZENUMBERSCANNER_H

#include <cstddef>
#include <string_view>
#include <system_error>

// Reads white-space separated numbers from bytes in memory, the way a C++
// stream extracts them but independent of the locale and without copying.
// Each number is a C floating-point literal (an optional sign, digits with a
// '.', an optional exponent; also inf and nan). As on a stream, a literal too
// small for a float reads as 0 (or a denormal) and one too large fails.
// Failure is sticky: once a number is missing, malformed or too large, every
// later read fails too and yields 0.
class QZENumberScanner
{
public:
    QZENumberScanner(const char* data, size_t size) : _begin(data), _pos(data), _end(data + size)
    {
    }

    // The bytes up to the first line break (the whole data when there is none).
    static std::string_view firstLine(const char* data, size_t size);

    std::string_view nextWord();
    bool next(float& value);
    bool nextInt(int& value);

    // Whether the unread bytes are long enough to hold count numbers (one
    // character each, separated by white space). Lets a reader refuse an
    // announced count before allocating for it.
    bool canHold(size_t count) const;

    // Where the next word begins, counted in bytes from the start of the
    // data: the data's size when only white space is left unread.
    size_t nextWordOffset();

private:
    const char* skipSpace();
    const char* skipPlus(const char* p) const;
    bool fail();
    template <typename Number>
    bool nextNumber(Number& value);
    static float parseOutOfRange(const char* begin, const char* end);

    const char* _begin;
    const char* _pos;
    const char* _end;
    bool _failed = false;
    std::errc _lastError = std::errc(); // of the last from_chars call
    const char* _lastEnd = nullptr;     // where that call stopped
};

#endif // QZENUMBERSCANNER_H

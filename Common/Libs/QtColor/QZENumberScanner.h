#ifndef QZENUMBERSCANNER_H
#define QZENUMBERSCANNER_H

#include <cstddef>
#include <string_view>

// Reads white-space separated numbers from bytes in memory, the way a C++
// stream extracts them but independent of the locale and without copying.
// Each number is a C floating-point literal (an optional sign, digits with a
// '.', an optional exponent; also inf and nan). Failure is sticky, as on a
// stream: once a number is missing or malformed, every later read fails too
// and yields 0.
class QZENumberScanner
{
public:
    QZENumberScanner(const char* data, size_t size) : _pos(data), _end(data + size) {}

    // The bytes up to the first line break (the whole data when there is none).
    static std::string_view firstLine(const char* data, size_t size);

    std::string_view nextWord();
    bool next(float& value);
    bool nextInt(int& value);

    // Whether the unread bytes are long enough to hold count numbers (one
    // character each, separated by white space). Lets a reader refuse an
    // announced count before allocating for it.
    bool canHold(size_t count) const;

private:
    const char* skipSpace();
    const char* skipPlus(const char* p) const;
    bool fail();
    template <typename Number>
    bool nextNumber(Number& value);

    const char* _pos;
    const char* _end;
    bool _failed = false;
};

#endif // QZENUMBERSCANNER_H

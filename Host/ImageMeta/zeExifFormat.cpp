#include "zeExifFormat.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

namespace {

// What EXIF stores as the numerator 0xFFFFFFFF of an unsigned rational;
// signed readers of the same bits see -1.
constexpr long long InfinityCode = 0xFFFFFFFFLL;

// Decimals longer than this are not what EXIF writers produce and would
// overflow the exact conversion.
constexpr std::size_t MaxDecimalDigits = 18;

std::vector<std::string> components(const std::string& value)
{
    std::istringstream stream(value);
    std::vector<std::string> parts;
    for (std::string part; stream >> part;)
        parts.push_back(part);
    return parts;
}

bool parseInteger(const std::string& text, long long& number)
{
    const char* begin = text.data();
    const char* end = begin + text.size();
    if (end - begin > 1 && *begin == '+' && begin[1] != '-')
        ++begin;
    const auto result = std::from_chars(begin, end, number);
    return begin != end && result.ec == std::errc() && result.ptr == end;
}

bool allDigits(const std::string& text)
{
    return text.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

std::string zeExifFormat::exposureTime(const std::string& value)
{
    Rational time;
    if (!parseFirst(value, time) || !isPositive(time))
        return std::string();
    const double seconds = time.value();
    if (seconds < 1.0) {
        const double divisor = std::round(1.0 / seconds);
        if (std::abs(divisor * seconds - 1.0) <= 0.05)
            return "1/" + decimal(divisor, 0);
    }
    return decimal(seconds, 2);
}

std::string zeExifFormat::fNumber(const std::string& value)
{
    Rational number;
    if (!parseFirst(value, number) || !isPositive(number))
        return std::string();
    return decimal(number.value(), 1);
}

std::string zeExifFormat::apex(const std::string& value)
{
    Rational number;
    if (!parseFirst(value, number) || number.denominator == 0)
        return std::string();
    return fixed(number.value(), 2);
}

std::string zeExifFormat::subjectDistance(const std::string& value)
{
    Rational distance;
    if (!parseFirst(value, distance))
        return std::string();
    if (distance.numerator == InfinityCode || distance.numerator == -1)
        return "Infinity";
    if (distance.numerator == 0)
        return "Distance unknown";
    if (!isPositive(distance))
        return std::string();
    return decimal(distance.value(), 2);
}

std::string zeExifFormat::focalLength(const std::string& value)
{
    Rational length;
    if (!parseFirst(value, length) || !isPositive(length))
        return std::string();
    return decimal(length.value(), 1);
}

std::string zeExifFormat::positiveInteger(const std::string& value)
{
    Rational count;
    if (!parseFirst(value, count) || !isPositive(count))
        return std::string();
    const std::string rounded = decimal(std::round(count.value()), 0);
    return rounded == "0" ? std::string() : rounded;
}

std::string zeExifFormat::bitsPerSample(const std::string& value)
{
    std::vector<std::string> samples;
    for (const std::string& part : components(value)) {
        samples.push_back(positiveInteger(part));
        if (samples.back().empty())
            return std::string();
    }
    if (samples.empty())
        return std::string();
    if (std::all_of(samples.begin(), samples.end(),
                    [&](const std::string& bits) { return bits == samples.front(); }))
        return samples.front();
    std::string list = samples.front();
    for (std::size_t i = 1; i < samples.size(); ++i)
        list += ' ' + samples[i];
    return list;
}

std::string zeExifFormat::text(const std::string& value)
{
    const int size = int(value.size());
    QString decoded = QString::fromUtf8(value.data(), size);
    if (decoded.toUtf8() != QByteArray::fromRawData(value.data(), size))
        decoded = QString::fromLatin1(value.data(), size);
    for (QChar& character : decoded) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    }
    return decoded.trimmed().toStdString();
}

bool zeExifFormat::parseFirst(const std::string& value, Rational& number)
{
    const std::vector<std::string> parts = components(value);
    if (parts.empty())
        return false;
    const std::string& first = parts.front();
    if (!(first.find('/') == std::string::npos ? parseDecimal(first, number)
                                                 : parseRational(first, number)))
        return false;
    if (number.denominator < 0) {
        number.numerator = -number.numerator;
        number.denominator = -number.denominator;
    }
    return true;
}

bool zeExifFormat::parseRational(const std::string& text, Rational& number)
{
    const std::size_t slash = text.find('/');
    return parseInteger(text.substr(0, slash), number.numerator)
        && parseInteger(text.substr(slash + 1), number.denominator)
        && number.denominator != std::numeric_limits<long long>::min()
        && number.numerator != std::numeric_limits<long long>::min();
}

bool zeExifFormat::parseDecimal(const std::string& text, Rational& number)
{
    const std::size_t point = text.find('.');
    if (point == std::string::npos) {
        number.denominator = 1;
        return parseInteger(text, number.numerator)
            && number.numerator != std::numeric_limits<long long>::min();
    }
    const std::string fraction = text.substr(point + 1);
    const std::string digits = text.substr(0, point) + fraction;
    if (!allDigits(fraction) || digits.size() > MaxDecimalDigits
        || !parseInteger(digits, number.numerator))
        return false;
    number.denominator = 1;
    for (std::size_t i = 0; i < fraction.size(); ++i)
        number.denominator *= 10;
    return true;
}

bool zeExifFormat::isPositive(const Rational& number)
{
    return number.numerator > 0 && number.denominator > 0;
}

std::string zeExifFormat::decimal(double value, int maxDecimals)
{
    QString text = QString::fromStdString(fixed(value, maxDecimals));
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text.toStdString();
}

std::string zeExifFormat::fixed(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    double rounded = std::round(value * scale) / scale;
    if (rounded == 0.0)
        rounded = 0.0; // drops the sign of -0
    return QString::number(rounded, 'f', decimals).toStdString();
}

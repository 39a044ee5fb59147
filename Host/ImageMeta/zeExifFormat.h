#ifndef ZEEXIFFORMAT_H
#define ZEEXIFFORMAT_H

#include <string>

// Writes EXIF and TIFF tag values the way a photographer reads them. Each
// function takes the value as exiv2 prints it: rationals as "n/d" (as EXIF
// stores them, and as XMP writes them), integers, decimals (some XMP
// writers use those), components separated by blanks; a numeric function
// uses the first component. An empty result means that the value is
// undefined (a zero denominator, an impossible sign, text that is no
// number) or stands for "unknown", and that its line is left out.
// Numbers are written with a decimal point whatever the locale.
class zeExifFormat
{
public:
    // Seconds: "1/N" when the time is within 5 % of a unit fraction below one
    // second, otherwise a decimal with at most two decimals ("0.6", "2", "1.5").
    static std::string exposureTime(const std::string& value);
    // One decimal at most: "5.6", "8".
    static std::string fNumber(const std::string& value);
    // APEX values (shutter speed Tv, aperture Av, brightness, exposure bias EV):
    // always two decimals, "6.64", "-0.33", "0.00" (never "-0.00").
    static std::string apex(const std::string& value);
    // Metres with at most two decimals; the numerator 0xFFFFFFFF (infinity
    // code) gives "Infinity" and the numerator 0 gives "Distance unknown".
    static std::string subjectDistance(const std::string& value);
    // Millimetres without unit, one decimal at most: "50", "4.3".
    static std::string focalLength(const std::string& value);
    // A count above zero ("28"); 0 means unknown in the tags that use this.
    static std::string positiveInteger(const std::string& value);
    // The common bit depth when every sample has the same ("8"), otherwise
    // the list ("5 6 5").
    static std::string bitsPerSample(const std::string& value);
    // A text tag on one line: control characters (line breaks, the NUL that
    // separates EXIF's two copyright holders) become blanks, outer blanks go.
    // Bytes that are not UTF-8 are taken as Latin-1 and re-encoded as UTF-8.
    static std::string text(const std::string& value);

private:
    struct Rational
    {
        long long numerator = 0;
        long long denominator = 1;
        double value() const { return double(numerator) / double(denominator); }
    };

    // The first component as "n/d", an integer or a plain decimal; the
    // denominator comes out non-negative (zero for "n/0").
    static bool parseFirst(const std::string& value, Rational& number);
    static bool parseRational(const std::string& text, Rational& number);
    static bool parseDecimal(const std::string& text, Rational& number);
    static bool isPositive(const Rational& number);
    // Rounded to maxDecimals, trailing zeros dropped.
    static std::string decimal(double value, int maxDecimals);
    // Rounded to exactly decimals places.
    static std::string fixed(double value, int decimals);
};

#endif // ZEEXIFFORMAT_H

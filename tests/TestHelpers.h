#ifndef TESTHELPERS_H
#define TESTHELPERS_H

// Checks and fixtures that several test programs share.

#include <QMetaMethod>
#include <QString>
#include <QStringList>
#include <QtTest>

#include <clocale>
#include <cmath>
#include <locale>
#include <stdexcept>
#include <string>
#include <vector>

// Runs a helper that checks with QVERIFY and QCOMPARE, and leaves the calling
// test function as soon as one of the helper's checks has failed.
#define QZE_CHECK(call)                                                                        \
    do {                                                                                       \
        call;                                                                                  \
        if (QTest::currentTestFailed())                                                        \
            return;                                                                            \
    } while (false)

// Describes actual against expected when they lie more than tolerance apart;
// empty when they agree. A tolerance of 0 asks for an exact match and NaN
// never matches.
inline QString nearMismatch(const QString& context, const char* expression, double actual,
                            double expected, double tolerance)
{
    if (std::abs(actual - expected) <= tolerance)
        return QString();
    const QString prefix = context.isEmpty() ? QString() : context + QStringLiteral(": ");
    return prefix
           + QStringLiteral("%1 is %2, expected %3 (tolerance %4)")
                 .arg(QString::fromLatin1(expression))
                 .arg(actual, 0, 'g', 10)
                 .arg(expected, 0, 'g', 10)
                 .arg(tolerance);
}

// Fails with both values, and the context when one is given, printed unless
// |actual - expected| <= tolerance.
#define QZE_COMPARE_NEAR_IN(actual, expected, tolerance, context)                              \
    do {                                                                                       \
        const QString qzeMismatch =                                                            \
            nearMismatch(context, #actual, double(actual), double(expected), double(tolerance)); \
        QVERIFY2(qzeMismatch.isEmpty(), qPrintable(qzeMismatch));                              \
    } while (false)

#define QZE_COMPARE_NEAR(actual, expected, tolerance)                                          \
    QZE_COMPARE_NEAR_IN(actual, expected, tolerance, QString())

// num evenly spaced wavelengths: start, start + delta, ...
inline std::vector<double> gridOf(double start, double delta, int num)
{
    std::vector<double> grid;
    for (int i = 0; i < num; ++i)
        grid.push_back(start + i * delta);
    return grid;
}

// The methods a class declares itself, in meta-object order, each written as
// its kind ("signal", "slot" or "other") and its signature.
inline QStringList methodsInMetaObjectOrder(const QMetaObject& meta)
{
    QStringList found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const char* kind = method.methodType() == QMetaMethod::Signal ? "signal "
                           : method.methodType() == QMetaMethod::Slot ? "slot "
                                                                      : "other ";
        found << kind + QString::fromLatin1(method.methodSignature());
    }
    return found;
}

// Switches the C and C++ global locales to German, which writes a decimal
// comma, for one scope, when the system has that locale; puts every previous
// setting back afterwards.
class CommaLocale
{
public:
    CommaLocale() : _previousC(std::setlocale(LC_ALL, nullptr))
    {
        try {
            std::locale::global(std::locale("de_DE.UTF-8"));
            _active = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
        } catch (const std::runtime_error&) {
            _active = false;
        }
    }
    ~CommaLocale()
    {
        std::locale::global(_previousCpp);
        std::setlocale(LC_ALL, _previousC.c_str());
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    bool isActive() const { return _active; }

private:
    std::locale _previousCpp;
    std::string _previousC;
    bool _active = false;
};

#endif // TESTHELPERS_H

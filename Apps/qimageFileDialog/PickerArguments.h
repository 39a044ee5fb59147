#ifndef PICKERARGUMENTS_H
#define PICKERARGUMENTS_H

#include <QCoreApplication>
#include <QString>

// The picker's command line, as the image browser's external entry point
// writes it: exactly five arguments, in this order: the native id of the
// window the picker belongs to (decimal, 0 for none), the window title, the
// folder or file to start in, the blank-separated name filters, and "1" or
// "0" for whether the chosen file's render-settings mask is wanted as a
// second answer line.
class PickerArguments
{
    Q_DECLARE_TR_FUNCTIONS(PickerArguments)

public:
    // Reads argv; on failure errorString() says what is wrong in words a
    // caller can act on. Needs no application object.
    bool parse(int argc, const char* const* argv);
    QString errorString() const { return _error; }

    quint64 windowId() const { return _windowId; }
    QString caption() const { return _caption; }
    QString startPath() const { return _startPath; }
    QString filter() const { return _filter; }
    bool wantsMask() const { return _wantsMask; }

    // How the program is called, for the error message.
    static QString usage();

private:
    bool fail(const QString& problem);

    quint64 _windowId = 0;
    QString _caption;
    QString _startPath;
    QString _filter;
    bool _wantsMask = false;
    QString _error;
};

#endif // PICKERARGUMENTS_H

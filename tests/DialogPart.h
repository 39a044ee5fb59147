#ifndef DIALOGPART_H
#define DIALOGPART_H

#include <QObject>
#include <QString>

// A named child of a dialog, for tests that reach into its generated form;
// a missing one stops the test program, as the form is then not the one
// the test was written for.
template <typename T>
T* part(const QObject& dialog, const char* name)
{
    T* found = dialog.findChild<T*>(QString::fromLatin1(name));
    if (!found)
        qFatal("the dialog has no %s", name);
    return found;
}

#endif // DIALOGPART_H

#ifndef FAKEPICKER_H
#define FAKEPICKER_H

// A stand-in for the qimageFileDialog picker program: a small shell script
// under that name in a folder of its own, made the host's executable folder
// for the fake's lifetime. Every fake first writes its arguments (one a
// line) to "arguments" and its working folder to "workdir" beside itself,
// then runs the body it was given.

#include "zePlatform.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class FakePicker
{
public:
    explicit FakePicker(const QByteArray& body)
    {
        QFile script(path(QStringLiteral(QTCOLOR_PICKER_PROGRAM)));
        const QByteArray text = "#!/bin/sh\n"
                                "here=$(dirname \"$0\")\n"
                                "printf '%s\\n' \"$@\" > \"$here/arguments\"\n"
                                "pwd > \"$here/workdir\"\n"
                                + body + "\n";
        _valid = _dir.isValid() && script.open(QIODevice::WriteOnly)
                 && script.write(text) == text.size() && script.flush()
                 && script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        zePlatform::setBinDir(_dir.path());
    }
    ~FakePicker() { zePlatform::setBinDir(QString()); }
    FakePicker(const FakePicker&) = delete;
    FakePicker& operator=(const FakePicker&) = delete;

    // A picker that writes answer in one write and then stays alive, as the
    // real one does until its output has been read.
    struct Answer {
        QByteArray text;
    };
    explicit FakePicker(const Answer& answer)
        : FakePicker(QByteArray("cat \"$here/answer\"\nexec sleep 30"))
    {
        QFile file(path(QStringLiteral("answer")));
        _valid = _valid && file.open(QIODevice::WriteOnly)
                 && file.write(answer.text) == answer.text.size() && file.flush();
    }

    bool isValid() const { return _valid; }
    QString dir() const { return _dir.path(); }
    QString path(const QString& name) const { return _dir.filePath(name); }

    // What the picker was started with; empty when it never ran.
    QStringList arguments() const { return lines(QStringLiteral("arguments")); }
    QString workingDirectory() const { return lines(QStringLiteral("workdir")).value(0); }

private:
    QStringList lines(const QString& name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QString text = QString::fromUtf8(file.readAll());
        text.chop(1);
        return text.split(QLatin1Char('\n'));
    }

    QTemporaryDir _dir;
    bool _valid = false;
};

#endif // FAKEPICKER_H

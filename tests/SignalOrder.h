#ifndef SIGNALORDER_H
#define SIGNALORDER_H

// Every signal that one object's class declares, in the order they came, each
// with its signature and arguments: QSignalSpy per signal keeps the arguments,
// this log keeps the order across signals.

#include <QMetaMethod>
#include <QObject>
#include <QSignalSpy>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>

class SignalOrder : public QObject
{
    Q_OBJECT

public:
    struct Emission
    {
        QString signature;
        QList<QVariant> arguments;
    };

    // Signals of source's own class only (not those of its base classes).
    explicit SignalOrder(QObject* source)
    {
        const QMetaObject* meta = source->metaObject();
        const int record = metaObject()->indexOfSlot("record()");
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QMetaMethod method = meta->method(i);
            if (method.methodType() != QMetaMethod::Signal)
                continue;
            // The spy first, so that record() finds this emission's arguments.
            const QByteArray signal = '2' + method.methodSignature();
            _spies[i] = std::make_unique<QSignalSpy>(source, signal.constData());
            QObject::connect(source, method, this, metaObject()->method(record));
        }
    }

    QList<Emission> emissions;

    QStringList signatures() const
    {
        QStringList found;
        for (const Emission& emission : emissions)
            found << emission.signature;
        return found;
    }

    void clear() { emissions.clear(); }

public slots:
    void record()
    {
        const int index = senderSignalIndex();
        const QMetaMethod signal = sender()->metaObject()->method(index);
        emissions.append({QString::fromLatin1(signal.methodSignature()), _spies.at(index)->last()});
    }

private:
    std::map<int, std::unique_ptr<QSignalSpy>> _spies;
};

#endif // SIGNALORDER_H

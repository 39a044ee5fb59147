#include "osgChangeList.h"
#include "osgFieldContainer.h"
#include "osgFieldContainerPtr.h"
#include "osgPThreadBase.h"

#include <QtTest>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace {

class Probe;
using ProbePtr = osg::FCPtr<osg::FieldContainerPtr, Probe>;

// A container that counts its destructions and records every changed() call.
class Probe : public osg::FieldContainer
{
public:
    struct Change
    {
        osg::BitVector mask;
        osg::UInt32 origin;
    };

    static ProbePtr create(int* destructions = nullptr)
    {
        return ProbePtr(new Probe(destructions));
    }

    ~Probe() override
    {
        if (_destructions)
            ++*_destructions;
    }

    void changed(osg::BitVector whichField, osg::UInt32 origin) override
    {
        changes.push_back({whichField, origin});
    }

    int tag = 0;
    std::vector<Change> changes;

private:
    explicit Probe(int* destructions) : _destructions(destructions) {}

    int* _destructions;
};

// How an editor reports an edit of a container's fields: record it in the
// current change list when there is one, and tell the container unless
// changes are being ignored.
void notifyEdit(const ProbePtr& container, osg::BitVector mask)
{
    if (osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList())
        list->addChanged(container, mask);
    if (!osg::FieldContainerPtr::_ignore_change)
        container->changed(mask, 1);
}

// Sets _ignore_change for one scope and puts the previous value back.
class IgnoreChanges
{
public:
    explicit IgnoreChanges(bool ignore) : _previous(osg::FieldContainerPtr::_ignore_change)
    {
        osg::FieldContainerPtr::_ignore_change = ignore;
    }
    ~IgnoreChanges() { osg::FieldContainerPtr::_ignore_change = _previous; }
    IgnoreChanges(const IgnoreChanges&) = delete;
    IgnoreChanges& operator=(const IgnoreChanges&) = delete;

private:
    bool _previous;
};

// Makes list this thread's current change list for one scope, then returns
// to the thread's own list with nothing left in it.
class CurrentChangeList
{
public:
    explicit CurrentChangeList(osg::ChangeList* list)
    {
        osg::PThreadBase::setCurrentChangeList(list);
    }
    ~CurrentChangeList()
    {
        osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
        osg::PThreadBase::getThreadChangeList()->clear();
    }
    CurrentChangeList(const CurrentChangeList&) = delete;
    CurrentChangeList& operator=(const CurrentChangeList&) = delete;
};

// What one thread saw of its change list.
struct ThreadView
{
    osg::ChangeList* current = nullptr;
    osg::ChangeList* own = nullptr;
    std::vector<osg::ChangeList::Entry> entries;
};

constexpr osg::BitVector MaskA = osg::BitVector(1) << 0;
constexpr osg::BitVector MaskB = osg::BitVector(1) << 5;
constexpr osg::BitVector MaskC = osg::BitVector(1) << 63;

} // namespace

class tst_osgFieldContainer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void createGivesRefCountOne();
    void copyConstructionAddsOneReference();
    void copyAssignmentMovesOneReference();
    void moveConstructionKeepsTheCount();
    void moveAssignmentReleasesTheOldContainer();
    void lastPointerDestroysTheContainerOnce();
    void assigningNullFCReleasesTheContainer();
    void selfAssignmentKeepsTheCount();
    void typedPointerReachesTheContainer();
    void addRefCPKeepsTheContainerBeyondItsPointers();
    void addRefAndSubRefCPOnNullFCAreHarmless();
    void nullPointersEqualNullFC();
    void pointersCompareByContainer();

    void addChangedMergesMasksInFirstSeenOrder();
    void changedMaskOfUnlistedContainerIsZero();
    void changeListHoldsOneReferencePerContainer();
    void clearReleasesTheHeldReferences();
    void nullContainersAreNotRecorded();

    void eachThreadRecordsIntoItsOwnList();
    void threadListReleasesItsContainersWhenTheThreadEnds();
    void nullCurrentListSwitchesRecordingOff();
    void anotherListCanBeMadeCurrent();
    void threadListIsTheInitialCurrentList();

    void editsNotifyTheContainerUnlessChangesAreIgnored_data();
    void editsNotifyTheContainerUnlessChangesAreIgnored();
    void changesAreNotIgnoredInitially();

    void copiesFromTwoThreadsKeepTheCountExact();
    void lastPointerOnAnotherThreadDestroysOnce();

private:
    int _destructions = 0;
};

void tst_osgFieldContainer::init()
{
    _destructions = 0;
    osg::PThreadBase::getThreadChangeList()->clear();
}

void tst_osgFieldContainer::cleanup()
{
    osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
    osg::PThreadBase::getThreadChangeList()->clear();
}

void tst_osgFieldContainer::createGivesRefCountOne()
{
    const ProbePtr p = Probe::create(&_destructions);
    QVERIFY(p != osg::NullFC);
    QCOMPARE(p->getRefCount(), 1);
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::copyConstructionAddsOneReference()
{
    const ProbePtr p = Probe::create(&_destructions);
    {
        const ProbePtr copy(p);
        QCOMPARE(p->getRefCount(), 2);
        const osg::FieldContainerPtr base(copy);
        QCOMPARE(p->getRefCount(), 3);
    }
    QCOMPARE(p->getRefCount(), 1);
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::copyAssignmentMovesOneReference()
{
    int otherDestructions = 0;
    const ProbePtr p = Probe::create(&_destructions);
    ProbePtr q = Probe::create(&otherDestructions);
    const ProbePtr keepQ = q;
    QCOMPARE(keepQ->getRefCount(), 2);

    q = p;
    QCOMPARE(p->getRefCount(), 2);
    QCOMPARE(keepQ->getRefCount(), 1);
    QVERIFY(q == p);

    ProbePtr r;
    r = p;
    QCOMPARE(p->getRefCount(), 3);
    QCOMPARE(_destructions, 0);
    QCOMPARE(otherDestructions, 0);
}

void tst_osgFieldContainer::moveConstructionKeepsTheCount()
{
    ProbePtr p = Probe::create(&_destructions);
    Probe* const raw = p.getCPtr();
    const ProbePtr moved(std::move(p));
    QCOMPARE(moved.getCPtr(), raw);
    QCOMPARE(moved->getRefCount(), 1);
    QVERIFY(p == osg::NullFC); // NOLINT(bugprone-use-after-move): a moved-from pointer is null
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::moveAssignmentReleasesTheOldContainer()
{
    int otherDestructions = 0;
    ProbePtr p = Probe::create(&_destructions);
    ProbePtr q = Probe::create(&otherDestructions);
    Probe* const raw = p.getCPtr();

    q = std::move(p);
    QCOMPARE(otherDestructions, 1);
    QCOMPARE(q.getCPtr(), raw);
    QCOMPARE(q->getRefCount(), 1);
    QVERIFY(p == osg::NullFC); // NOLINT(bugprone-use-after-move)
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::lastPointerDestroysTheContainerOnce()
{
    {
        const ProbePtr p = Probe::create(&_destructions);
        {
            const ProbePtr copy = p;
            const ProbePtr another = copy;
        }
        QCOMPARE(_destructions, 0);
    }
    QCOMPARE(_destructions, 1);
}

void tst_osgFieldContainer::assigningNullFCReleasesTheContainer()
{
    osg::FieldContainerPtr p = Probe::create(&_destructions);
    ProbePtr q = Probe::create(&_destructions);
    p = osg::NullFC;
    QCOMPARE(_destructions, 1);
    QVERIFY(p == osg::NullFC);
    q = nullptr;
    QCOMPARE(_destructions, 2);
    QVERIFY(q == osg::NullFC);
}

void tst_osgFieldContainer::selfAssignmentKeepsTheCount()
{
    ProbePtr p = Probe::create(&_destructions);
    // Through a reference, as generic code would reach it.
    ProbePtr& alias = p;
    p = alias;
    QCOMPARE(p->getRefCount(), 1);
    p = std::move(alias);
    QVERIFY(p != osg::NullFC);
    QCOMPARE(p->getRefCount(), 1);
    QCOMPARE(_destructions, 0);

    ProbePtr empty;
    ProbePtr& emptyAlias = empty;
    empty = emptyAlias;
    QVERIFY(empty == osg::NullFC);
}

void tst_osgFieldContainer::typedPointerReachesTheContainer()
{
    const ProbePtr p = Probe::create(&_destructions);
    p->tag = 7;
    QCOMPARE((*p).tag, 7);
    QCOMPARE(p.getCPtr()->tag, 7);
    QCOMPARE(p.getBaseCPtr(), static_cast<osg::FieldContainer*>(p.getCPtr()));
}

void tst_osgFieldContainer::addRefCPKeepsTheContainerBeyondItsPointers()
{
    Probe* raw = nullptr;
    {
        const ProbePtr p = Probe::create(&_destructions);
        raw = p.getCPtr();
        osg::addRefCP(p);
        QCOMPARE(p->getRefCount(), 2);
    }
    QCOMPARE(_destructions, 0);
    QCOMPARE(raw->getRefCount(), 1);

    const ProbePtr again(raw);
    QCOMPARE(again->getRefCount(), 2);
    osg::subRefCP(again);
    QCOMPARE(again->getRefCount(), 1);
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::addRefAndSubRefCPOnNullFCAreHarmless()
{
    osg::addRefCP(osg::NullFC);
    osg::subRefCP(osg::NullFC);
    osg::subRefCP(ProbePtr());
    QVERIFY(osg::NullFC.getBaseCPtr() == nullptr);
}

void tst_osgFieldContainer::nullPointersEqualNullFC()
{
    const ProbePtr byDefault;
    const ProbePtr fromNullptr(nullptr);
    const osg::FieldContainerPtr baseDefault;
    QVERIFY(byDefault == osg::NullFC);
    QVERIFY(fromNullptr == osg::NullFC);
    QVERIFY(baseDefault == osg::NullFC);
    QVERIFY(osg::NullFC == byDefault);
    QVERIFY(!(byDefault != osg::NullFC));
    QVERIFY(!byDefault);
    QVERIFY(!osg::NullFC);

    const ProbePtr p = Probe::create(&_destructions);
    QVERIFY(p != osg::NullFC);
    QVERIFY(osg::NullFC != p);
    QVERIFY(!(p == osg::NullFC));
    QVERIFY(static_cast<bool>(p));
}

void tst_osgFieldContainer::pointersCompareByContainer()
{
    const ProbePtr p = Probe::create(&_destructions);
    const ProbePtr q = Probe::create(&_destructions);
    const osg::FieldContainerPtr base = p;
    QVERIFY(p == base);
    QVERIFY(base == p);
    QVERIFY(p != q);
    QVERIFY(!(p == q));
}

void tst_osgFieldContainer::addChangedMergesMasksInFirstSeenOrder()
{
    const ProbePtr a = Probe::create(&_destructions);
    const ProbePtr b = Probe::create(&_destructions);
    osg::ChangeList list;
    list.addChanged(b, MaskA);
    list.addChanged(a, MaskB);
    list.addChanged(b, MaskC);
    list.addChanged(b, MaskA);

    QCOMPARE(int(list.getChanged().size()), 2);
    QVERIFY(list.getChanged()[0].container == b);
    QCOMPARE(list.getChanged()[0].mask, MaskA | MaskC);
    QVERIFY(list.getChanged()[1].container == a);
    QCOMPARE(list.getChanged()[1].mask, MaskB);
    QCOMPARE(list.getChangedMask(b), MaskA | MaskC);
    QCOMPARE(list.getChangedMask(a), MaskB);
    QVERIFY(!list.empty());
}

void tst_osgFieldContainer::changedMaskOfUnlistedContainerIsZero()
{
    const ProbePtr a = Probe::create(&_destructions);
    const ProbePtr b = Probe::create(&_destructions);
    osg::ChangeList list;
    QVERIFY(list.empty());
    QCOMPARE(list.getChangedMask(a), osg::BitVector(0));
    list.addChanged(a, MaskB);
    QCOMPARE(list.getChangedMask(b), osg::BitVector(0));
    QCOMPARE(list.getChangedMask(osg::NullFC), osg::BitVector(0));
}

void tst_osgFieldContainer::changeListHoldsOneReferencePerContainer()
{
    const ProbePtr a = Probe::create(&_destructions);
    osg::ChangeList list;
    list.addChanged(a, MaskA);
    QCOMPARE(a->getRefCount(), 2);
    list.addChanged(a, MaskB);
    QCOMPARE(a->getRefCount(), 2);
    list.clear();
    QCOMPARE(a->getRefCount(), 1);
}

void tst_osgFieldContainer::clearReleasesTheHeldReferences()
{
    int keptDestructions = 0;
    const ProbePtr kept = Probe::create(&keptDestructions);
    osg::ChangeList list;
    list.addChanged(Probe::create(&_destructions), MaskA);
    list.addChanged(kept, MaskB);
    QCOMPARE(_destructions, 0);

    list.clear();
    QVERIFY(list.empty());
    QCOMPARE(int(list.getChanged().size()), 0);
    QCOMPARE(_destructions, 1);
    QCOMPARE(keptDestructions, 0);
    QCOMPARE(kept->getRefCount(), 1);
}

void tst_osgFieldContainer::nullContainersAreNotRecorded()
{
    osg::ChangeList list;
    list.addChanged(osg::NullFC, MaskA);
    list.addChanged(ProbePtr(), MaskB);
    QVERIFY(list.empty());
    QCOMPARE(list.getChangedMask(osg::NullFC), osg::BitVector(0));
}

void tst_osgFieldContainer::eachThreadRecordsIntoItsOwnList()
{
    const ProbePtr mainOnly = Probe::create(&_destructions);
    osg::ChangeList* const mainList = osg::PThreadBase::getCurrentChangeList();
    mainList->addChanged(mainOnly, MaskC);

    const ProbePtr shared = Probe::create(&_destructions);
    const ProbePtr own[2] = {Probe::create(&_destructions), Probe::create(&_destructions)};
    const osg::BitVector masks[2] = {MaskA, MaskB};
    ThreadView views[2];
    std::atomic<int> recorded{0};

    // Both threads record, then wait until the other has recorded too before
    // they read their lists back, so each would see the other's entries if
    // the lists were shared.
    const auto work = [&](int i) {
        osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList();
        list->addChanged(shared, masks[i]);
        list->addChanged(own[i], masks[i]);
        recorded.fetch_add(1);
        while (recorded.load() < 2)
            std::this_thread::yield();
        views[i].current = list;
        views[i].own = osg::PThreadBase::getThreadChangeList();
        views[i].entries = list->getChanged();
        list->clear();
    };
    std::thread first(work, 0);
    std::thread second(work, 1);
    first.join();
    second.join();

    for (int i = 0; i < 2; ++i) {
        QVERIFY(views[i].current != nullptr);
        QCOMPARE(views[i].current, views[i].own);
        QVERIFY(views[i].current != mainList);
        QCOMPARE(int(views[i].entries.size()), 2);
        QVERIFY(views[i].entries[0].container == shared);
        QCOMPARE(views[i].entries[0].mask, masks[i]);
        QVERIFY(views[i].entries[1].container == own[i]);
        QCOMPARE(views[i].entries[1].mask, masks[i]);
    }
    QVERIFY(views[0].current != views[1].current);

    QCOMPARE(osg::PThreadBase::getCurrentChangeList(), mainList);
    QCOMPARE(int(mainList->getChanged().size()), 1);
    QVERIFY(mainList->getChanged()[0].container == mainOnly);
    QCOMPARE(mainList->getChanged()[0].mask, MaskC);
}

void tst_osgFieldContainer::threadListReleasesItsContainersWhenTheThreadEnds()
{
    const ProbePtr p = Probe::create(&_destructions);
    std::thread worker([&p] { osg::PThreadBase::getCurrentChangeList()->addChanged(p, MaskA); });
    worker.join();
    QCOMPARE(p->getRefCount(), 1);
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());

    std::thread lastHolder([this] {
        osg::PThreadBase::getCurrentChangeList()->addChanged(Probe::create(&_destructions), MaskA);
    });
    lastHolder.join();
    QCOMPARE(_destructions, 1);
}

void tst_osgFieldContainer::nullCurrentListSwitchesRecordingOff()
{
    const ProbePtr p = Probe::create(&_destructions);
    osg::ChangeList* const own = osg::PThreadBase::getThreadChangeList();
    {
        const CurrentChangeList off(nullptr);
        QVERIFY(osg::PThreadBase::getCurrentChangeList() == nullptr);
        QCOMPARE(osg::PThreadBase::getThreadChangeList(), own);
        notifyEdit(p, MaskA);
        QVERIFY(own->empty());
        QCOMPARE(int(p->changes.size()), 1);

        osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
        QCOMPARE(osg::PThreadBase::getCurrentChangeList(), own);
        notifyEdit(p, MaskB);
        QCOMPARE(own->getChangedMask(p), MaskB);
    }
}

void tst_osgFieldContainer::anotherListCanBeMadeCurrent()
{
    const ProbePtr p = Probe::create(&_destructions);
    osg::ChangeList other;
    {
        const CurrentChangeList current(&other);
        QCOMPARE(osg::PThreadBase::getCurrentChangeList(), &other);
        notifyEdit(p, MaskA);
        QCOMPARE(other.getChangedMask(p), MaskA);
        QVERIFY(osg::PThreadBase::getThreadChangeList()->empty());
    }
    QCOMPARE(osg::PThreadBase::getCurrentChangeList(), osg::PThreadBase::getThreadChangeList());
}

void tst_osgFieldContainer::threadListIsTheInitialCurrentList()
{
    QCOMPARE(osg::PThreadBase::getCurrentChangeList(), osg::PThreadBase::getThreadChangeList());
    bool same = false;
    bool present = false;
    std::thread fresh([&] {
        present = osg::PThreadBase::getCurrentChangeList() != nullptr;
        same = osg::PThreadBase::getCurrentChangeList() == osg::PThreadBase::getThreadChangeList();
    });
    fresh.join();
    QVERIFY(present);
    QVERIFY(same);
}

void tst_osgFieldContainer::editsNotifyTheContainerUnlessChangesAreIgnored_data()
{
    QTest::addColumn<bool>("ignore");
    QTest::newRow("changes followed") << false;
    QTest::newRow("changes ignored") << true;
}

void tst_osgFieldContainer::editsNotifyTheContainerUnlessChangesAreIgnored()
{
    QFETCH(bool, ignore);
    const ProbePtr p = Probe::create(&_destructions);
    {
        const IgnoreChanges scope(ignore);
        notifyEdit(p, MaskB);
        notifyEdit(p, MaskC);
    }
    QCOMPARE(osg::PThreadBase::getCurrentChangeList()->getChangedMask(p), MaskB | MaskC);
    if (ignore) {
        QVERIFY(p->changes.empty());
    } else {
        QCOMPARE(int(p->changes.size()), 2);
        QCOMPARE(p->changes[0].mask, MaskB);
        QCOMPARE(p->changes[0].origin, osg::UInt32(1));
        QCOMPARE(p->changes[1].mask, MaskC);
        QCOMPARE(p->changes[1].origin, osg::UInt32(1));
    }
}

void tst_osgFieldContainer::changesAreNotIgnoredInitially()
{
    QVERIFY(!osg::FieldContainerPtr::_ignore_change);
}

void tst_osgFieldContainer::copiesFromTwoThreadsKeepTheCountExact()
{
    constexpr int Rounds = 100000;
    constexpr int KeepEvery = 10;
    const ProbePtr p = Probe::create(&_destructions);
    std::vector<ProbePtr> kept[2];
    std::atomic<int> ready{0};

    // Both threads start copying together, so their counting overlaps.
    const auto work = [&p, &ready](std::vector<ProbePtr>& keep) {
        ready.fetch_add(1);
        while (ready.load() < 2)
            std::this_thread::yield();
        for (int n = 0; n < Rounds; ++n) {
            ProbePtr copy(p);
            ProbePtr other;
            other = copy;
            ProbePtr moved(std::move(other));
            if (n % KeepEvery == 0)
                keep.push_back(std::move(moved));
        }
    };
    std::thread first(work, std::ref(kept[0]));
    std::thread second(work, std::ref(kept[1]));
    first.join();
    second.join();

    QCOMPARE(p->getRefCount(), 1 + 2 * (Rounds / KeepEvery));
    kept[0].clear();
    kept[1].clear();
    QCOMPARE(p->getRefCount(), 1);
    QCOMPARE(_destructions, 0);
}

void tst_osgFieldContainer::lastPointerOnAnotherThreadDestroysOnce()
{
    constexpr int Copies = 5000;
    for (int round = 0; round < 20; ++round) {
        ProbePtr p = Probe::create(&_destructions);
        std::vector<ProbePtr> halves[2] = {std::vector<ProbePtr>(Copies, p),
                                           std::vector<ProbePtr>(Copies, p)};
        p = nullptr;
        std::thread first([&halves] { halves[0].clear(); });
        std::thread second([&halves] { halves[1].clear(); });
        first.join();
        second.join();
        QCOMPARE(_destructions, round + 1);
    }
}

QTEST_APPLESS_MAIN(tst_osgFieldContainer)
#include "tst_osgFieldContainer.moc"

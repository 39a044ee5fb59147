#ifndef OSGPTHREADBASE_H
#define OSGPTHREADBASE_H

namespace osg {

class ChangeList;

/// Per-thread scene-graph state: the change list that edits on this thread
/// are recorded in. Every thread starts with a list of its own.
class PThreadBase
{
public:
    /// The current list, or nullptr while recording is switched off.
    static ChangeList* getCurrentChangeList();
    /// Makes list the current one for this thread; nullptr switches recording off.
    static void setCurrentChangeList(ChangeList* list);
    /// This thread's own list, the initial current one.
    static ChangeList* getThreadChangeList();
};

} // namespace osg

#endif // OSGPTHREADBASE_H

#include "osgPThreadBase.h"

#include "osgChangeList.h"

namespace osg {

namespace {

thread_local ChangeList t_ownList;
thread_local ChangeList* t_currentList = &t_ownList;

} // namespace

ChangeList* PThreadBase::getCurrentChangeList()
{
    return t_currentList;
}

void PThreadBase::setCurrentChangeList(ChangeList* list)
{
    t_currentList = list;
}

ChangeList* PThreadBase::getThreadChangeList()
{
    return &t_ownList;
}

} // namespace osg

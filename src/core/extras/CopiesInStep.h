#pragma once

namespace tagmoor {

// Whether this process keeps the copies of a caption, creator, rights or location value in
// step (see CopyGroups): in the standard form a photo then shows in each field of a group the
// copy a reader prefers, and a run writes all copies of an edited field unless it says
// otherwise (ExtraEdits::syncCopies). Off unless set; set before photos are read. The described
// form reads and writes each copy on its own whatever the switch says.
bool copiesInStep();
void setCopiesInStep(bool inStep);

// Sets the switch for the life of the object and puts the previous one back (tests).
class CopiesInStepScope {
public:
    explicit CopiesInStepScope(bool inStep) : m_previous(copiesInStep()) {
        setCopiesInStep(inStep);
    }
    ~CopiesInStepScope() { setCopiesInStep(m_previous); }
    CopiesInStepScope(const CopiesInStepScope&) = delete;
    CopiesInStepScope& operator=(const CopiesInStepScope&) = delete;

private:
    bool m_previous;
};

} // namespace tagmoor

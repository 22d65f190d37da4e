#ifndef YH_RECOVERY_ROWSINJOBORDER_H
#define YH_RECOVERY_ROWSINJOBORDER_H

#include <cstddef>
#include <functional>
#include <vector>

#include "recovery/RecoveredRow.h"

// Runs jobs 0 to count - 1, each appending the rows it finds to the vector
// it is given, on the calling thread and, when the machine has a second
// core, on one more: pages are carved independently of each other. The rows
// come out in job order, as if the jobs had run one after the other, so the
// answer does not depend on which thread was quicker. A job must only read
// what the other jobs read too. An exception thrown by a job is thrown here
// once both threads have stopped.
std::vector<RecoveredRow> RowsInJobOrder(size_t count,
                                         const std::function<void(size_t job, std::vector<RecoveredRow>* rows)>& run);

#endif

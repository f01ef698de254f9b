// Steps of the session of errors that is compared with its golden log.
#pragma once

#include <vector>

#include "tests/golden/stage.h"

namespace marvane::testing {

/// Makes all calls except PDUConstruct and PDUDestruct with null for every pointer. Only the output of a
/// state or an error code is `code`, which must not be null when the call succeeds. Returns their statuses.
std::vector<T_PDU_ERROR> CallAllWithNulls(const CPduDll& api, UNUM32* code = nullptr);

/// Valid output pointers through which the target returns null, or nothing at all on a failure.
void GetNothing(Stage& stage);
void FailWithValues(Stage& stage);

/// Numbers without a name.
void UseUnknownValues(Stage& stage);
void UseUnknownParameters(Stage& stage);
/// Counts above 0 with null arrays, arrays with a count of 0, and items of the wrong type.
void UseWrongLists(Stage& stage);
void UseWrongItems(Stage& stage);

} // namespace marvane::testing

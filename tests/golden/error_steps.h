// Steps of the session of errors that is compared with its golden log.
#pragma once

#include <vector>

#include "tests/golden/stage.h"

namespace marvane::testing {

/// All calls but PDUConstruct and PDUDestruct with null for every pointer; `code` is where a state or an
/// error goes, which a target that succeeds must be able to write. Returns their statuses.
std::vector<T_PDU_ERROR> CallAllWithNulls(const CPduDll& api, UNUM32* code = nullptr);

/// Good pointers behind which the target leaves null, or with a failure whatever was there.
void GetNothing(Stage& stage);
void FailWithValues(Stage& stage);

/// Numbers that no name is known for.
void UseUnknownValues(Stage& stage);
void UseUnknownParameters(Stage& stage);
/// Counts above 0 with null arrays, arrays with a count of 0, and items of the wrong type.
void UseWrongLists(Stage& stage);
void UseWrongItems(Stage& stage);

} // namespace marvane::testing

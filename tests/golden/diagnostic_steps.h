// Steps of the diagnostic session that is compared with its golden log.
#pragma once

#include "tests/golden/stage.h"

namespace marvane::testing {

// Objects that the fake target knows.
inline constexpr UNUM32 UdsOnCan = 100, CanBus = 200, PinHigh = 300, CanResource = 400, ReadBattery = 500;
inline constexpr UNUM32 RepeatCount = 600, ResponseId = 601;

/// Object names, some of them for the later lines.
void LearnNames(Stage& stage);
/// Resources for a link, their status and their conflicts.
void AskForResources(Stage& stage);
/// A link with its callback; it is locked and unlocked.
void OpenLink(Stage& stage);

/// ComParams of all data types, read and set.
void UseComParams(Stage& stage);
void UseResponseTable(Stage& stage);

/// ComPrimitives, and the events that they cause.
void Talk(Stage& stage);

/// PDUIoCtl with the commands of modules and links.
void UseCommands(Stage& stage);
/// PDUIoCtl with the other kinds of items.
void UseItemsOfOtherKinds(Stage& stage);

} // namespace marvane::testing

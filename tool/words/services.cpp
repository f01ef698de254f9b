#include "tool/words/services.h"

#include <algorithm>
#include <array>

namespace marvane::words {

namespace {

constexpr bool Suppresses = true;
constexpr bool Identifies = true;

constexpr Service UdsServices[] = {
    {0x10, "DiagnosticSessionControl", "session", 1, Suppresses},
    {0x11, "ECUReset", "reset", 1, Suppresses},
    {0x14, "ClearDiagnosticInformation", "clear trouble codes"},
    {0x19, "ReadDTCInformation", "trouble codes", 1, Suppresses},
    {0x22, "ReadDataByIdentifier", "read identifier", 0, false, Identifies},
    {0x23, "ReadMemoryByAddress", "read memory"},
    {0x24, "ReadScalingDataByIdentifier", "read scaling", 0, false, Identifies},
    {0x27, "SecurityAccess", "security access", 1, Suppresses},
    {0x28, "CommunicationControl", "communication", 1, Suppresses},
    {0x29, "Authentication", "authentication", 1, Suppresses},
    {0x2A, "ReadDataByPeriodicIdentifier", "read periodically", 1},
    {0x2C, "DynamicallyDefineDataIdentifier", "define identifier", 1, Suppresses},
    {0x2E, "WriteDataByIdentifier", "write identifier", 0, false, Identifies},
    {0x2F, "InputOutputControlByIdentifier", "control in/output", 3, false, Identifies},
    {0x31, "RoutineControl", "routine", 1, Suppresses},
    {0x34, "RequestDownload", "request download"},
    {0x35, "RequestUpload", "request upload"},
    {0x36, "TransferData", "transfer data"},
    {0x37, "RequestTransferExit", "transfer exit"},
    {0x38, "RequestFileTransfer", "transfer file", 1},
    {0x3D, "WriteMemoryByAddress", "write memory"},
    {0x3E, "TesterPresent", "tester present", 1, Suppresses},
    {0x83, "AccessTimingParameter", "timing", 1, Suppresses},
    {0x84, "SecuredDataTransmission", "secured data"},
    {0x85, "ControlDTCSetting", "trouble code setting", 1, Suppresses},
    {0x86, "ResponseOnEvent", "response on event", 1, Suppresses},
    {0x87, "LinkControl", "link control", 1, Suppresses},
};

constexpr Service ObdServices[] = {
    {0x01, "CurrentData", "current data"},
    {0x02, "FreezeFrameData", "freeze frame"},
    {0x03, "StoredDTCs", "stored codes"},
    {0x04, "ClearDTCs", "clear trouble codes"},
    {0x05, "OxygenSensorResults", "oxygen sensors"},
    {0x06, "OnBoardMonitoringResults", "monitoring results"},
    {0x07, "PendingDTCs", "pending codes"},
    {0x08, "ControlOfOnBoardSystem", "control"},
    {0x09, "VehicleInformation", "vehicle information"},
    {0x0A, "PermanentDTCs", "permanent codes"},
};

constexpr SubFunction SubFunctions[] = {
    {0x10, 0x01, "defaultSession", "default session"},
    {0x10, 0x02, "programmingSession", "programming session"},
    {0x10, 0x03, "extendedDiagnosticSession", "extended session"},
    {0x10, 0x04, "safetySystemDiagnosticSession", "safety session"},
    {0x11, 0x01, "hardReset", "hard reset"},
    {0x11, 0x02, "keyOffOnReset", "key off/on reset"},
    {0x11, 0x03, "softReset", "soft reset"},
    {0x11, 0x04, "enableRapidPowerShutDown"},
    {0x11, 0x05, "disableRapidPowerShutDown"},
    {0x19, 0x01, "reportNumberOfDTCByStatusMask", "count trouble codes"},
    {0x19, 0x02, "reportDTCByStatusMask"},
    {0x19, 0x03, "reportDTCSnapshotIdentification"},
    {0x19, 0x04, "reportDTCSnapshotRecordByDTCNumber"},
    {0x19, 0x05, "reportDTCStoredDataByRecordNumber"},
    {0x19, 0x06, "reportDTCExtDataRecordByDTCNumber"},
    {0x19, 0x07, "reportNumberOfDTCBySeverityMaskRecord", "count trouble codes"},
    {0x19, 0x08, "reportDTCBySeverityMaskRecord"},
    {0x19, 0x09, "reportSeverityInformationOfDTC"},
    {0x19, 0x0A, "reportSupportedDTC"},
    {0x19, 0x0B, "reportFirstTestFailedDTC"},
    {0x19, 0x0C, "reportFirstConfirmedDTC"},
    {0x19, 0x0D, "reportMostRecentTestFailedDTC"},
    {0x19, 0x0E, "reportMostRecentConfirmedDTC"},
    {0x19, 0x0F, "reportMirrorMemoryDTCByStatusMask"},
    {0x19, 0x10, "reportMirrorMemoryDTCExtDataRecordByDTCNumber"},
    {0x19, 0x11, "reportNumberOfMirrorMemoryDTCByStatusMask", "count trouble codes"},
    {0x19, 0x12, "reportNumberOfEmissionsOBDDTCByStatusMask", "count trouble codes"},
    {0x19, 0x13, "reportEmissionsOBDDTCByStatusMask"},
    {0x19, 0x14, "reportDTCFaultDetectionCounter"},
    {0x19, 0x15, "reportDTCWithPermanentStatus"},
    {0x19, 0x16, "reportDTCExtDataRecordByRecordNumber"},
    {0x19, 0x17, "reportUserDefMemoryDTCByStatusMask"},
    {0x19, 0x18, "reportUserDefMemoryDTCSnapshotRecordByDTCNumber"},
    {0x19, 0x19, "reportUserDefMemoryDTCExtDataRecordByDTCNumber"},
    {0x19, 0x1A, "reportSupportedDTCExtDataRecord"},
    {0x19, 0x42, "reportWWHOBDDTCByMaskRecord"},
    {0x19, 0x55, "reportWWHOBDDTCWithPermanentStatus"},
    {0x19, 0x56, "reportDTCInformationByDTCReadinessGroupIdentifier"},
    {0x27, 0x01, "requestSeed", "security seed"},
    {0x27, 0x02, "sendKey", "security key"},
    {0x28, 0x00, "enableRxAndTx"},
    {0x28, 0x01, "enableRxAndDisableTx"},
    {0x28, 0x02, "disableRxAndEnableTx"},
    {0x28, 0x03, "disableRxAndTx"},
    {0x28, 0x04, "enableRxAndDisableTxWithEnhancedAddressInformation"},
    {0x28, 0x05, "enableRxAndTxWithEnhancedAddressInformation"},
    {0x29, 0x00, "deAuthenticate"},
    {0x29, 0x01, "verifyCertificateUnidirectional"},
    {0x29, 0x02, "verifyCertificateBidirectional"},
    {0x29, 0x03, "proofOfOwnership"},
    {0x29, 0x04, "transmitCertificate"},
    {0x29, 0x05, "requestChallengeForAuthentication"},
    {0x29, 0x06, "verifyProofOfOwnershipUnidirectional"},
    {0x29, 0x07, "verifyProofOfOwnershipBidirectional"},
    {0x29, 0x08, "authenticationConfiguration"},
    {0x2A, 0x01, "sendAtSlowRate"},
    {0x2A, 0x02, "sendAtMediumRate"},
    {0x2A, 0x03, "sendAtFastRate"},
    {0x2A, 0x04, "stopSending", "stop periodic reading"},
    {0x2C, 0x01, "defineByIdentifier"},
    {0x2C, 0x02, "defineByMemoryAddress"},
    {0x2C, 0x03, "clearDynamicallyDefinedDataIdentifier", "clear definition"},
    {0x2F, 0x00, "returnControlToECU", "return control"},
    {0x2F, 0x01, "resetToDefault"},
    {0x2F, 0x02, "freezeCurrentState"},
    {0x2F, 0x03, "shortTermAdjustment"},
    {0x31, 0x01, "startRoutine", "start routine"},
    {0x31, 0x02, "stopRoutine", "stop routine"},
    {0x31, 0x03, "requestRoutineResults", "routine results"},
    {0x38, 0x01, "addFile", "add file"},
    {0x38, 0x02, "deleteFile", "delete file"},
    {0x38, 0x03, "replaceFile", "replace file"},
    {0x38, 0x04, "readFile", "read file"},
    {0x38, 0x05, "readDir", "read directory"},
    {0x38, 0x06, "resumeFile", "resume file"},
    {0x3E, 0x00, "zeroSubFunction"},
    {0x85, 0x01, "on", "trouble codes on"},
    {0x85, 0x02, "off", "trouble codes off"},
    {0x87, 0x01, "verifyModeTransitionWithFixedParameter"},
    {0x87, 0x02, "verifyModeTransitionWithSpecificParameter"},
    {0x87, 0x03, "transitionMode"},
};

constexpr std::uint32_t KeyOf(const SubFunction& one)
{
    return std::uint32_t{one.Sid} << 8 | one.Number;
}

static_assert(std::ranges::is_sorted(UdsServices, {}, &Service::Sid));
static_assert(std::ranges::is_sorted(ObdServices, {}, &Service::Sid));
static_assert(std::ranges::is_sorted(SubFunctions, {}, KeyOf));

constexpr std::uint8_t SecurityAccess = 0x27;

} // namespace

std::span<const Service> ServicesOf(Dialect dialect)
{
    if (dialect == Dialect::Uds)
        return UdsServices;
    return dialect == Dialect::Obd ? std::span<const Service>(ObdServices) : std::span<const Service>();
}

const Service* FindService(Dialect dialect, std::uint8_t sid)
{
    const std::span<const Service> services = ServicesOf(dialect);
    const auto found = std::ranges::lower_bound(services, sid, {}, &Service::Sid);
    return found != services.end() && found->Sid == sid ? &*found : nullptr;
}

const SubFunction* FindSubFunction(const Service& service, std::uint8_t number)
{
    if (service.Sid == SecurityAccess && number > 0)
        number = number % 2 == 1 ? 1 : 2; // The other numbers are further security levels.
    const std::uint32_t key = KeyOf({service.Sid, number, {}, {}});
    const auto found = std::ranges::lower_bound(SubFunctions, key, {}, KeyOf);
    return found != std::end(SubFunctions) && KeyOf(*found) == key ? &*found : nullptr;
}

} // namespace marvane::words

#include "tool/words/negative_codes.h"

#include <algorithm>

namespace marvane::words {

namespace {

constexpr NegativeCode UdsCodes[] = {
    {0x10, "generalReject"},
    {0x11, "serviceNotSupported"},
    {0x12, "subFunctionNotSupported"},
    {0x13, "incorrectMessageLengthOrInvalidFormat"},
    {0x14, "responseTooLong"},
    {0x21, "busyRepeatRequest"},
    {0x22, "conditionsNotCorrect"},
    {0x24, "requestSequenceError"},
    {0x25, "noResponseFromSubnetComponent"},
    {0x26, "failurePreventsExecutionOfRequestedAction"},
    {0x31, "requestOutOfRange"},
    {0x33, "securityAccessDenied"},
    {0x34, "authenticationRequired"},
    {0x35, "invalidKey"},
    {0x36, "exceededNumberOfAttempts"},
    {0x37, "requiredTimeDelayNotExpired"},
    {0x38, "secureDataTransmissionRequired"},
    {0x39, "secureDataTransmissionNotAllowed"},
    {0x3A, "secureDataVerificationFailed"},
    {0x50, "certificateVerificationFailed-InvalidTimePeriod"},
    {0x51, "certificateVerificationFailed-InvalidSignature"},
    {0x52, "certificateVerificationFailed-InvalidChainOfTrust"},
    {0x53, "certificateVerificationFailed-InvalidType"},
    {0x54, "certificateVerificationFailed-InvalidFormat"},
    {0x55, "certificateVerificationFailed-InvalidContent"},
    {0x56, "certificateVerificationFailed-InvalidScope"},
    {0x57, "certificateVerificationFailed-InvalidCertificate"},
    {0x58, "ownershipVerificationFailed"},
    {0x59, "challengeCalculationFailed"},
    {0x5A, "settingAccessRightsFailed"},
    {0x5B, "sessionKeyCreationDerivationFailed"},
    {0x5C, "configurationDataUsageFailed"},
    {0x5D, "deAuthenticationFailed"},
    {0x70, "uploadDownloadNotAccepted"},
    {0x71, "transferDataSuspended"},
    {0x72, "generalProgrammingFailure"},
    {0x73, "wrongBlockSequenceCounter"},
    {0x78, "requestCorrectlyReceived-ResponsePending"},
    {0x7E, "subFunctionNotSupportedInActiveSession"},
    {0x7F, "serviceNotSupportedInActiveSession"},
    {0x81, "rpmTooHigh"},
    {0x82, "rpmTooLow"},
    {0x83, "engineIsRunning"},
    {0x84, "engineIsNotRunning"},
    {0x85, "engineRunTimeTooLow"},
    {0x86, "temperatureTooHigh"},
    {0x87, "temperatureTooLow"},
    {0x88, "vehicleSpeedTooHigh"},
    {0x89, "vehicleSpeedTooLow"},
    {0x8A, "throttle/PedalTooHigh"},
    {0x8B, "throttle/PedalTooLow"},
    {0x8C, "transmissionRangeNotInNeutral"},
    {0x8D, "transmissionRangeNotInGear"},
    {0x8F, "brakeSwitchNotClosed"},
    {0x90, "shifterLeverNotInPark"},
    {0x91, "torqueConverterClutchLocked"},
    {0x92, "voltageTooHigh"},
    {0x93, "voltageTooLow"},
    {0x94, "resourceTemporarilyNotAvailable"},
};

constexpr NegativeCode KwpCodes[] = {
    {0x10, "generalReject"},
    {0x11, "serviceNotSupported"},
    {0x12, "subFunctionNotSupported-InvalidFormat"},
    {0x21, "busy-RepeatRequest"},
    {0x22, "conditionsNotCorrectOrRequestSequenceError"},
    {0x23, "routineNotComplete"},
    {0x31, "requestOutOfRange"},
    {0x33, "securityAccessDenied"},
    {0x35, "invalidKey"},
    {0x36, "exceedNumberOfAttempts"},
    {0x37, "requiredTimeDelayNotExpired"},
    {0x40, "downloadNotAccepted"},
    {0x41, "improperDownloadType"},
    {0x42, "can'tDownloadToSpecifiedAddress"},
    {0x43, "can'tDownloadNumberOfBytesRequested"},
    {0x50, "uploadNotAccepted"},
    {0x51, "improperUploadType"},
    {0x52, "can'tUploadFromSpecifiedAddress"},
    {0x53, "can'tUploadNumberOfBytesRequested"},
    {0x71, "transferSuspended"},
    {0x72, "transferAborted"},
    {0x74, "illegalAddressInBlockTransfer"},
    {0x75, "illegalByteCountInBlockTransfer"},
    {0x76, "illegalBlockTransferType"},
    {0x77, "blockTransferDataChecksumError"},
    {0x78, "requestCorrectlyReceived-ResponsePending"},
    {0x79, "incorrectByteCountDuringBlockTransfer"},
};

static_assert(std::ranges::is_sorted(UdsCodes, {}, &NegativeCode::Code));
static_assert(std::ranges::is_sorted(KwpCodes, {}, &NegativeCode::Code));

constexpr bool IsOfTheManufacturer(std::uint8_t code)
{
    return code >= 0xF0 && code <= 0xFE;
}

} // namespace

std::span<const NegativeCode> NegativeCodesOf(Dialect dialect)
{
    if (dialect == Dialect::Unknown)
        return {};
    return dialect == Dialect::Kwp ? std::span<const NegativeCode>(KwpCodes)
                                   : std::span<const NegativeCode>(UdsCodes);
}

std::string_view NegativeCodeName(Dialect dialect, std::uint8_t code)
{
    const std::span<const NegativeCode> codes = NegativeCodesOf(dialect);
    const auto found = std::ranges::lower_bound(codes, code, {}, &NegativeCode::Code);
    if (found != codes.end() && found->Code == code)
        return found->Name;
    const bool ofTheManufacturer = dialect == Dialect::Uds && IsOfTheManufacturer(code);
    return ofTheManufacturer ? std::string_view("vehicleManufacturerSpecific") : std::string_view();
}

} // namespace marvane::words

#include "tool/words/identifiers.h"

#include <algorithm>
#include <iterator>

namespace marvane::words {

namespace {

struct Range
{
    std::uint16_t First;
    std::uint16_t Last;
    std::string_view Name;
};

constexpr Range DataIdentifiers[] = {
    {0x0100, 0xA5FF, "vehicleManufacturerSpecific"},
    {0xF180, 0xF180, "bootSoftwareIdentification"},
    {0xF181, 0xF181, "applicationSoftwareIdentification"},
    {0xF182, 0xF182, "applicationDataIdentification"},
    {0xF183, 0xF183, "bootSoftwareFingerprint"},
    {0xF184, 0xF184, "applicationSoftwareFingerprint"},
    {0xF185, 0xF185, "applicationDataFingerprint"},
    {0xF186, 0xF186, "activeDiagnosticSession"},
    {0xF187, 0xF187, "vehicleManufacturerSparePartNumber"},
    {0xF188, 0xF188, "vehicleManufacturerECUSoftwareNumber"},
    {0xF189, 0xF189, "vehicleManufacturerECUSoftwareVersionNumber"},
    {0xF18A, 0xF18A, "systemSupplierIdentifier"},
    {0xF18B, 0xF18B, "ECUManufacturingDate"},
    {0xF18C, 0xF18C, "ECUSerialNumber"},
    {0xF18D, 0xF18D, "supportedFunctionalUnits"},
    {0xF18E, 0xF18E, "vehicleManufacturerKitAssemblyPartNumber"},
    {0xF18F, 0xF18F, "regulationXSoftwareIdentificationNumbers"},
    {0xF190, 0xF190, "VIN"},
    {0xF191, 0xF191, "vehicleManufacturerECUHardwareNumber"},
    {0xF192, 0xF192, "systemSupplierECUHardwareNumber"},
    {0xF193, 0xF193, "systemSupplierECUHardwareVersionNumber"},
    {0xF194, 0xF194, "systemSupplierECUSoftwareNumber"},
    {0xF195, 0xF195, "systemSupplierECUSoftwareVersionNumber"},
    {0xF196, 0xF196, "exhaustRegulationOrTypeApprovalNumber"},
    {0xF197, 0xF197, "systemNameOrEngineType"},
    {0xF198, 0xF198, "repairShopCodeOrTesterSerialNumber"},
    {0xF199, 0xF199, "programmingDate"},
    {0xF19A, 0xF19A, "calibrationRepairShopCodeOrCalibrationEquipmentSerialNumber"},
    {0xF19B, 0xF19B, "calibrationDate"},
    {0xF19C, 0xF19C, "calibrationEquipmentSoftwareNumber"},
    {0xF19D, 0xF19D, "ECUInstallationDate"},
    {0xF19E, 0xF19E, "ODXFile"},
    {0xF19F, 0xF19F, "entity"},
    {0xF200, 0xF2FF, "periodicDataIdentifier"},
    {0xF300, 0xF3FF, "dynamicallyDefinedDataIdentifier"},
    {0xF400, 0xF5FF, "OBD PID"},
    {0xF800, 0xF801, "OBD info type"},
    {0xF802, 0xF802, "VIN"},
    {0xF803, 0xF8FF, "OBD info type"},
    {0xFA00, 0xFA0F, "airbagDeployment"},
    {0xFA10, 0xFA12, "eventDataRecorder"},
    {0xFF00, 0xFF00, "UDSVersion"},
};

constexpr Range Routines[] = {
    {0xFF00, 0xFF00, "eraseMemory"},
    {0xFF01, 0xFF01, "checkProgrammingDependencies"},
};

static_assert(std::ranges::is_sorted(DataIdentifiers, {}, &Range::First));
static_assert(std::ranges::is_sorted(DataIdentifiers, {}, &Range::Last));

template <std::size_t Size> std::string_view NameIn(const Range (&ranges)[Size], std::uint16_t number)
{
    const auto found = std::ranges::lower_bound(ranges, number, {}, &Range::Last);
    return found != std::end(ranges) && found->First <= number ? found->Name : std::string_view();
}

} // namespace

std::string_view DataIdentifierName(std::uint16_t identifier)
{
    return NameIn(DataIdentifiers, identifier);
}

std::string_view RoutineName(std::uint16_t routine)
{
    return NameIn(Routines, routine);
}

} // namespace marvane::words
